#include "commands/groups.h"

#include "commands/vocabulary.h"

namespace camcfg::tool {

std::vector<CommandGroup> allGroups() {
  std::vector<CommandGroup> groups = {
      filesGroup(),    lintGroup(),   parametersGroup(), systemGroup(), networkGroup(),
      presetGroup(),   streamGroup(), liveGroup(),       graphGroup(),  exchangeGroup(),
      languageGroup(), helpGroup(),   completeGroup()};
  addWords(groups);
  return groups;
}

}  // namespace camcfg::tool
