#ifndef CAMCFG_TOOL_PRESETS_LOOKUP_H
#define CAMCFG_TOOL_PRESETS_LOOKUP_H

#include "device/explanation.h"

namespace camcfg::tool::presets {

/// What a lookup of a preset finds by id.
device::Lookup lookupPreset(tinyxml2::XMLElement& group, int id);

/// What a lookup of a preset finds by the beginning of a description.
device::Lookup lookupPreset(tinyxml2::XMLElement& group, const std::string& description);

}  // namespace camcfg::tool::presets

#endif
