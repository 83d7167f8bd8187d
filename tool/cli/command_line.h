#ifndef CAMCFG_TOOL_CLI_COMMAND_LINE_H
#define CAMCFG_TOOL_CLI_COMMAND_LINE_H

#include <optional>
#include <string>
#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

/// What a command line asks for.
struct Invocation {
  const Command* command = nullptr;  ///< null: only `answer` is asked for
  Answer answer;                     ///< help, or the tool's version
  Arguments arguments;
  std::optional<std::string> root;  ///< directory of the device; none: this system is the device
  bool json = false;
  bool verbose = false;
  std::string color = "auto";  ///< when answers are coloured: "auto", "always" or "never"
};

/// Reads a command line by the records of the commands.
/// @param groups   the commands; must outlive what is returned
/// @param unnamed  what is asked for where no command is named; null: that is a usage error
/// @throws Refusal with the status of a usage error
Invocation readCommandLine(const std::vector<CommandGroup>& groups, int argc,
                           const char* const* argv, const Command* unnamed = nullptr);

/// What "--help" after a command prints.
/// @param command  the whole name of one of the commands; empty: the tool itself
std::string helpText(const std::vector<CommandGroup>& groups, const std::string& command);

/// What goes with any command that uses the device. These throw nothing.
struct Customs {
  std::function<void(const Command&, const Arguments&)> before;
  std::function<std::vector<std::string>()>
      remarks;                       ///< what is to be said afterwards, a line each
  const char* atTerminal = nullptr;  ///< the command that is run at a terminal where none is named
};

/// Runs the command that a command line asks for and prints its answer.
/// @return the exit status
int runProgram(const std::vector<CommandGroup>& groups, int argc, const char* const* argv,
               const Customs& customs = {});

}  // namespace camcfg::tool::cli

#endif
