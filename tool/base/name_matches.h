#ifndef CAMCFG_TOOL_BASE_NAME_MATCHES_H
#define CAMCFG_TOOL_BASE_NAME_MATCHES_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace camcfg::tool {

constexpr std::size_t kNoMatch = static_cast<std::size_t>(-1);

/// What lookups by the beginning of a name make of one name among others.
struct NameMatches {
  std::size_t same;    ///< the first of exactly this name: itself or one before it
  std::size_t longer;  ///< the first of a longer name that begins with this one; kNoMatch if none

  /// What a lookup finds.
  std::size_t answer() const { return same < longer ? same : longer; }
};

/// The matches of each name, in the order given, which is that of the document. Takes time for
/// sorting only, however many names begin one another.
std::vector<NameMatches> matchNames(const std::vector<std::string_view>& names);

}  // namespace camcfg::tool

#endif
