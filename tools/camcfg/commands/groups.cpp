#include "commands/groups.h"

namespace camcfg::tool {

std::vector<CommandGroup> allGroups() {
  return {filesGroup(),   lintGroup(),     parametersGroup(), systemGroup(),
          networkGroup(), presetGroup(),   streamGroup(),     liveGroup(),
          graphGroup(),   exchangeGroup(), languageGroup()};
}

}  // namespace camcfg::tool
