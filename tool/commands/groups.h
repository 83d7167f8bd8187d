#ifndef CAMCFG_TOOL_COMMANDS_GROUPS_H
#define CAMCFG_TOOL_COMMANDS_GROUPS_H

#include <vector>

#include "cli/command.h"

namespace camcfg::tool::commands {

// One function for each group, in the file of its name.
cli::CommandGroup completeGroup();
cli::CommandGroup exchangeGroup();
cli::CommandGroup explainGroup();
cli::CommandGroup filesGroup();
cli::CommandGroup graphGroup();
cli::CommandGroup helpGroup();
cli::CommandGroup languageGroup();
cli::CommandGroup lintGroup();
cli::CommandGroup liveGroup();
cli::CommandGroup networkGroup();
cli::CommandGroup parametersGroup();
cli::CommandGroup presetGroup();
cli::CommandGroup streamGroup();
cli::CommandGroup systemGroup();

/// All commands, in the order of the help text.
std::vector<cli::CommandGroup> allGroups();

}  // namespace camcfg::tool::commands

#endif
