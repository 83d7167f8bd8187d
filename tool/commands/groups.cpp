#include "commands/groups.h"

#include "commands/words.h"

namespace camcfg::tool::commands {

std::vector<cli::CommandGroup> allGroups() {
  std::vector<cli::CommandGroup> groups = {
      statusGroup(), filesGroup(),    lintGroup(),        parametersGroup(), explainGroup(),
      systemGroup(), networkGroup(),  presetGroup(),      streamGroup(),     liveGroup(),
      graphGroup(),  exchangeGroup(), differencesGroup(), resetGroup(),      languageGroup(),
      helpGroup(),   completeGroup()};
  addWords(groups);
  return groups;
}

}  // namespace camcfg::tool::commands
