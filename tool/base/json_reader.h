#ifndef CAMCFG_TOOL_BASE_JSON_READER_H
#define CAMCFG_TOOL_BASE_JSON_READER_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool {

/// Objects and lists that may be inside one another in a document.
constexpr std::size_t kDeepestNesting = 32;
/// Values that may be in one list or object. Members are searched for one by one, so that the
/// time for a document grows with the square of this.
constexpr std::size_t kMostValues = 2000;

/// What a text holds.
struct JsonText {
  Json value;                         ///< null if the text is no JSON
  std::vector<std::string> repeated;  ///< places of members that an object has already; ignored
  std::size_t fault = 0;  ///< byte, counted from 1, where it stops being JSON; 0: nowhere
  std::string reason;     ///< why; repeats nothing of the text
};

/// Reads a JSON text.
/// @throws Refusal  it exceeds a limit, whatever comes after
JsonText readJson(const std::string& text);

/// A value as bytes, for another process of this program. Unlike JSON it keeps every text byte by
/// byte, whatever its encoding.
std::string packed(const Json& value);

/// @throws std::runtime_error  the bytes are not what packed() made
Json unpacked(const std::string& bytes);

}  // namespace camcfg::tool

#endif
