#ifndef CAMCFG_TOOL_BASE_DECIMAL_H
#define CAMCFG_TOOL_BASE_DECIMAL_H

#include <charconv>
#include <limits>
#include <optional>
#include <string_view>

namespace camcfg::tool {

/// The number that a text is from end to end: digits, with a "-" in front if it is negative. One
/// that does not fit is the nearest that does.
inline std::optional<long long> decimal(std::string_view text) {
  using Limits = std::numeric_limits<long long>;
  long long number = 0;
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number);
  if (stopped != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range)
    return text.front() == '-' ? Limits::min() : Limits::max();
  return number;
}

}  // namespace camcfg::tool

#endif
