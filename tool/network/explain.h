#ifndef CAMCFG_TOOL_NETWORK_EXPLAIN_H
#define CAMCFG_TOOL_NETWORK_EXPLAIN_H

#include <string>

#include "device/explanation.h"

namespace camcfg::tool::network {

/// Lookups are tried in the main copy, or else in the next good one.
/// @param field  only this field; empty: all
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainCard(const std::string& card, const std::string& field);

}  // namespace camcfg::tool::network

#endif
