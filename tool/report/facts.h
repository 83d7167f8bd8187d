#ifndef CAMCFG_TOOL_REPORT_FACTS_H
#define CAMCFG_TOOL_REPORT_FACTS_H

#include <string>

#include "base/json.h"

namespace camcfg::tool::report {

/// All that a report says of a device, secrets masked. What cannot be read is an object with "fault" in place
/// of its value. Nothing is changed.
///
/// "made": "by", "at", "command", "anonymous"; "system": as `system` shows it; "health": as `status` has it, each copy
/// with its "checksum"; "findings": what is wrong, worst first, see findingsOf; "notes": files that cannot be read, and what
/// is shown in place of them; "wiring": as `graph` has it,
/// and "remarks" on it; "services": see servicesOf; "network", "presets": as exported; "changed": what
/// differs from the factory set, as `diff` has it; "history": changes, the latest first, each with its
/// "changes"; "sections": see sectionsOf.
/// @param isDevice  false: there are main copies only, and nothing is said of what else a device has
/// @throws Refusal if there is no device
Json factsOf(bool isDevice);

/// The member of an object that holds why the rest of it cannot be read.
constexpr char kFault[] = "fault";

inline bool isFault(const Json& fact) {
  return fact.is_object() && fact.contains(kFault);
}

}  // namespace camcfg::tool::report

#endif
