#ifndef CAMCFG_TOOL_SETTINGS_NEAREST_H
#define CAMCFG_TOOL_SETTINGS_NEAREST_H

#include <cstdint>
#include <string>
#include <vector>

namespace camcfg::tool::settings {

// What a refusal says of the permitted value that comes nearest to the one refused.

/// "; the nearest permitted is VALUE"; empty for an empty value.
std::string nearestIs(const std::string& value);

/// "70000 is outside 1..65535; the nearest permitted is 65535"
/// @param written  the number as it was written
/// @param number   the number, which is outside
/// @param step     distance of the values that are meant, from `least` on; 1 if they all are
std::string outside(const std::string& written, std::int64_t number, std::int64_t least,
                    std::int64_t most, std::int64_t step = 1);

/// "; the nearest permitted is 'Manual'": the only one of the texts that holds what was written, or
/// else the one that is spelt most like it; empty if none comes near.
std::string nearestOf(const std::string& written, const std::vector<std::string>& texts);

/// "; the nearest permitted is 'TEX'": the text cut to so many bytes, between two characters.
std::string nearestOfLength(const std::string& text, std::size_t most);

}  // namespace camcfg::tool::settings

#endif
