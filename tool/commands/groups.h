#ifndef CAMCFG_TOOL_COMMANDS_GROUPS_H
#define CAMCFG_TOOL_COMMANDS_GROUPS_H

#include <vector>

#include "frame/command.h"

namespace camcfg::tool {

// One function for each group, in the file of its name.
CommandGroup completeGroup();
CommandGroup differencesGroup();
CommandGroup exchangeGroup();
CommandGroup explainGroup();
CommandGroup filesGroup();
CommandGroup graphGroup();
CommandGroup helpGroup();
CommandGroup languageGroup();
CommandGroup lintGroup();
CommandGroup liveGroup();
CommandGroup networkGroup();
CommandGroup parametersGroup();
CommandGroup presetGroup();
CommandGroup resetGroup();
CommandGroup statusGroup();
CommandGroup streamGroup();
CommandGroup systemGroup();

/// All commands, in the order of the help text.
std::vector<CommandGroup> allGroups();

}  // namespace camcfg::tool

#endif
