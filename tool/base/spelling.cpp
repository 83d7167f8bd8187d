#include "base/spelling.h"

#include <algorithm>
#include <numeric>

#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

constexpr std::size_t kLongestWord = 64;

// Letters to insert, drop, change or swap with their neighbour to get from one word to the other.
std::size_t distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> before(b.size() + 1);
  std::vector<std::size_t> above(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(above.begin(), above.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
      row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + change});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before.swap(above);
    above.swap(row);
  }
  return above[b.size()];
}

}  // namespace

std::string nearestWord(const std::string& written, const std::vector<std::string>& words) {
  if (written.size() > kLongestWord) return "";
  const std::string sought = lowered(written);
  std::size_t least = 1 + std::max<std::size_t>(1, written.size() / 3);
  const std::string* nearest = nullptr;
  for (const std::string& word : words) {
    if (word.size() > kLongestWord) continue;
    const std::size_t found = distance(sought, lowered(word));
    if (found >= least) continue;
    least = found;
    nearest = &word;
  }
  return nearest == nullptr ? "" : *nearest;
}

std::string didYouMean(const std::string& written, const std::vector<std::string>& words) {
  const std::string nearest = nearestWord(written, words);
  return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

}  // namespace camcfg::tool
