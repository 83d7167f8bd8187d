#ifndef CAMCFG_TOOL_BASE_SECRET_INPUT_H
#define CAMCFG_TOOL_BASE_SECRET_INPUT_H

#include <string>

namespace camcfg::tool {

/// The next line of standard input, without its end. A terminal is asked for it, and does not show it.
/// @param what  what it is asked for: "password"
/// @throws Refusal  there is none, it has more than a few thousand bytes, or Ctrl-C was pressed
std::string readSecret(const std::string& what);

}  // namespace camcfg::tool

#endif
