#ifndef CAMCFG_TOOL_DOCUMENT_HEALTH_H
#define CAMCFG_TOOL_DOCUMENT_HEALTH_H

#include <string>
#include <vector>

#include "base/outcome.h"

namespace camcfg::tool::document {

/// The state of every copy and what the next start does to it, as `status` shows it: a device is not
/// well either whose files load, but not all that is in them.
/// @throws Refusal if there is no device
Outcome deviceHealth();

/// What is in files that load and cannot be read, a finding each. An outcome that was well is degraded by
/// it.
std::vector<std::string> findUnreadSections(Outcome& outcome);

}  // namespace camcfg::tool::document

#endif
