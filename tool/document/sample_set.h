#ifndef CAMCFG_TOOL_DOCUMENT_SAMPLE_SET_H
#define CAMCFG_TOOL_DOCUMENT_SAMPLE_SET_H

#include <vector>

#include "device/save.h"

namespace camcfg::tool::document {

/// The main copies of the sample device, for those who have none at hand.
const std::vector<device::Contents>& sampleSet();

}  // namespace camcfg::tool::document

#endif
