#ifndef CAMCFG_TOOL_CLI_RAW_LINE_H
#define CAMCFG_TOOL_CLI_RAW_LINE_H

#include <string>
#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

// What can be seen from a command line that is not parsed yet, and may make no sense.

/// How many of its words are not those of the program that a command becomes, or of the command that
/// it carries out; the first of these counts.
int wordsOfTheTool(const std::vector<CommandGroup>& groups, int argc, const char* const* argv);

/// The first word of the command, if nothing but options of the tool that it can be run with comes
/// before it; else empty.
std::string commandWordIn(int argc, const char* const* argv);

/// Whether it asks for answers in JSON.
bool asksForJson(const std::vector<CommandGroup>& groups, int argc, const char* const* argv);

/// When it wants colours: "auto" if it does not say.
std::string colorIn(int argc, const char* const* argv);

}  // namespace camcfg::tool::cli

#endif
