#include "commands/groups.h"

namespace camcfg::tool {

std::vector<CommandGroup> allGroups() {
  return {filesGroup(), parametersGroup(), systemGroup(), presetGroup(), languageGroup()};
}

}  // namespace camcfg::tool
