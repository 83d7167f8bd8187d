#ifndef CAMCFG_TOOL_PRESETS_SECTION_H
#define CAMCFG_TOOL_PRESETS_SECTION_H

#include "device/section.h"

namespace camcfg::tool::presets {

device::Section presetsSection();

}  // namespace camcfg::tool::presets

#endif
