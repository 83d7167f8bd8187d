#ifndef CAMCFG_TOOL_BASE_CALLER_H
#define CAMCFG_TOOL_BASE_CALLER_H

#include <string>

namespace camcfg::tool {

/// Who started this program, and how.
struct Caller {
  std::string command;  ///< the command line, without the program and '--root', secrets masked
  std::string name;     ///< "admin"; "uid 1000" for a user without a name
};

/// Remembers who started this program. Call before the device's root is entered: from inside, the
/// users of the system are out of reach.
void rememberCaller(int argc, const char* const* argv);

/// What was remembered; empty texts if nothing was.
const Caller& caller();

}  // namespace camcfg::tool

#endif
