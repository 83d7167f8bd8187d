#ifndef CAMCFG_TOOL_BASE_DECIMAL_H
#define CAMCFG_TOOL_BASE_DECIMAL_H

#include <charconv>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

namespace camcfg::tool {

/// The number that a text is from end to end: digits, with a "-" before them if it is negative. One
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

/// The same, if it fits into 32 bits, which is what files and the library hold.
inline std::optional<std::int32_t> decimal32(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::optional<long long> number = decimal(text);
  if (!number || *number < Limits::min() || *number > Limits::max()) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

}  // namespace camcfg::tool

#endif
