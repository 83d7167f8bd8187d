#include <algorithm>
#include <cstdlib>
#include <optional>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/marked_text.h"
#include "lint/rules.h"
#include "lint/spaces.h"
#include "settings/media.h"
#include "settings/table.h"

namespace camcfg::tool::lint {
namespace {

using Kind = Markup::Kind;
// Characters that XML has no place for, whichever way they are written.
bool isControl(unsigned long character) {
  return character < 0x20 && character != '\t' && character != '\n' && character != '\r';
}

// The encoding that a declaration names; empty if it names none.
std::string_view encodingOf(std::string_view declaration) {
  constexpr std::string_view kWord = "encoding";
  std::size_t at = declaration.find(kWord);
  if (at == std::string_view::npos) return {};
  at = declaration.find_first_of("\"'", at + kWord.size());
  if (at == std::string_view::npos) return {};
  const std::size_t end = declaration.find(declaration[at], at + 1);
  return end == std::string_view::npos ? std::string_view()
                                       : declaration.substr(at + 1, end - at - 1);
}

// @return whether something was found
bool checkEncoding(const MarkedText& text, Findings& findings) {
  const auto declaration =
      std::find_if(text.pieces.begin(), text.pieces.end(),
                   [](const Markup& piece) { return piece.kind == Kind::Declaration; });
  if (declaration == text.pieces.end()) return false;
  const std::string_view encoding = encodingOf(declaration->all);
  if (encoding.empty() || isSameWord(encoding, "UTF-8") || isSameWord(encoding, "UTF8"))
    return false;
  const auto high = std::find_if(declaration, text.pieces.end(), [](const Markup& piece) {
    return (piece.isElement() || piece.kind == Kind::Text) && hasHighBytes(piece.all);
  });
  const std::string what = concat("the encoding ", quoted(encoding), " is not followed");
  if (high != text.pieces.end())
    findings.add(kEncodingIgnored, text.lineOf(declaration->all),
                 concat(what, ": from line ", text.lineOf(high->all),
                        " on there are characters that are read as UTF-8"));
  else if (!isSameWord(encoding, "US-ASCII") && !isSameWord(encoding, "ASCII"))
    findings.add(kEncodingDeclared, text.lineOf(declaration->all), what);
  else
    return false;
  return true;
}

void checkUtf8(const MarkedText& text, Findings& findings) {
  std::optional<std::size_t> first;
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.bytes.size();) {
    const Sequence sequence = sequenceAt(text.bytes, at);
    if (!sequence.isValid) {
      if (!first) first = at;
      ++count;
    }
    at += sequence.length;
  }
  if (first)
    findings.add(kNotUnicode, text.lineOf(*first),
                 "what is here is not UTF-8" +
                     (count == 1 ? "" : concat(", as at ", count - 1, " more places")));
}

void checkMark(const MarkedText& text, Findings& findings) {
  if (lengthToMark(text.bytes) != 0)
    findings.add(kByteOrderMark, 1, "a byte order mark comes before all else");
}

void checkSpaces(const MarkedText& text, Findings& findings) {
  const std::vector<std::string_view> spaces = extraSpacesIn(text.bytes);
  if (spaces.empty()) return;
  const std::string more = std::to_string(spaces.size() - 1);
  findings.add(kExtraSpace, text.lineOf(spaces.front()),
               "white space is doubled in a tag or ends a line here" +
                   (spaces.size() == 1 ? "" : concat(", and in ", more, " more places")));
}

void checkControls(const MarkedText& text, Findings& findings) {
  const auto* const found = std::find_if(text.bytes.begin(), text.bytes.end(), [](char c) {
    return c != '\0' && isControl(static_cast<unsigned char>(c));
  });
  if (found == text.bytes.end()) return;
  findings.add(kControlCharacter, text.lineOf(static_cast<std::size_t>(found - text.bytes.begin())),
               "a control character is here, " + printable(std::string(1, *found)));
}

// What a "&" in a value turns out to be; no rule: what is written is what is read.
struct Reference {
  const Rule* rule = nullptr;
  std::size_t length = 1;
  const char* what = "";
};

constexpr std::size_t kLongestReference = 64;

Reference numberReference(std::string_view text, std::size_t length) {
  const bool isHex = text.size() > 2 && text[2] == 'x';
  const std::string digits(text.substr(isHex ? 3 : 2, length - (isHex ? 4 : 3)));
  const char* allowed = isHex ? "0123456789abcdefABCDEF" : "0123456789";
  if (digits.empty() || digits.find_first_not_of(allowed) != std::string::npos)
    return {&kCharacterReference, length, "holds a reference that is no number"};
  const unsigned long number = std::strtoul(digits.c_str(), nullptr, isHex ? 16 : 10);
  if (number == 0) return {&kCharacterReference, length, "ends at a reference to a zero byte"};
  if (number > 0x10FFFF || (number >= 0xD800 && number <= 0xDFFF))
    return {&kCharacterReference, length, "holds a reference to a character that does not exist"};
  if (isControl(number)) return {&kControlCharacter, length, "holds a control character"};
  return {nullptr, length};
}

// @param text  from the "&" on
Reference referenceAt(std::string_view text) {
  constexpr std::string_view kKnown[] = {"&lt;", "&gt;", "&amp;", "&quot;", "&apos;"};
  for (const std::string_view known : kKnown)
    if (beginsWith(text, known)) return {nullptr, known.size()};
  const bool isNumber = text.size() > 1 && text[1] == '#';
  std::size_t end = isNumber ? 2 : 1;
  const auto isInside = [](unsigned char c) {
    return std::isalnum(c) != 0 || c >= 0x80 || c == '_' || c == '-' || c == '.';
  };
  while (end < text.size() && end < kLongestReference &&
         isInside(static_cast<unsigned char>(text[end])))
    ++end;
  const bool isReference =
      end < text.size() && text[end] == ';' &&
      (isNumber || (end > 1 && std::isdigit(static_cast<unsigned char>(text[1])) == 0));
  if (!isReference) return {&kBareAmpersand, 1, "holds a bare \"&\""};
  if (isNumber) return numberReference(text, end + 1);
  return {&kUnknownEntity, end + 1, "holds an entity that is not replaced"};
}

// Of each rule, one in a value. What a value holds may be a secret.
void checkReferences(const MarkedText& text, const Markup& piece, const MarkupAttribute& attribute,
                     Findings& findings) {
  std::vector<const Rule*> found;
  const std::string_view value = attribute.value;
  for (std::size_t at = value.find('&'); at != std::string_view::npos;) {
    const Reference reference = referenceAt(value.substr(at));
    if (reference.rule != nullptr && !isAmong(found, reference.rule)) {
      found.push_back(reference.rule);
      findings.add(*reference.rule, text.lineOf(attribute.name),
                   concat(tag(piece.name), ": \"", clipped(attribute.name), "\" ", reference.what));
    }
    at = value.find('&', at + reference.length);
  }
}

void checkValues(const MarkedText& text, Findings& findings) {
  for (const Markup& piece : text.pieces)
    for (const MarkupAttribute& attribute : piece.attributes)
      checkReferences(text, piece, attribute, findings);
}

void checkTypes(const MarkedText& text, Findings& findings) {
  for (const Markup& piece : text.pieces) {
    if (piece.kind != Kind::Other || !beginsWith(piece.all, "<!DOCTYPE")) continue;
    const bool isCut = piece.all.find('[') != std::string_view::npos &&
                       piece.all.find(']') == std::string_view::npos;
    findings.add(kDocumentType, text.lineOf(piece.all),
                 std::string("the document type is not read") +
                     (isCut ? ", and the next save writes it otherwise" : ""));
  }
}

/// Finds text that no reader looks at.
class StrayText {
 public:
  StrayText(const MarkedText& text, Findings& findings) : text_(text), findings_(findings) {}

