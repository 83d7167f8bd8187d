#include "cli/man_page.h"

#include <cstring>

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
    "Answers go to standard output, everything else to standard error. Options may stand before "
    "or\n"
    "behind the command. A command below another is named behind what that one takes.\n";

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

const char* valueOf(const Option& option) {
  return option.kind == Option::HostDirectory ? "DIR" : "VALUE";
}

// What is typed for an option, or an argument in its place.
std::string typed(const Option& option) {
  switch (option.kind) {
    case Option::Flag:
      return roffBold(option.name);
    case Option::Value:
    case Option::HostDirectory:
      return roffBold(option.name) + " " + roffItalic(valueOf(option));
    case Option::Arguments:
    case Option::OptionalArguments:
    case Option::HostFiles:
      return roffItalic(option.name) + "...";
    default:
      return roffItalic(option.name);
  }
}

// An argument within a command; nothing for an option.
std::string place(const Option& option) {
  const bool isOptional =
      option.kind == Option::OptionalArgument || option.kind == Option::OptionalArguments ||
      option.kind == Option::HostFiles || option.kind == Option::OptionalHostFile;
  if (option.name[0] == '-') return "";
  return isOptional ? " [" + typed(option) + "]" : " " + typed(option);
}

class CommandEntries {
 public:
  explicit CommandEntries(const std::vector<CommandGroup>& groups) : groups_(groups) {}

  std::string text() const {
    std::string text;
    std::string title;
    for (const CommandGroup& group : groups_)
      for (const Command& command : group.commands) {
        if (!command.run || command.hidden) continue;
        if (title != group.title) text += ".SS " + roffText(group.title) + "\n";
        title = group.title;
        text += of(command);
      }
    return text;
  }

 private:
  // The command with what it and those above it take in their places.
  std::string words(const std::string& name) const {
    const std::size_t space = name.rfind(' ');
    std::string text = space == std::string::npos ? "" : words(name.substr(0, space)) + " ";
    text += roffBold(space == std::string::npos ? name : name.substr(space + 1));
    for (const CommandGroup& group : groups_)
      for (const Command& command : group.commands)
        for (const Option& option : command.options)
          if (name == command.name) text += place(option);
    return text;
  }

  std::string of(const Command& command) const {
    std::string options;
    for (const Option& option : command.options) options += entry(typed(option), option.help);
    return entry(words(command.name), command.help) +
           (options.empty() ? "" : ".RS\n" + options + ".RE\n");
  }

  const std::vector<CommandGroup>& groups_;
};

std::string typed(const GlobalOption& option) {
  std::string text = option.shortName == nullptr ? "" : roffBold(option.shortName) + ", ";
  text += roffBold(option.name);
  return option.value == nullptr ? text : text + " " + roffItalic(option.value);
}

std::string globalEntries() {
  std::string text;
  for (const GlobalOption* option : {&kHelpOption, &kVersionOption})
    text += entry(typed(*option), option->help);
  for (const GlobalOption& option : globalOptions()) text += entry(typed(option), option.help);
  return text;
}

std::string chapters(const std::vector<Topic>& topics) {
  std::string text;
  for (const Chapter& chapter : kChapters)
    for (const Topic& topic : topics)
      if (std::strcmp(topic.name, chapter.topic) == 0)
        text += section(chapter.heading, roffParagraphs(topic.text));
  return text;
}

std::string notes(const std::vector<Topic>& topics) {
  std::string text;
  for (const Topic& topic : topics) {
    bool isChapter = false;
    for (const Chapter& chapter : kChapters)
      isChapter = isChapter || std::strcmp(topic.name, chapter.topic) == 0;
    if (!isChapter)
      text += std::string(".SS ") + roffText(topic.title) + "\n" + roffParagraphs(topic.text);
  }
  return text.empty() ? "" : section("NOTES", text);
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
         section("OPTIONS", globalEntries()) + section("COMMANDS", CommandEntries(groups).text()) +
         chapters(topics) + notes(topics) + section("SEE ALSO", ".BR dot (1),\n.BR jq (1)\n");
}

}  // namespace camcfg::tool::cli
