#ifndef CAMCFG_TOOL_LINT_ORDER_H
#define CAMCFG_TOOL_LINT_ORDER_H

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace camcfg::tool::lint {

/// An element that was moved before another one.
struct Moved {
  int line;  ///< where it was
  std::string name;
  std::string before;
};

/// Moves elements before the first one next to them whose longer name begins with theirs, each with the
/// comments right before it. Those that share a name with another stay: which of them is meant is not
/// known.
/// @param lines  where elements are that may be moved
/// @param moved  receives what was moved
std::string inOrder(const std::string& original, const std::set<int>& lines,
                    std::vector<Moved>& moved);

}  // namespace camcfg::tool::lint

#endif
