#ifndef CAMCFG_TOOL_DEVICE_HEALTH_H
#define CAMCFG_TOOL_DEVICE_HEALTH_H

#include <string>

#include "base/outcome.h"
#include "device/file_set.h"

namespace camcfg::tool::device {

/// Looks at every copy of every file, sorted by name, and changes nothing. A file that the library
/// works on is reported even if it exists nowhere.
/// @return the device's "health"; "files", "copies" and what the next start does to them;
///         "findings": what is wrong and what becomes of it. The status is done, degraded (a main
///         copy can be used, or start-up brings it back) or unusable.
Outcome checkHealth();

/// What follows after the fault of a main copy that start-up verification does not bring back.
std::string outlookFor(const ConfigFile& file);

}  // namespace camcfg::tool::device

#endif
