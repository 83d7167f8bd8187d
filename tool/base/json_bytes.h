#ifndef CAMCFG_TOOL_BASE_JSON_BYTES_H
#define CAMCFG_TOOL_BASE_JSON_BYTES_H

#include <functional>
#include <string>

#include "base/json.h"

namespace camcfg::tool {

// JSON is UTF-8. A text that is not is written as its bytes: {"$bytes": "4e6f72fc"}.

/// The value with such an object in place of each text that is not UTF-8.
Json withBytes(const Json& value);

/// The value with the texts that such objects stand for.
/// @param place   of the value
/// @param refuse  is called with the place of each object that stands for none, and why
Json withTexts(const Json& value, const std::string& place,
               const std::function<void(const std::string& place, const std::string& why)>& refuse);

}  // namespace camcfg::tool

#endif
