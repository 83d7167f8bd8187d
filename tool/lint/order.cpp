#include "lint/order.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

#include "base/markup.h"
#include "base/plain_text.h"

namespace camcfg::tool::lint {
namespace {

using Kind = Markup::Kind;

/// An element with what moves with it: the comments right before it, and one after it in its line.
struct Block {
  std::string_view name;
  std::size_t begin;
  std::size_t end;
  int line;  ///< of its own
};

struct Level {
  std::size_t depth = 0;
  std::vector<Block> blocks{};
};

constexpr std::size_t kNowhere = std::string_view::npos;

std::size_t lineEndsIn(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

bool isForLint(const Markup& comment) {
  constexpr std::size_t kStart = 4;
  const std::size_t first = comment.all.find_first_not_of(" \t\r\n", kStart);
  return first != kNowhere && beginsWith(comment.all.substr(first), "lint:");
}

/// Finds the elements inside each element.
class Levels {
 public:
  explicit Levels(std::string_view bytes) : bytes_(bytes) {}

  std::vector<Level> read() {
    open_.push_back({});
    for (const Markup& piece : markupIn(bytes_)) {
      take(piece);
      line_ += static_cast<int>(lineEndsIn(piece.all));
    }
    return std::move(levels_);
  }

 private:
  struct Open {
    Level level{};
    std::size_t lead = kNowhere;  // where the comments begin that go with the next element
    std::size_t breaks = 0;       // ends of lines since what was last
    bool isAfterElement = false;  // in its line
    bool isKept = false;          // a comment for lint goes with whatever follows
    std::string_view name{};
    std::size_t begin = 0;
    int line = 0;
  };

  std::size_t endOf(const Markup& piece) const {
    return offsetOf(piece.all, bytes_) + piece.all.size();
  }

  void take(const Markup& piece) {
    if (piece.kind == Kind::Start) return open(piece);
    if (piece.kind == Kind::End) {
      const Open inner = std::move(open_.back());
      open_.pop_back();
      if (open_.empty()) return open_.push_back({});
      levels_.push_back(inner.level);
      return add({inner.name, inner.begin, endOf(piece), inner.line});
    }
    if (piece.kind == Kind::Empty) return add({piece.name, beginOf(piece), endOf(piece), line_});
    Open& outer = open_.back();
    if (piece.kind == Kind::Comment)
      takeComment(piece, outer);
    else if (std::all_of(piece.all.begin(), piece.all.end(), isMarkupSpace))
      outer.breaks += lineEndsIn(piece.all);
    else
      outer = afterOther(outer);
  }

  // Where an element's block begins.
  std::size_t beginOf(const Markup& piece) {
    const Open& outer = open_.back();
    const bool isLed = outer.lead != kNowhere && (outer.isKept || outer.breaks < 2);
    return isLed ? outer.lead : offsetOf(piece.all, bytes_);
  }

  void open(const Markup& piece) {
    Open inner;
    inner.level.depth = open_.size();
    inner.name = piece.name;
    inner.begin = beginOf(piece);
    inner.line = line_;
    open_.push_back(std::move(inner));
  }

  void add(const Block& block) {
    Open& outer = open_.back();
    outer.level.blocks.push_back(block);
    outer.lead = kNowhere;
    outer.breaks = 0;
    outer.isAfterElement = true;
    outer.isKept = false;
  }

  void takeComment(const Markup& piece, Open& outer) const {
    const bool isOfElement = outer.isAfterElement && outer.breaks == 0 && !isForLint(piece);
    if (isOfElement) {
      outer.level.blocks.back().end = endOf(piece);
      return;
    }
    if (outer.lead == kNowhere || (outer.breaks > 1 && !outer.isKept))
      outer.lead = offsetOf(piece.all, bytes_);
    outer.isKept = outer.isKept || isForLint(piece);
    outer.isAfterElement = false;
    outer.breaks = 0;
  }

  static Open afterOther(Open outer) {
    outer.lead = kNowhere;
    outer.breaks = 0;
    outer.isAfterElement = outer.isKept = false;
    return outer;
  }

  std::string_view bytes_;
  int line_ = 1;
  std::vector<Open> open_;
  std::vector<Level> levels_;
};

// The order of blocks in which the ones at these lines come before those that hide them.
std::vector<std::size_t> orderOf(const std::vector<Block>& blocks, const std::set<int>& lines,
                                 std::vector<Moved>& moved) {
  std::vector<std::size_t> order(blocks.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::map<std::string_view, int> counts;
  for (const Block& block : blocks) ++counts[block.name];
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const std::string_view name = blocks[i].name;
    if (lines.count(blocks[i].line) == 0 || counts[name] != 1) continue;
    const auto own = std::find(order.begin(), order.end(), i);
    const auto longer = std::find_if(
        order.begin(), own, [&](std::size_t each) { return beginsWith(blocks[each].name, name); });
    if (longer == own) continue;
    moved.push_back({blocks[i].line, std::string(name), std::string(blocks[*longer].name)});
    std::rotate(longer, own, own + 1);
  }
  return order;
}

// What is between the blocks stays where it is.
std::string rearranged(const std::string& bytes, const std::vector<Block>& blocks,
                       const std::vector<std::size_t>& order) {
  std::string text;
  std::size_t at = 0;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    text.append(bytes, at, blocks[i].begin - at);
    const Block& block = blocks[order[i]];
    text.append(bytes, block.begin, block.end - block.begin);
    at = blocks[i].end;
  }
  return text.append(bytes, at, std::string::npos);
}

}  // namespace

std::string inOrder(const std::string& original, const std::set<int>& lines,
                    std::vector<Moved>& moved) {
  std::string bytes = original;
  if (lines.empty()) return bytes;
  // Nothing moves out of its element, so that those that are found first stay where they are while
  // elements inside them move.
  std::vector<Level> levels = Levels(original).read();
  std::stable_sort(levels.begin(), levels.end(),
                   [](const Level& a, const Level& b) { return a.depth > b.depth; });
  for (const Level& level : levels)
    bytes = rearranged(bytes, level.blocks, orderOf(level.blocks, lines, moved));
  return bytes;
}

}  // namespace camcfg::tool::lint
