#include <algorithm>
#include <list>
#include <string>

#include "commands/groups.h"
#include "commands/listing.h"
#include "media/media.h"

namespace camcfg::tool::commands {
namespace {

using settings::Setting;
using settings::Table;

constexpr char kShowSecrets[] = "--show-secrets";

bool hasSecrets(const Table& table) {
  return std::any_of(table.settings.begin(), table.settings.end(),
                     [](const Setting& setting) { return setting.masked != nullptr; });
}

cli::Command commandFor(const Table& table) {
  // Kept for as long as the program runs, as other commands' names are.
  static std::list<std::string> texts;
  const char* name = texts.emplace_back("live " + std::string(table.word)).c_str();
  const char* help = texts.emplace_back("List the " + std::string(table.entry) + "s").c_str();
  cli::Command command{name, help, {}, [&table](const cli::Arguments& arguments) {
                         return listingOf(table,
                                          hasSecrets(table) && arguments.given(kShowSecrets));
                       }};
  if (hasSecrets(table))
    command.options = {{cli::Option::Flag, kShowSecrets, "Show passwords as they are stored"}};
  return command;
}

}  // namespace

cli::CommandGroup liveGroup() {
  cli::CommandGroup group{"Live media",
                          {{"live", "Show what the live media services send", {}, nullptr}}};
  for (const Table* table : settings::liveTables()) group.commands.push_back(commandFor(*table));
  return group;
}

}  // namespace camcfg::tool::commands
