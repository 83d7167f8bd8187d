#ifndef CAMCFG_TOOL_DEVICE_VIEW_H
#define CAMCFG_TOOL_DEVICE_VIEW_H

#include <string>
#include <vector>

namespace camcfg::tool::device {

/// Makes this process see this system as it is, but with a device's settings where a device has
/// them: "/cfg0", "/cfg1", "/app" and "/run/camcfg" are those below the directory, and only those.
/// Nobody else sees that; nothing is copied, and nothing is left when the last process ends that this
/// one starts or becomes. Works as root, and as a user where the system permits user namespaces.
/// Call while the process has one thread.
/// @param directory  the device's root
/// @throws Refusal
void seeDevice(const std::string& directory);

/// Makes this process another program, found by PATH as a shell would.
/// @param words  its name and its arguments
/// @throws Refusal  with status 127 if it is not found, 126 if it cannot be run
[[noreturn]] void becomeProgram(const std::vector<std::string>& words);

}  // namespace camcfg::tool::device

#endif
