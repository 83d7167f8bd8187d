#include "cli/man_page.h"

#include <cstring>

#include "base/concat.h"
#include "base/plain_text.h"

namespace camcfg::tool::cli {
namespace {

std::string escaped(char c) {
  constexpr std::string_view kCharacters = "\\-'\"`^~";
  constexpr const char* kWritten[] = {"\\e", "\\-", "\\(aq", "\\(dq", "\\(ga", "\\(ha", "\\(ti"};
  const std::size_t found = kCharacters.find(c);
  return found == std::string_view::npos ? std::string(1, c) : kWritten[found];
}

// The words of a line on lines that stay short when they are escaped.
std::string broken(const std::string& line) {
  constexpr std::size_t kWidth = 80;
  std::string text;
  std::size_t width = 0;
  for (const std::string& word : wordsIn(line)) {
    const std::string shown = roffText(word);
    const bool fits = width + 1 + shown.size() <= kWidth;
    if (!text.empty()) text += fits ? " " : "\n";
    width = fits ? width + 1 + shown.size() : shown.size();
    text += shown;
  }
  return text + "\n";
}

constexpr char kHeader[] = ".TH CAMCFG 1 \"" CAMCFG_MANUAL_DATE "\" \"camcfg " CAMCFG_VERSION
                           "\" \"Network video device\"\n";
constexpr char kDescription[] =
    "camcfg lists, reads, checks, changes, repairs, exports and imports the settings of a network\n"
    "video device: its parameters, network cards, camera positions, streams and live media\n"
    "services. Every change is checked before it is made and read again afterwards, and goes to "
    "the\n"
    "file and to its backup.\n"
    "\n"
    "Answers go to standard output, everything else to standard error. Options may come before "
    "or\n"
    "after the command. A subcommand comes after its parent's arguments.\n";

struct Chapter {
  const char* topic;
  const char* heading;
};
// Topics that manual pages have sections of their own for, in the usual order.
constexpr Chapter kChapters[] = {{"exit-status", "EXIT STATUS"},
                                 {"environment", "ENVIRONMENT"},
                                 {"files", "FILES"},
                                 {"examples", "EXAMPLES"}};

std::string section(const std::string& heading, const std::string& text) {
  return concat(".SH ", heading, "\n", text);
}

std::string entry(const std::string& term, const std::string& text) {
  return concat(".TP\n", term, "\n", roffParagraphs(text + "."));
}

// What is typed for an option, or an argument in its place.
std::string typed(const Option& option) {
  if (!option.isNamed()) return roffItalic(option.name) + (option.takesMany() ? "..." : "");
  const std::string name = option.shortName == nullptr ? "" : roffBold(option.shortName) + ", ";
  const std::string value = option.value() == nullptr ? "" : " " + roffItalic(option.value());
  return concat(name, roffBold(option.name), value);
}

// A command with what it and those above it take in their places.
std::string typed(const std::vector<CommandGroup>& groups, const Command& command) {
  const Command* above = findCommand(groups, command.above());
  std::string text = above == nullptr      ? ""
                     : command.standsAlone ? roffBold(above->name) + " "
                                           : typed(groups, *above) + " ";
  text += roffBold(command.word());
  for (const Option& option : command.options)
    if (!option.isNamed())
      text += option.isRequired() ? " " + typed(option) : concat(" [", typed(option), "]");
  return text;
}

// A command with its options, what its help adds, and its examples.
std::string commandEntry(const std::vector<CommandGroup>& groups, const Command& command) {
  std::string options;
  for (const Option& option : command.options) options += entry(typed(option), option.help);
  std::string more = command.details ? command.details() : "";
  if (!command.examples.empty()) more += (more.empty() ? "" : "\n") + examplesOf(command);
  return concat(entry(typed(groups, command), command.help),
                options.empty() ? "" : concat(".RS\n", options, ".RE\n"),
                more.empty() ? "" : concat(".RS\n", roffParagraphs(more), ".RE\n"));
}

std::string commandEntries(const std::vector<CommandGroup>& groups) {
  std::string text;
  std::string title;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands) {
      if (!command.run || command.hidden) continue;
      if (title != group.title) text += concat(".SS ", roffText(group.title), "\n");
      title = group.title;
      text += commandEntry(groups, command);
    }
  return text;
}

std::string globalEntries() {
  std::string text;
  for (const Option& option : globalOptions()) text += entry(typed(option), option.help);
  return text;
}

// The topics that have a chapter of their own, and one with the others.
std::string chapters(const std::vector<Topic>& topics) {
  std::string text;
  std::vector<std::string> done;
  for (const Chapter& chapter : kChapters)
    for (const Topic& topic : topics)
      if (std::strcmp(topic.name, chapter.topic) == 0) {
        text += section(chapter.heading, roffParagraphs(topic.text));
        done.emplace_back(topic.name);
      }
  std::string notes;
  for (const Topic& topic : topics)
    if (!isAmong(done, topic.name))
      notes += concat(".SS ", roffText(topic.title), "\n", roffParagraphs(topic.text));
  return notes.empty() ? text : text + section("NOTES", notes);
}

}  // namespace

std::string roffText(const std::string& text) {
  std::string result;
  for (const char c : text) result += escaped(c);
  return !text.empty() && text.front() == '.' ? "\\&" + result : result;
}

std::string roffBold(const std::string& text) {
  return concat("\\fB", roffText(text), "\\fR");
}

std::string roffItalic(const std::string& text) {
  return concat("\\fI", roffText(text), "\\fR");
}

// Text that roff fills, and lines that it leaves alone, under the macros that belong to them.
std::string roffParagraphs(const std::string& text) {
  constexpr std::size_t kIndent = 2;  // of the lines that stay as they are; .RS has its own
  std::string result;
  bool wasKept = false;
  bool gap = false;
  for (const std::string& line : parts(text, '\n')) {
    if (line.empty()) {
      gap = true;
      continue;
    }
    const bool isKept = line.front() == ' ';
    if (wasKept && !isKept) result += ".fi\n.RE\n";
    if (gap && !result.empty()) result += wasKept && isKept ? "\n" : ".PP\n";
    if (isKept && !wasKept) result += ".RS 2\n.nf\n";
    result += isKept ? roffText(line.substr(kIndent)) + "\n" : broken(line);
    wasKept = isKept;
    gap = false;
  }
  return wasKept ? result + ".fi\n.RE\n" : result;
}

std::string manPage(const std::vector<CommandGroup>& groups, const std::vector<Topic>& topics) {
  return concat(".\\\" Made by 'camcfg man'.\n", kHeader,
                section("NAME", "camcfg \\- settings of a network video device\n"),
                section("SYNOPSIS", concat(roffBold("camcfg"), " [", roffItalic("OPTION"), "...] ",
                                           roffItalic("COMMAND"), " [", roffItalic("ARGUMENT"),
                                           "...]\n", ".br\n", roffBold("camcfg help"), " [",
                                           roffItalic("TOPIC"), "...]\n")),
                section("DESCRIPTION", roffParagraphs(kDescription)),
                section("OPTIONS", globalEntries()), section("COMMANDS", commandEntries(groups)),
                chapters(topics), section("SEE ALSO", ".BR dot (1),\n.BR jq (1)\n"));
}

}  // namespace camcfg::tool::cli
