#ifndef CAMCFG_TOOL_BASE_JSON_PLACE_H
#define CAMCFG_TOOL_BASE_JSON_PLACE_H

#include <cstddef>
#include <string>

namespace camcfg::tool {

// Places of a document as messages name them: "live.srt[1].port".

/// "PLACE.NAME", and "PLACE["NAME"]" for a name that is no plain word.
std::string memberPlace(const std::string& place, const std::string& name);

/// "PLACE[INDEX]"
std::string elementPlace(const std::string& place, std::size_t index);

/// A text for a message, cut if it is long.
std::string shortened(const std::string& text);

}  // namespace camcfg::tool

#endif
