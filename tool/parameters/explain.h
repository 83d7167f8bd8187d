#ifndef CAMCFG_TOOL_PARAMETERS_EXPLAIN_H
#define CAMCFG_TOOL_PARAMETERS_EXPLAIN_H

#include <string>

#include "device/explanation.h"

namespace camcfg::tool::parameters {

/// Lookups are tried in the main copy, or else in the next good one.
/// @param name  whole, or the beginning of the name that a lookup finds
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainParameter(const std::string& section, const std::string& name);

}  // namespace camcfg::tool::parameters

#endif
