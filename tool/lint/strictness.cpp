#include <algorithm>
#include <string>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/marked_text.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

using Kind = Markup::Kind;

bool isOpenInComment(std::string_view comment) {
  constexpr std::size_t kStart = 4;
  constexpr std::size_t kEnd = 3;
  const std::string_view inner = comment.substr(kStart, comment.size() - kStart - kEnd);
  return inner.find("--") != std::string_view::npos || (!inner.empty() && inner.back() == '-');
}

bool hasBareBracket(const Markup& piece) {
  return std::any_of(piece.attributes.begin(), piece.attributes.end(),
                     [](const MarkupAttribute& attribute) {
                       return attribute.value.find('<') != std::string_view::npos;
                     });
}

bool hasJoinedAttributes(const Markup& piece) {
  const auto areJoined = [](const MarkupAttribute& left, const MarkupAttribute& right) {
    return left.all.data() + left.all.size() == right.all.data();
  };
  return std::adjacent_find(piece.attributes.begin(), piece.attributes.end(), areJoined) !=
         piece.attributes.end();
}

bool isTag(const Markup& piece) {
  return piece.isElement() || piece.kind == Kind::End;
}

/// Something that only lenient readers take.
struct Leniency {
  const char* what;
  bool (*isIn)(const Markup& piece, const MarkedText& text);
};

constexpr Leniency kLeniencies[] = {
    {"a declaration <?...?> is not at the beginning of the file",
     [](const Markup& piece, const MarkedText& text) {
       const std::size_t first = beginsWith(text.bytes, kMarkBytes) ? kMarkBytes.size() : 0;
       return piece.kind == Kind::Declaration && beginsWith(piece.all, "<?xml ") &&
              offsetOf(piece.all, text.bytes) != first;
     }},
    {"a value holds a bare \"<\"",
     [](const Markup& piece, const MarkedText& /*text*/) { return hasBareBracket(piece); }},
    {"there is no space between two attributes",
     [](const Markup& piece, const MarkedText& /*text*/) { return hasJoinedAttributes(piece); }},
    {"there is a space before the name of a tag",
     [](const Markup& piece, const MarkedText& /*text*/) {
       return isTag(piece) && isMarkupSpace(piece.all[1]);
     }},
    {"a comment has \"--\" inside, or ends with \"--->\"",
     [](const Markup& piece, const MarkedText& /*text*/) {
       return piece.kind == Kind::Comment && isOpenInComment(piece.all);
     }},
};

// The first place of each.
void checkLeniency(const Leniency& leniency, const MarkedText& text, Findings& findings) {
  const Markup* first = nullptr;
  int more = -1;
  for (const Markup& piece : text.pieces) {
    if (!leniency.isIn(piece, text)) continue;
    if (first == nullptr) first = &piece;
    ++more;
  }
  if (first != nullptr)
    findings.add(kStrictXml, text.lineOf(first->all),
                 leniency.what + (more == 0 ? "" : concat(", as in ", more, " more places")));
}

void checkSurplus(const MarkedText& text, Findings& findings) {
  if (!text.surplus) return;
  const std::string what =
      concat("</", clipped(text.surplus->name), "> closes nothing that is open here");
  if (text.isCutOff)
    findings.add(kSurplusEnd, text.lineOf(text.surplus->all),
                 what + ": reading ends, and what follows is not there");
  else
    findings.add(kStrictXml, text.lineOf(text.surplus->all), what);
}

void checkLineEnds(const MarkedText& text, Findings& findings) {
  if (text.bytes.find('\r') != std::string_view::npos &&
      text.bytes.find('\n') == std::string_view::npos)
    findings.add(kCarriageReturns, 1, "all lines end in carriage returns only");
}

}  // namespace

MarkedText::MarkedText(const Source& source)
    : kind(source.kind), bytes(source.bytes), pieces(markupIn(bytes)) {
  endAtSurplus();
}

int MarkedText::lineOf(std::size_t at) const {
  if (at < counted_) {
    counted_ = 0;
    line_ = 1;
  }
  const auto* const first = bytes.begin();
  line_ += static_cast<int>(std::count(first + static_cast<std::ptrdiff_t>(counted_),
                                       first + static_cast<std::ptrdiff_t>(at), '\n'));
  counted_ = at;
  return line_;
}

void MarkedText::endAtSurplus() {
  int depth = 0;
  const auto isSurplus = [&](const Markup& piece) {
    if (piece.kind == Kind::Start) ++depth;
    return piece.kind == Kind::End && --depth < 0;
  };
  const auto found = std::find_if(pieces.begin(), pieces.end(), isSurplus);
  if (found == pieces.end()) return;
  surplus = *found;
  isCutOff = std::any_of(found + 1, pieces.end(), [](const Markup& piece) {
    return piece.kind != Kind::Comment &&
           !std::all_of(piece.all.begin(), piece.all.end(), isMarkupSpace);
  });
  pieces.erase(found, pieces.end());
}

void checkStrictness(const MarkedText& text, Findings& findings) {
  for (const Leniency& leniency : kLeniencies) checkLeniency(leniency, text, findings);
  checkSurplus(text, findings);
  checkLineEnds(text, findings);
}

}  // namespace camcfg::tool::lint
