#include <algorithm>
#include <string_view>
#include <utility>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "lint/sections.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr std::pair<tinyxml2::XMLError, const char*> kReasons[] = {
    {tinyxml2::XML_ERROR_PARSING_ELEMENT, "a tag is not complete or has no name"},
    {tinyxml2::XML_ERROR_PARSING_ATTRIBUTE,
     "an attribute is not written NAME=\"VALUE\", or occurs twice"},
    {tinyxml2::XML_ERROR_PARSING_TEXT, "a text does not end"},
    {tinyxml2::XML_ERROR_PARSING_CDATA, "a <![CDATA[ does not end"},
    {tinyxml2::XML_ERROR_PARSING_COMMENT, "a comment does not end"},
    {tinyxml2::XML_ERROR_PARSING_DECLARATION,
     "a declaration <?...?> does not end or is in the "
     "middle of the file"},
    {tinyxml2::XML_ERROR_PARSING_UNKNOWN, "a <!...> does not end"},
    {tinyxml2::XML_ERROR_EMPTY_DOCUMENT, "the file is empty"},
    {tinyxml2::XML_ERROR_MISMATCHED_ELEMENT, "an element is not closed by a tag of its name"},
    {tinyxml2::XML_ERROR_PARSING,
     "an element that begins here does not end, or what is here is not XML"},
    {tinyxml2::XML_ELEMENT_DEPTH_EXCEEDED, "elements are nested too deep"},
};

std::string reasonOf(const XMLDocument& document) {
  for (const auto& [error, reason] : kReasons)
    if (error == document.ErrorID()) return reason;
  return document.ErrorName();
}

// The name of an encoding of which each character takes several bytes; null if it is none. Cut-off
// files may have zero bytes after a beginning.
const char* wideEncodingOf(std::string_view bytes) {
  using namespace std::string_view_literals;
  struct Form {
    std::string_view mark;
    std::size_t length;  // of a character
    std::size_t letter;  // where in it a letter of a tag is
    const char* name;
  };
  constexpr Form kForms[] = {{"\xff\xfe\0\0"sv, 4, 0, "UTF-32"},
                             {"\0\0\xfe\xff"sv, 4, 3, "UTF-32"},
                             {"\xff\xfe"sv, 2, 0, "UTF-16"},
                             {"\xfe\xff"sv, 2, 1, "UTF-16"}};
  const auto isLetter = [&](const Form& form, std::size_t index) {
    const std::string_view all =
        bytes.substr(std::min(index * form.length, bytes.size()), form.length);
    if (all.size() < form.length || all[form.letter] == '\0') return false;
    return std::count(all.begin(), all.end(), '\0') == static_cast<std::ptrdiff_t>(form.length) - 1;
  };
  for (const Form& form : kForms)
    if (beginsWith(bytes, form.mark) || (isLetter(form, 0) && isLetter(form, 1))) return form.name;
  return nullptr;
}

void checkZeroBytes(const Source& source, Findings& findings) {
  const std::size_t at = source.bytes.find('\0');
  if (at == std::string::npos) return;
  const auto lines = std::count(source.bytes.begin(),
                                source.bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n');
  findings.add(
      kZeroByte, static_cast<int>(lines) + 1,
      concat("a zero byte ends the file here; ", source.bytes.size() - at, " bytes are not read"));
}

// Elements that nobody reads, since they are nearly called what readers look for.
bool checkNearTops(const XMLDocument& document, Findings& findings) {
  bool isAny = false;
  for (const XMLElement* top : childrenOf(document))
    for (const char* name : kTops) {
      if (top->FirstChildElement() == nullptr || !isNearMiss(top->Name(), name)) continue;
      addNearName(*top, name, findings);
      isAny = true;
    }
  return isAny;
}

void addWebPage(Findings& findings) {
  findings.add(kWebPage, 1, "the file is an HTML page");
}

void checkNotLoaded(const Source& source, Findings& findings) {
  if (isWebPage(source)) return addWebPage(findings);
  const bool isDamaged = source.parsed != nullptr && source.parsed->Error();
  if (isDamaged)
    findings.add(kNotWellFormed, source.parsed->ErrorLineNum(), reasonOf(*source.parsed));
  else
    findings.add(kUnreadable, 1, source.fault);
}

}  // namespace

void checkStructure(const Source& source, Findings& findings) {
  if (const char* encoding = wideEncodingOf(source.bytes))
    return findings.add(kWideEncoding, 1,
                        concat("the file is ", encoding, ", of which the library reads nothing"));
  checkZeroBytes(source, findings);
  if (source.document == nullptr) {
    if (source.isRead || source.copies == nullptr ||
        source.copies->main.state != device::State::Missing)
      checkNotLoaded(source, findings);
    return;
  }
  if (!source.isWhole()) {
    findings.add(kNoElement, 1, "there is no element in it");
    return;
  }
  if (isWebPage(source)) return addWebPage(findings);
  if (const XMLElement* wrapper = wrapperIn(*source.document))
    return findings.add(kWrappedRoot, *wrapper,
                        tag(wrapper->Name()) + " is around what readers look for at the top");
  if (source.kind == FileKind::Unknown && !checkNearTops(*source.document, findings))
    findings.add(kUnknownKind, 1, "nothing in it says what it configures");
  if (source.kind != FileKind::Unknown && source.kind != FileKind::Language)
    checkSections(source, findings);
}

}  // namespace camcfg::tool::lint
