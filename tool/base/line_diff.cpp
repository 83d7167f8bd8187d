#include "base/line_diff.h"

#include <algorithm>
#include <vector>

#include "base/concat.h"
#include "base/plain_text.h"

namespace camcfg::tool {
namespace {

using Lines = std::vector<std::string>;

// Beyond this many pairs of lines, all that is between the first and the last change is shown.
constexpr std::size_t kMostPairs = 4000000;

struct Range {
  std::size_t begin;
  std::size_t end;
};

// Which lines two texts have in common, in the order of both.
class Common {
 public:
  Common(const Lines& before, const Range& old, const Lines& after, const Range& fresh)
      : columns_(fresh.end - fresh.begin + 1), lengths_((old.end - old.begin + 1) * columns_) {
    for (std::size_t i = old.end - old.begin; i-- > 0;)
      for (std::size_t j = columns_ - 1; j-- > 0;)
        at(i, j) = before[old.begin + i] == after[fresh.begin + j]
                       ? at(i + 1, j + 1) + 1
                       : std::max(at(i + 1, j), at(i, j + 1));
  }

  // Whether the longest common part is as long without a line of the old text.
  bool goesFirst(std::size_t i, std::size_t j) { return at(i + 1, j) >= at(i, j + 1); }

 private:
  unsigned& at(std::size_t i, std::size_t j) { return lengths_[i * columns_ + j]; }

  std::size_t columns_;
  std::vector<unsigned> lengths_;
};

Lines linesOf(std::string_view text) {
  Lines lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    lines.emplace_back(text.substr(at, end - at));
    at = end + 1;
  }
  return lines;
}

class Listing {
 public:
  Listing(const Lines& before, const Lines& after) : before_(before), after_(after) {}

  void add(const Range& old, const Range& fresh) {
    if (old.begin == old.end && fresh.begin == fresh.end) return;
    text_ += concat("@@ -", shown(old), " +", shown(fresh), " @@\n");
    for (std::size_t i = old.begin; i < old.end; ++i)
      text_ += concat("-", printable(before_[i]), "\n");
    for (std::size_t i = fresh.begin; i < fresh.end; ++i)
      text_ += concat("+", printable(after_[i]), "\n");
  }

  const std::string& text() const { return text_; }

 private:
  static std::string shown(const Range& range) {
    const std::size_t count = range.end - range.begin;
    return concat(range.begin + (count == 0 ? 0 : 1), ",", count);
  }

  const Lines& before_;
  const Lines& after_;
  std::string text_;
};

void addChanges(const Lines& before, const Range& all, const Lines& after, const Range& other,
                Listing& listing) {
  if ((all.end - all.begin) * (other.end - other.begin) > kMostPairs)
    return listing.add(all, other);
  Common common(before, all, after, other);
  std::size_t i = all.begin;
  std::size_t j = other.begin;
  std::size_t gone = i;
  std::size_t come = j;
  const auto flush = [&] { listing.add({gone, i}, {come, j}); };
  while (i < all.end || j < other.end) {
    if (i < all.end && j < other.end && before[i] == after[j]) {
      flush();
      gone = ++i;
      come = ++j;
    } else if (j == other.end ||
               (i < all.end && common.goesFirst(i - all.begin, j - other.begin))) {
      ++i;
    } else {
      ++j;
    }
  }
  flush();
}

}  // namespace

std::string lineDiff(const std::string& name, std::string_view before, std::string_view after) {
  if (before == after) return "";
  const Lines old = linesOf(before);
  const Lines fresh = linesOf(after);
  std::size_t same = 0;
  while (same < old.size() && same < fresh.size() && old[same] == fresh[same]) ++same;
  std::size_t end = 0;
  while (end < old.size() - same && end < fresh.size() - same &&
         old[old.size() - end - 1] == fresh[fresh.size() - end - 1])
    ++end;
  Listing listing(old, fresh);
  addChanges(old, {same, old.size() - end}, fresh, {same, fresh.size() - end}, listing);
  return concat("--- ", printable(name), "\n+++ ", printable(name), "\n", listing.text());
}

}  // namespace camcfg::tool
