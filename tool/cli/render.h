#ifndef CAMCFG_TOOL_CLI_RENDER_H
#define CAMCFG_TOOL_CLI_RENDER_H

#include <string>

#include "cli/answer.h"

namespace camcfg::tool::cli {

/// Where an answer is going to be read.
struct Look {
  bool isTerminal = false;  ///< control characters are written out everywhere
  bool colours = false;
};

/// The answer as a person reads it: its layout, block by block.
std::string renderText(const Answer& answer, const Look& look = {});

/// The answer as a program reads it: its value. Control characters are escaped, those beyond ASCII
/// too; bytes that are not UTF-8 become U+FFFD.
std::string renderJson(const Answer& answer);

}  // namespace camcfg::tool::cli

#endif