  void check() {
    for (const Markup& piece : text_.pieces) take(piece);
  }

 private:
  struct Open {
    const Markup* tag;
    bool isMixed;  // an element or an attribute shows that its text is not what it holds
    std::vector<std::size_t> texts;
  };

  void take(const Markup& piece) {
    if (piece.kind == Kind::Other) {
      isInType_ = isInType_ || (beginsWith(piece.all, "<!DOCTYPE") &&
                                piece.all.find('[') != std::string_view::npos &&
                                piece.all.find(']') == std::string_view::npos);
    } else if (piece.isElement()) {
      if (!open_.empty()) open_.back().isMixed = true;
      if (piece.kind == Kind::Start) open_.push_back({&piece, !piece.attributes.empty(), {}});
    } else if (piece.kind == Kind::End) {
      close();
    } else if (piece.kind == Kind::Text || piece.kind == Kind::CData) {
      takeText(piece.all);
    }
  }

  void takeText(std::string_view all) {
    const std::size_t before = offsetOf(all, text_.bytes);
    const std::size_t mark = before == 0 ? lengthToMark(all) : 0;
    const auto* const first = std::find_if(all.begin() + static_cast<std::ptrdiff_t>(mark),
                                           all.end(), [](char c) { return !isMarkupSpace(c); });
    if (first == all.end()) return;
    if (isInType_) {
      isInType_ = all.find(']') == std::string_view::npos;
      return;
    }
    const std::size_t at = before + static_cast<std::size_t>(first - all.begin());
    if (!open_.empty())
      open_.back().texts.push_back(at);
    else
      findings_.add(kStrayText, text_.lineOf(at), "there is text outside all elements");
  }

  // Text in what a save replaces is found there.
  bool isReplaced() const {
    if (open_.size() < 2 || text_.kind != FileKind::Media) return false;
    const auto& tables = settings::mediaTables();
    return std::any_of(tables.begin(), tables.end(), [&](const settings::Table* table) {
      return table->isSaved && open_[0].tag->name == table->parent &&
             open_[1].tag->name == table->section;
    });
  }

  void close() {
    if (open_.empty()) return;
    const Open& last = open_.back();
    if (last.isMixed && text_.kind != FileKind::Unknown && !isReplaced())
      for (const std::size_t at : last.texts)
        findings_.add(kStrayText, text_.lineOf(at),
                      tag(last.tag->name) + " holds text, which no reader looks at");
    open_.pop_back();
  }

  const MarkedText& text_;
  Findings& findings_;
  std::vector<Open> open_;
  bool isInType_ = false;  // after the part of a document type that the library takes for all of it
};

}  // namespace

void checkText(const Source& source, Findings& findings) {
  if (source.document == nullptr || isWebPage(source)) return;
  const MarkedText text(source);
  checkMark(text, findings);
  if (!checkEncoding(text, findings)) checkUtf8(text, findings);
  checkTypes(text, findings);
  checkControls(text, findings);
  checkSpaces(text, findings);
  checkValues(text, findings);
  checkCharacters(text, findings);
  StrayText(text, findings).check();
  checkStrictness(text, findings);
}

}  // namespace camcfg::tool::lint
