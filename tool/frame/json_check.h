#ifndef CAMCFG_TOOL_FRAME_JSON_CHECK_H
#define CAMCFG_TOOL_FRAME_JSON_CHECK_H

#include <cstddef>
#include <string>

namespace camcfg::tool {

/// Objects and lists that may stand inside one another in a document.
constexpr std::size_t kDeepestNesting = 32;
/// Values that may stand in one list or object. Members are searched for one by one, so that the
/// time for a document grows with the square of this.
constexpr std::size_t kMostValues = 2000;

/// Looks through a JSON text before anything is made of it.
/// @return the byte, counted from 1, from which on it is no JSON; 0 if it is
/// @throws Refusal  it exceeds a limit, whatever comes behind
std::size_t checkJson(const std::string& text);

}  // namespace camcfg::tool

#endif
