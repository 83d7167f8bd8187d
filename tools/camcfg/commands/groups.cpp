#include "commands/groups.h"

namespace camcfg::tool {

std::vector<CommandGroup> allGroups() {
  return {filesGroup(),    parametersGroup(), systemGroup(), networkGroup(),
          presetGroup(),   streamGroup(),     liveGroup(),   graphGroup(),
          exchangeGroup(), languageGroup(),   helpGroup()};
}

}  // namespace camcfg::tool
