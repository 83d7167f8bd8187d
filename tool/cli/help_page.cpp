#include "cli/help_page.h"

#include <algorithm>
#include <cstring>

#include "base/concat.h"
#include "base/plain_text.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kFooterBegin[] =
    "Answers go to standard output, everything else to standard error.\nExit status:\n";
constexpr char kFooterEnd[] =
    "'camcfg help COMMAND' shows what a command takes, 'camcfg help' lists further topics.";

std::string footerOf(const Command& command) {
  const std::string details = command.details ? command.details() + "\n" : "";
  const std::string examples = command.examples.empty() ? "" : "\n\n" + examplesOf(command);
  return concat(details,
                "'camcfg --help' lists the options that every command takes.\n\nExit status:\n",
                exitStatuses(&command), examples);
}

// A line that says what something is, or two if its name is long.
std::string row(const std::string& name, const char* help) {
  constexpr std::size_t kHelpAt = 30;
  std::string line = "  " + name;
  if (line.size() >= kHelpAt)
    line += "\n" + std::string(kHelpAt, ' ');
  else
    line.resize(kHelpAt, ' ');
  return concat(line, help, "\n");
}

// Lines under a heading; nothing if there are none.
std::string list(const char* title, const std::string& rows) {
  return rows.empty() ? "" : concat("\n", title, ":\n", rows);
}

std::string rowOf(const Option& option) {
  const std::string shortName =
      option.shortName == nullptr ? "" : std::string(option.shortName) + ",";
  const std::string value = option.value() == nullptr ? "" : std::string(" ") + option.value();
  return row(concat(shortName, option.name, value, option.takesMany() ? " ..." : ""), option.help);
}

std::string rowsOf(const std::vector<Option>& options, bool isNamed) {
  std::string rows;
  for (const Option& option : options)
    if (option.isNamed() == isNamed) rows += rowOf(option);
  return rows;
}

// The commands directly below one, or those of the tool under one heading.
std::string rowsBelow(const std::vector<CommandGroup>& groups, const Command* above,
                      const char* title) {
  std::string rows;
  for (const CommandGroup& group : groups)
    for (const Command& command : group.commands)
      if (!command.hidden && command.above() == (above == nullptr ? "" : above->name) &&
          (above != nullptr || std::strcmp(group.title, title) == 0))
        rows += row(command.word(), command.help);
  return rows;
}

std::string commandLists(const std::vector<CommandGroup>& groups, const Command* above) {
  constexpr char kTitle[] = "Commands";
  if (above != nullptr) return list(kTitle, rowsBelow(groups, above, kTitle));
  std::string lists;
  std::vector<std::string> done;
  for (const CommandGroup& group : groups) {
    if (isAmong(done, group.title)) continue;
    done.emplace_back(group.title);
    lists += list(group.title, rowsBelow(groups, nullptr, group.title));
  }
  return lists;
}

bool hasCommands(const std::vector<CommandGroup>& groups, const Command* above) {
  if (above == nullptr) return !groups.empty();
  const std::vector<const Command*> all = commandsIn(groups);
  return std::any_of(all.begin(), all.end(),
                     [above](const Command* command) { return command->above() == above->name; });
}

// A command with what those above it require, as it has to be typed.
std::string words(const std::vector<CommandGroup>& groups, const Command* command) {
  if (command == nullptr) return kTool;
  const Command* above = findCommand(groups, command->above());
  std::string text = words(groups, above);
  if (above != nullptr && !command->standsAlone)
    for (const Option& option : above->options)
      if (option.isRequired()) text += std::string(" ") + option.name;
  return concat(text, " ", command->word());
}

std::string usage(const std::vector<CommandGroup>& groups, const Command* command) {
  std::string text = concat("Usage: ", words(groups, command), " [OPTIONS]");
  if (command != nullptr)
    for (const Option& option : command->options) {
      if (option.isNamed()) continue;
      const std::string name = option.name + std::string(option.takesMany() ? "..." : "");
      text += option.isRequired() && command->run ? " " + name : concat(" [", name, "]");
    }
  return text + (hasCommands(groups, command) ? " [COMMAND]\n" : "\n");
}

}  // namespace

std::string helpPage(const std::vector<CommandGroup>& groups, const Command* command) {
  std::string options;
  for (const Option& option : globalOptions())
    if (command == nullptr || std::strcmp(option.name, kHelp) == 0) options += rowOf(option);
  if (command != nullptr) options += rowsOf(command->options, true);
  std::string text = (command == nullptr ? kAbout : command->help) + std::string("\n");
  text += usage(groups, command);
  if (command != nullptr) text += list("Arguments", rowsOf(command->options, false));
  text += concat(list("Options", options), commandLists(groups, command), "\n");
  text += command == nullptr ? concat(kFooterBegin, exitStatuses(nullptr), kFooterEnd)
                             : footerOf(*command);
  text.erase(text.find_last_not_of('\n') + 1);
  return text + "\n";
}

}  // namespace camcfg::tool::cli
