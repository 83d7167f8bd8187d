#ifndef CAMCFG_TOOL_REPORT_COMPARISON_H
#define CAMCFG_TOOL_REPORT_COMPARISON_H

#include <string>
#include <vector>

#include "base/host.h"
#include "base/json.h"

namespace camcfg::tool::report {

/// What the device is called that has no name of its own.
constexpr char kThisDevice[] = "this device";

/// What differs between this device and another one, secrets masked: "device" and "other", what they are called,
/// "differences" as `diff` has them, and "notCompared".
/// @param name   what the other one is called
/// @param files  the main copies of its tree ("cfg0/mpp_cfg.xml"), or a document of it
/// @throws Refusal  none of these files exists, or it is no document
Json comparisonWith(const std::string& name, const std::vector<HostFile>& files);

/// The page that shows it.
std::string comparisonPage(const Json& comparison);

}  // namespace camcfg::tool::report

#endif
