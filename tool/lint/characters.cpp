#include <algorithm>
#include <iterator>
#include <string>

#include "base/concat.h"
#include "base/plain_text.h"
#include "lint/item.h"
#include "lint/marked_text.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

// Characters that take no room, and a space that does not look otherwise than another one. Joiners
// are letters of some scripts.
constexpr std::string_view kInvisible[] = {"\u00a0", "\u00ad", "\u200b", "\u200e",
                                           "\u200f", "\u2060", "\ufeff"};

bool hasInvisible(std::string_view name) {
  return hasHighBytes(name) &&
         std::any_of(std::begin(kInvisible), std::end(kInvisible), [&](std::string_view character) {
           return name.find(character) != std::string_view::npos;
         });
}

// What follows the first letter where UTF-8 was taken for Latin 1 and encoded again, if no text can
// mean it: quotation marks and dashes come after that letter in sound texts, too.
bool isSecondOfTwo(std::string_view text) {
  constexpr std::string_view kOthers[] = {
      "\u0152", "\u0153", "\u0160", "\u0161", "\u0178", "\u017d", "\u017e", "\u0192", "\u02c6",
      "\u02dc", "\u201a", "\u201e", "\u2020", "\u2021", "\u2030", "\u20ac", "\u2122"};
  constexpr std::string_view kSound[] = {"\u00a0", "\u00bb"};
  const auto isHere = [&](std::string_view character) { return beginsWith(text, character); };
  if (std::any_of(std::begin(kSound), std::end(kSound), isHere)) return false;
  return isHere("\xc2") || std::any_of(std::begin(kOthers), std::end(kOthers), isHere);
}

bool isEncodedTwice(std::string_view text) {
  if (text.find("\u00e2\u20ac") != std::string_view::npos) return true;
  for (const std::string_view first : {"\u00c2", "\u00c3"})
    for (std::size_t at = text.find(first); at != std::string_view::npos;
         at = text.find(first, at + first.size()))
      if (isSecondOfTwo(text.substr(at + first.size()))) return true;
  return false;
}

// What a value holds may be a secret.
void checkValue(const MarkedText& text, const Markup& piece, const MarkupAttribute& attribute,
                Findings& findings) {
  if (!hasHighBytes(attribute.value)) return;
  const auto add = [&](const char* what) {
    findings.add(kDamagedText, text.lineOf(attribute.name),
                 concat(tag(piece.name), ": \"", clipped(attribute.name), "\" ", what));
  };
  if (attribute.value.find(kReplacement) != std::string_view::npos)
    add("holds U+FFFD, which stands for a lost character");
  else if (isEncodedTwice(attribute.value))
    add("holds characters of UTF-8 that was encoded twice");
}

}  // namespace

void checkCharacters(const MarkedText& text, Findings& findings) {
  for (const Markup& piece : text.pieces) {
    if (piece.isElement() && hasInvisible(piece.name))
      findings.add(kInvisibleName, text.lineOf(piece.all),
                   tag(piece.name) + " has a character in its name that nobody sees");
    for (const MarkupAttribute& attribute : piece.attributes) {
      if (hasInvisible(attribute.name))
        findings.add(kInvisibleName, text.lineOf(attribute.name),
                     concat(tag(piece.name), ": \"", clipped(attribute.name),
                            "\" has a character in its name that nobody sees"));
      checkValue(text, piece, attribute, findings);
    }
  }
}

}  // namespace camcfg::tool::lint
