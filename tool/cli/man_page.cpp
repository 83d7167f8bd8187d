#include "cli/man_page.h"

#include <cstring>

#include "base/plain_text.h"
#include "cli/global_options.h"
#include "cli/roff.h"

namespace camcfg::tool::cli {
namespace {

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
    "after the command. A command below another is named after what that one takes.\n";

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
  return ".SH " + heading + "\n" + text;
}

std::string entry(const std::string& term, const std::string& text) {
  return ".TP\n" + term + "\n" + roffParagraphs(text + ".");
}

// What is typed for an option, or an argument in its place.
std::string typed(const Option& option) {
  if (!option.isNamed()) return roffItalic(option.name) + (option.takesMany() ? "..." : "");
  const std::string name = roffBold(option.name);
  return option.value() == nullptr ? name : name + " " + roffItalic(option.value());
}

// A command with what it and those above it take in their places.
std::string typed(const std::vector<CommandGroup>& groups, const Command& command) {
  const Command* above = findCommand(groups, command.above());
  std::string text =
      (above == nullptr ? "" : typed(groups, *above) + " ") + roffBold(command.word());
  for (const Option& option : command.options)
    if (!option.isNamed())
      text += option.isRequired() ? " " + typed(option) : " [" + typed(option) + "]";
  return text;
}

std::string commandEntries(const std::vector<CommandGroup>& groups) {
  std::string text;
  std::string title;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands) {
      if (!command.run || command.hidden) continue;
      if (title != group.title) text += ".SS " + roffText(group.title) + "\n";
      title = group.title;
      std::string options;
      for (const Option& option : command.options) options += entry(typed(option), option.help);
      text += entry(typed(groups, command), command.help);
      if (!options.empty()) text += ".RS\n" + options + ".RE\n";
    }
  return text;
}

std::string typed(const GlobalOption& option) {
  std::string text = option.shortName == nullptr ? "" : roffBold(option.shortName) + ", ";
  text += roffBold(option.name);
  return option.value == nullptr ? text : text + " " + roffItalic(option.value);
}

std::string globalEntries() {
  std::string text;
  for (const GlobalOption& option : globalOptions()) text += entry(typed(option), option.help);
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
      notes += std::string(".SS ") + roffText(topic.title) + "\n" + roffParagraphs(topic.text);
  return notes.empty() ? text : text + section("NOTES", notes);
}

}  // namespace

std::string manPage(const std::vector<CommandGroup>& groups, const std::vector<Topic>& topics) {
  return std::string(".\\\" Made by 'camcfg man'.\n") + kHeader +
         section("NAME", "camcfg \\- settings of a network video device\n") +
         section("SYNOPSIS", roffBold("camcfg") + " [" + roffItalic("OPTION") + "...] " +
                                 roffItalic("COMMAND") + " [" + roffItalic("ARGUMENT") + "...]\n" +
                                 ".br\n" + roffBold("camcfg help") + " [" + roffItalic("TOPIC") +
                                 "...]\n") +
         section("DESCRIPTION", roffParagraphs(kDescription)) +
         section("OPTIONS", globalEntries()) + section("COMMANDS", commandEntries(groups)) +
         chapters(topics) + section("SEE ALSO", ".BR dot (1),\n.BR jq (1)\n");
}

}  // namespace camcfg::tool::cli
