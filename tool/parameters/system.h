#ifndef CAMCFG_TOOL_PARAMETERS_SYSTEM_H
#define CAMCFG_TOOL_PARAMETERS_SYSTEM_H

#include "base/json.h"

namespace camcfg::tool::parameters {

/// The device's "name", "model", "language" and "ports"; null what is not there.
/// @throws Refusal if the file is unusable
Json systemJson();

}  // namespace camcfg::tool::parameters

#endif
