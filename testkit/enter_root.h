#ifndef CAMCFG_TESTKIT_ENTER_ROOT_H
#define CAMCFG_TESTKIT_ENTER_ROOT_H

#include <string>

namespace camcfg {

/// Makes a directory the root of this process, through a user namespace of its own if the
/// process may not do that directly. Call while the process has one thread.
/// @return an empty text, or what went wrong
std::string enterRoot(const std::string& directory);

}  // namespace camcfg

#endif
