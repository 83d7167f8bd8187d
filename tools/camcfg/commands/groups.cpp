#include "commands/groups.h"

namespace camcfg::tool {

std::vector<CommandGroup> allGroups() {
  return {filesGroup(),   parametersGroup(), systemGroup(),
          networkGroup(), presetGroup(),     languageGroup()};
}

}  // namespace camcfg::tool
