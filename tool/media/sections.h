#ifndef CAMCFG_TOOL_MEDIA_SECTIONS_H
#define CAMCFG_TOOL_MEDIA_SECTIONS_H

#include <vector>

#include "device/section.h"

namespace camcfg::tool::media {

/// The sections of the media file.
std::vector<device::Section> sections();

}  // namespace camcfg::tool::media

#endif
