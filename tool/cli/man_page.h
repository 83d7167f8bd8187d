#ifndef CAMCFG_TOOL_CLI_MAN_PAGE_H
#define CAMCFG_TOOL_CLI_MAN_PAGE_H

#include <string>
#include <vector>

#include "cli/command.h"
#include "cli/topic.h"

namespace camcfg::tool::cli {

/// The manual page camcfg(1), for man(1): all commands that are not hidden, with what they take, and
/// all topics. The topics exit-status, environment, files and examples become the sections of these
/// names, the others are in a section of notes.
std::string manPage(const std::vector<CommandGroup>& groups, const std::vector<Topic>& topics);

}  // namespace camcfg::tool::cli

#endif
