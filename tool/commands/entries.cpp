#include "document/entries.h"
#include "base/concat.h"

#include <camcfg/types.h>

#include <algorithm>
#include <iterator>
#include <list>

#include "base/secret_input.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "document/keyed.h"
#include "document/members.h"
#include "settings/media.h"
#include "settings/secrets.h"
#include "settings/table.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kCascade[] = "--cascade";
constexpr char kEntry[] = "ENTRY";
constexpr char kMember[] = "MEMBER=VALUE";

using settings::Setting;

bool isAskedFor(const settings::Table& table, const std::string& word) {
  const Setting* setting = document::memberOf(table.settings, word);
  return setting != nullptr && setting->masked != nullptr && word.substr(word.find('=') + 1) == "-";
}

// A secret that is given as "-" is not seen by whoever lists processes. It is not asked for where another
// word is faulty.
std::vector<std::string> withSecrets(const settings::Table& table, const Arguments& arguments) {
  std::vector<std::string> words = arguments.texts(kMember);
  for (std::string& word : words) {
    if (!isAskedFor(table, word)) continue;
    Json unused = Json::object();
    document::assign(table.settings, words, document::placeOf(table.place, arguments.text(kEntry)),
                     unused);
    word.replace(word.size() - 1, 1, readSecret(document::memberOf(table.settings, word)->member));
  }
  return words;
}

using Carry = Outcome (*)(const settings::Table&, const Arguments&);

document::ImportOptions optionsOf(const settings::Table& table, const Arguments& arguments) {
  return {arguments.given(kDryRun), settings::hasSecrets(table) && arguments.given(kShowSecrets)};
}

Outcome add(const settings::Table& table, const Arguments& arguments) {
  const std::vector<std::string> members = withSecrets(table, arguments);
  const device::Turn turn(filesFor(arguments, {CFG_FILE_MPP}));
  return document::addEntry(table, arguments.text(kEntry), members, optionsOf(table, arguments));
}

Outcome change(const settings::Table& table, const Arguments& arguments) {
  const std::vector<std::string> members = withSecrets(table, arguments);
  const device::Turn turn(filesFor(arguments, {CFG_FILE_MPP}));
  return document::setEntry(table, arguments.text(kEntry), members, optionsOf(table, arguments));
}

Outcome remove(const settings::Table& table, const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_MPP}));
  return document::deleteEntry(table, arguments.text(kEntry), arguments.given(kCascade),
                               optionsOf(table, arguments));
}

// Names and helps are kept for as long as the program runs, as other commands' are.
const char* kept(std::string text) {
  static std::list<std::string> texts;
  return texts.emplace_back(std::move(text)).c_str();
}

std::string headingOf(const settings::Table& table) {
  return concat("Each ", table.entry, " (", table.place, " in documents):\n");
}

// What help says of members, with what an entry has of those that are left out.
std::string helpToAdd(const settings::Table& table) {
  Json bare = Json::object();
  for (const Setting& setting : table.settings)
    if (setting.kind == settings::Kind::List) bare[setting.member].push_back(Json::object());
  const Json assumed = settings::withAssumed(table, bare);
  return headingOf(table) +
         membersHelp(
             table.settings, [](const Setting& setting) { return setting.member; }, &assumed);
}

cli::Command commandFor(const settings::Table& table, const std::string& name, const char* verb,
                        Carry carry, std::vector<Option> options) {
  cli::Command command{kept(name), kept(std::string(verb) + table.entry), std::move(options),
                       [&table, carry](const Arguments& arguments) {
                         return changed(carry(table, arguments), kSoAlready);
                       }};
  command.options.push_back(dryRun());
  if (settings::hasSecrets(table))
    command.options.push_back(
        {Option::Flag, kShowSecrets, "Show passwords in the list of changes"});
  command.changesDevice = command.changesSettings = true;
  command.details = [&table, carry] { return carry == add ? helpToAdd(table) : helpOf(table); };
  return command;
}

}  // namespace

std::vector<cli::Command> commandsForEntries(const settings::Table& table,
                                             const std::string& above) {
  const auto words = [&table](const Arguments&) { return entryWords(table); };
  const auto members = [&table](const Arguments&) { return memberWords(table.settings); };
  const char* meaning = kept(concat(
      "Its ", table.key, table.label == nullptr ? "" : std::string(", or its ") + table.label));
  const char* member = settings::hasSecrets(table) ? "A member as below and its value; a secret "
                                                     "that is '-' is asked for at the terminal, or "
                                                     "is the next line of standard input"
                                                   : "A member as below and its value";
  const Option entry{Option::Argument, kEntry, meaning, words};
  return {commandFor(table, above + " add", "Add one ", add,
                     {{Option::Argument, kEntry, meaning, anyWord},
                      {Option::OptionalArguments, kMember, member, members}}),
          commandFor(table, above + " set", "Change members of one ", change,
                     {entry, {Option::Arguments, kMember, member, members}}),
          commandFor(table, above + " delete", "Delete one ", remove,
                     {entry,
                      {Option::Flag, kCascade,
                       "Take it out of what refers to it; what cannot be without it goes, too"}})};
}

std::string helpOf(const settings::Table& table) {
  return headingOf(table) +
         membersHelp(table.settings, [](const Setting& setting) { return setting.member; });
}

}  // namespace camcfg::tool::commands
