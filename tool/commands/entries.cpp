#include "document/entries.h"

#include <camcfg/types.h>

#include <list>

#include "base/secret_input.h"
#include "commands/groups.h"
#include "device/turn.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kCascade[] = "--cascade";
constexpr char kEntry[] = "ENTRY";
constexpr char kMember[] = "MEMBER=VALUE";

using settings::Setting;

// A secret that is given as "-" is not seen by whoever lists processes.
std::vector<std::string> withSecrets(const settings::Table& table, std::vector<std::string> words) {
  for (std::string& word : words) {
    const std::size_t sign = word.find('=');
    const Setting* setting = sign == std::string::npos ? nullptr : table.find(word.substr(0, sign));
    if (setting != nullptr && setting->masked != nullptr && word.substr(sign + 1) == "-")
      word = word.substr(0, sign + 1) + readSecret(setting->member);
  }
  return words;
}

using Carry = Outcome (*)(const settings::Table&, const Arguments&);

device::Turn turnFor(const Arguments& arguments) {
  return device::Turn(arguments.given(kDryRun) ? device::Turn::Files()
                                               : device::Turn::Files{CFG_FILE_MPP});
}

Outcome add(const settings::Table& table, const Arguments& arguments) {
  const std::vector<std::string> members = withSecrets(table, arguments.texts(kMember));
  const device::Turn turn = turnFor(arguments);
  return document::addEntry(table, arguments.text(kEntry), members, importOptions(arguments));
}

Outcome change(const settings::Table& table, const Arguments& arguments) {
  const std::vector<std::string> members = withSecrets(table, arguments.texts(kMember));
  const device::Turn turn = turnFor(arguments);
  return document::setEntry(table, arguments.text(kEntry), members, importOptions(arguments));
}

Outcome remove(const settings::Table& table, const Arguments& arguments) {
  const device::Turn turn = turnFor(arguments);
  return document::deleteEntry(table, arguments.text(kEntry), arguments.given(kCascade),
                               importOptions(arguments));
}

// Names and helps are kept for as long as the program runs, as other commands' are.
const char* kept(std::string text) {
  static std::list<std::string> texts;
  return texts.emplace_back(std::move(text)).c_str();
}

cli::Command commandFor(const settings::Table& table, const std::string& name, const char* verb,
                        Carry carry, std::vector<Option> options) {
  cli::Command command{kept(name), kept(std::string(verb) + table.entry), std::move(options),
                       [&table, carry](const Arguments& arguments) {
                         return changed(carry(table, arguments), "it is so already");
                       }};
  command.options.insert(command.options.end(),
                         {{Option::Flag, kDryRun, "Show what would change and write nothing"},
                          {Option::Flag, kShowSecrets, "Show passwords in the list of changes"}});
  command.changesDevice = command.changesSettings = true;
  command.details = [&table] { return helpOf(table); };
  return command;
}

}  // namespace

std::vector<cli::Command> commandsForEntries(const settings::Table& table,
                                             const std::string& above) {
  const auto words = [&table](const Arguments&) { return entryWords(table); };
  const auto members = [&table](const Arguments&) {
    Candidates candidates;
    for (const Setting& setting : table.settings)
      candidates.push_back({std::string(setting.member) + "=", setting.help});
    return candidates;
  };
  const char* meaning =
      kept("Its " + std::string(table.key) +
           (table.label == nullptr ? "" : std::string(", or its ") + table.label));
  const Option entry{Option::Argument, kEntry, meaning, words};
  return {commandFor(table, above + " add", "Add one ", add,
                     {{Option::Argument, kEntry, meaning, anyWord},
                      {Option::OptionalArguments, kMember,
                       "A member as below and its value; '-' reads a secret", members}}),
          commandFor(table, above + " set", "Change members of one ", change,
                     {entry,
                      {Option::Arguments, kMember,
                       "A member as below and its value; '-' reads a secret", members}}),
          commandFor(table, above + " delete", "Delete one ", remove,
                     {entry,
                      {Option::Flag, kCascade,
                       "Take it out of what refers to it; what cannot be without it goes, too"}})};
}

std::string helpOf(const settings::Table& table) {
  return std::string("Each ") + table.entry + " in exported documents (" + table.place + "):\n" +
         membersHelp(table.settings,
                     [](const settings::Setting& setting) { return setting.member; });
}

}  // namespace camcfg::tool::commands
