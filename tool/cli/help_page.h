#ifndef CAMCFG_TOOL_CLI_HELP_PAGE_H
#define CAMCFG_TOOL_CLI_HELP_PAGE_H

#include <string>
#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

constexpr char kTool[] = "camcfg";
constexpr char kAbout[] = "Reads, changes and repairs the settings of a network video device.";

/// What "--help" after a command prints.
/// @param command  one of the commands; null: the tool itself
std::string helpPage(const std::vector<CommandGroup>& groups, const Command* command);

}  // namespace camcfg::tool::cli

#endif
