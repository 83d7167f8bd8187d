#include "base/name_matches.h"

#include <algorithm>
#include <numeric>

#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

using Names = std::vector<std::string_view>;

std::vector<std::size_t> sortedByName(const Names& names) {
  std::vector<std::size_t> order(names.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const int comparison = names[a].compare(names[b]);
    return comparison < 0 || (comparison == 0 && a < b);
  });
  return order;
}

// A name with all those that begin with it, which come right after it when sorted.
struct Family {
  std::string_view name;
  std::size_t first;
};

}  // namespace

std::vector<NameMatches> matchNames(const Names& names) {
  const std::vector<std::size_t> order = sortedByName(names);
  std::vector<NameMatches> matches(names.size());
  std::vector<Family> families;  // those after it, the nearest last
  for (std::size_t end = order.size(), begin; end > 0; end = begin) {
    const std::string_view name = names[order[end - 1]];
    begin = end - 1;
    while (begin > 0 && names[order[begin - 1]] == name) --begin;

    NameMatches match{order[begin], kNoMatch};
    for (; !families.empty() && beginsWith(families.back().name, name); families.pop_back())
      match.longer = std::min(match.longer, families.back().first);
    for (std::size_t i = begin; i < end; ++i) matches[order[i]] = match;
    families.push_back({name, match.answer()});
  }
  return matches;
}

}  // namespace camcfg::tool
