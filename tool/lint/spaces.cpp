#include "lint/spaces.h"

#include <algorithm>

#include "base/markup.h"

namespace camcfg::tool::lint {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kLineEnds = "\r\n";

using Parts = std::vector<std::string_view>;

// What is before each end of a line.
void addTrailing(std::string_view gap, Parts& found) {
  for (std::size_t end = gap.find_first_of(kLineEnds); end != std::string_view::npos;
       end = gap.find_first_of(kLineEnds, end + 1)) {
    const std::size_t last =
        end == 0 ? std::string_view::npos : gap.find_last_not_of(kBlanks, end - 1);
    const std::size_t start = last == std::string_view::npos ? 0 : last + 1;
    if (start < end) found.push_back(gap.substr(start, end - start));
  }
}

// White space between two parts of a tag.
void addOfTag(std::string_view gap, Parts& found) {
  if (gap.size() > 1 && gap.find_first_not_of(kBlanks) == std::string_view::npos)
    found.push_back(gap.substr(gap.front() == ' ' ? 1 : 0, gap.size() - 1));
  else
    addTrailing(gap, found);
}

void addOfElement(const Markup& tag, std::string_view bytes, Parts& found) {
  std::size_t at = offsetOf(tag.name, bytes) + tag.name.size();
  const auto pass = [&](std::size_t next) { addOfTag(bytes.substr(at, next - at), found); };
  for (const MarkupAttribute& attribute : tag.attributes) {
    pass(offsetOf(attribute.all, bytes));
    at = offsetOf(attribute.all, bytes) + attribute.all.size();
  }
  const std::size_t mark = tag.kind == Markup::Kind::Empty ? 2 : 1;
  pass(offsetOf(tag.all, bytes) + tag.all.size() - mark);
}

}  // namespace

std::vector<std::string_view> extraSpacesIn(std::string_view bytes) {
  Parts found;
  for (const Markup& piece : markupIn(bytes)) {
    const bool isTag = piece.isElement() || piece.kind == Markup::Kind::End;
    if (isTag)
      addOfElement(piece, bytes, found);
    else if (piece.kind == Markup::Kind::Text &&
             std::all_of(piece.all.begin(), piece.all.end(), isMarkupSpace))
      addTrailing(piece.all, found);
  }
  return found;
}

}  // namespace camcfg::tool::lint
