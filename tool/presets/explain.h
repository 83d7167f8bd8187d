#ifndef CAMCFG_TOOL_PRESETS_EXPLAIN_H
#define CAMCFG_TOOL_PRESETS_EXPLAIN_H

#include <string>

#include "device/explanation.h"

namespace camcfg::tool::presets {

/// Lookups are tried in the main copy, or else in the next good one.
/// @param word  a word of digits is an id, any other a description
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainPreset(const std::string& word);

}  // namespace camcfg::tool::presets

#endif
