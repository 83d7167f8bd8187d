#ifndef CAMCFG_TOOL_CLI_PROGRAM_H
#define CAMCFG_TOOL_CLI_PROGRAM_H

#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

/// Runs the command that a command line asks for and prints its answer.
/// @return the exit status
int runProgram(const std::vector<CommandGroup>& groups, int argc, const char* const* argv);

}  // namespace camcfg::tool::cli

#endif
