#ifndef CAMCFG_TOOL_REPORT_FLEET_H
#define CAMCFG_TOOL_REPORT_FLEET_H

#include <string>
#include <vector>

#include "base/host.h"
#include "base/json.h"

namespace camcfg::tool::report {

/// What many devices have in common, and which of them differ. A value that more than half of the devices
/// have is that of the majority; where none is, as with addresses, nobody drifts.
/// @param files  documents as `export` prints them, or facts as `report --json` does, each called after its
///               device: "venue-7.json"
/// @return "devices": for each its "name", "health", "errors" and "warnings" (null where only a document is at
///         hand), "version", and "drift": "place", "value" and that of the "majority"; "unread": "name" and "reason"
Json fleetOf(const std::vector<HostFile>& files);

/// The page that shows it, a row for each device.
/// @param reports  names of the pages next to it: "venue-7.html"
std::string fleetPage(const Json& fleet, const std::vector<std::string>& reports);

}  // namespace camcfg::tool::report

#endif
