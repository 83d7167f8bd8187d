#ifndef CAMCFG_TOOL_DOCUMENT_SECTIONS_H
#define CAMCFG_TOOL_DOCUMENT_SECTIONS_H

#include <vector>

#include "device/section.h"

namespace camcfg::tool::document {

/// All sections, in the order in which they are written.
const std::vector<device::Section>& allSections();

}  // namespace camcfg::tool::document

#endif
