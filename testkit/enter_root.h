#ifndef CAMCFG_TESTKIT_ENTER_ROOT_H
#define CAMCFG_TESTKIT_ENTER_ROOT_H

#include <string>

namespace camcfg {

/// Makes a directory the root of this process, through a user namespace of its own if the
/// process may not do that directly. Call while the process has one thread.
/// @return an empty text, or what went wrong
std::string enterRoot(const std::string& directory);

/// Makes a user namespace, in which this process may change its root and mount. Call while the
/// process has one thread.
/// @param user, group  what this process's own are called inside
/// @return false, with errno set, if it may not
bool enterUserNamespace(unsigned user, unsigned group);

/// What the system lacks that lets no user make a user namespace, and the setting that would permit
/// it if one is known. For the end of a message.
std::string needsUserNamespaces();

}  // namespace camcfg

#endif
