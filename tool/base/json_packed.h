#ifndef CAMCFG_TOOL_BASE_JSON_PACKED_H
#define CAMCFG_TOOL_BASE_JSON_PACKED_H

#include <string>

#include "base/json.h"

namespace camcfg::tool {

// A value as bytes, for another process of this program. Unlike JSON it keeps every text byte by
// byte, whatever its encoding.

std::string packed(const Json& value);

/// @throws std::runtime_error  the bytes are not what packed() made
Json unpacked(const std::string& bytes);

}  // namespace camcfg::tool

#endif
