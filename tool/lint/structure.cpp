#include <algorithm>
#include <string_view>

#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "settings/media.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kUnreadable{"unreadable", Severity::Error,
                           "The file cannot be read, so every call that needs it fails.",
                           "/cfg0/mpp_cfg.xml is a directory"};
constexpr Rule kNotWellFormed{"not-well-formed", Severity::Error,
                              "The file is no XML that the library loads: every call on it fails "
                              "until start-up verification restores it.",
                              R"(<System><Rtsp Cur="554"></System>)"};
constexpr Rule kNoElement{"no-element", Severity::Error,
                          "The file holds no element: it loads, so start-up verification passes it "
                          "by, and every call on it fails.",
                          "<!-- nothing yet -->"};
constexpr Rule kZeroByte{"zero-byte", Severity::Error,
                         "Reading ends at the first zero byte: what comes after it is not there, "
                         "and the next save drops it.",
                         "<System/> and after it a block of zero bytes"};
constexpr Rule kUnknownKind{
    "unknown-kind", Severity::Warning,
    "The file has none of the elements that any of the library's readers looks for.",
    "<Settings><Port>554</Port></Settings>"};
constexpr Rule kSectionMissing{"section-missing", Severity::Error,
                               "A section is missing, so every call that reads it fails.",
                               "<LiveMediaService> without <SRT>"};
constexpr Rule kSectionTwice{"section-twice", Severity::Error,
                             "Sections are looked up by name and the first is taken: a second of "
                             "the same name is not found.",
                             "<System/> and after it another <System/>"};

struct Reason {
  tinyxml2::XMLError error;
  const char* text;
};

constexpr Reason kReasons[] = {
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
  for (const Reason& reason : kReasons)
    if (reason.error == document.ErrorID()) return reason.text;
  return document.ErrorName();
}

void checkZeroBytes(const Source& source, Findings& findings) {
  const std::size_t at = source.bytes.find('\0');
  if (at == std::string::npos) return;
  const auto lines = std::count(source.bytes.begin(),
                                source.bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n');
  findings.add(kZeroByte, static_cast<int>(lines) + 1,
               "a zero byte ends the file here; " + std::to_string(source.bytes.size() - at) +
                   " bytes are not read");
}

void checkTwice(const tinyxml2::XMLNode& parent, Findings& findings) {
  const Elements sections = childrenOf(parent);
  const std::vector<std::string_view> names = namesOf(sections);
  const std::vector<NameMatches> matches = matchNames(names);
  for (std::size_t i = 0; i < sections.size(); ++i)
    if (matches[i].same != i)
      findings.add(kSectionTwice, *sections[i],
                   "this " + tag(names[i]) + " is not found: the one" +
                       atLine(*sections[matches[i].same]) + " comes first");
}

std::vector<std::string> topsOf(Kind kind) {
  if (kind == Kind::Parameters) return {"System", "NetWork"};
  if (kind == Kind::Presets) return {"PresetCfg"};
  std::vector<std::string> tops;
  for (const settings::Table* table : settings::mediaTables())
    if (!isAmong(tops, table->parent)) tops.emplace_back(table->parent);
  return tops;
}

void checkSections(const Source& source, Findings& findings) {
  const XMLDocument& document = *source.document;
  for (const std::string& name : topsOf(source.kind)) {
    const XMLElement* top = childNamed(document, name.c_str());
    if (top == nullptr) findings.add(kSectionMissing, 1, "there is no " + tag(name));
    if (top == nullptr || source.kind != Kind::Media) continue;
    for (const settings::Table* table : settings::mediaTables())
      if (name == table->parent && childNamed(*top, table->section) == nullptr)
        findings.add(kSectionMissing, *top, tag(name) + " has no " + tag(table->section));
  }
  checkTwice(document, findings);
  if (source.kind == Kind::Media)
    for (const XMLElement* top : childrenOf(document)) checkTwice(*top, findings);
}

void checkNotLoaded(const Source& source, Findings& findings) {
  const bool isDamaged = source.parsed != nullptr && source.parsed->Error();
  if (isDamaged)
    findings.add(kNotWellFormed, source.parsed->ErrorLineNum(), reasonOf(*source.parsed));
  else
    findings.add(kUnreadable, 1, source.fault);
}

void check(const Source& source, Findings& findings) {
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
  if (source.kind == Kind::Unknown)
    findings.add(kUnknownKind, 1, "nothing in it says what it configures");
  else if (source.kind != Kind::Language)
    checkSections(source, findings);
}

}  // namespace

Subject structure() {
  return {"structure",
          {&kUnreadable, &kNotWellFormed, &kNoElement, &kZeroByte, &kUnknownKind, &kSectionMissing,
           &kSectionTwice},
          std::nullopt,
          check};
}

}  // namespace camcfg::tool::lint
