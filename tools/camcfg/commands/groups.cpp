#include "commands/groups.h"

namespace camcfg::tool {

std::vector<CommandGroup> allGroups() {
  return {statusGroup(),   filesGroup(),       parametersGroup(), explainGroup(), systemGroup(),
          networkGroup(),  presetGroup(),      streamGroup(),     liveGroup(),    graphGroup(),
          exchangeGroup(), differencesGroup(), resetGroup(),      languageGroup()};
}

}  // namespace camcfg::tool
