#include <algorithm>
#include <map>
#include <string_view>
#include <utility>

#include "lint/item.h"
#include "lint/lint.h"
#include "lint/name_matches.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/media.h"
#include "settings/network.h"

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

std::vector<std::string> topsOf(FileKind kind) {
  if (kind == FileKind::Parameters) return {"System", settings::kNetworkSection};
  if (kind == FileKind::Presets) return {"PresetCfg"};
  std::vector<std::string> tops;
  for (const settings::Table* table : settings::mediaTables())
    if (!isAmong(tops, table->parent)) tops.emplace_back(table->parent);
  return tops;
}

bool isKnownSection(std::string_view name) {
  const auto& tables = settings::mediaTables();
  return std::any_of(tables.begin(), tables.end(),
                     [&](const settings::Table* table) { return name == table->section; });
}

// The first element of a name that is inside another one; null if there is none.
const XMLElement* nestedIn(const tinyxml2::XMLNode& parent, std::string_view name) {
  for (const XMLElement* child : childrenOf(parent)) {
    for (const XMLElement* inner : childrenOf(*child))
      if (inner->Name() == name && !has(*inner, "Cur")) return inner;
    if (const XMLElement* found = nestedIn(*child, name)) return found;
  }
  return nullptr;
}

// Where a section is that is not where readers look for it; null if it is nowhere.
const XMLElement* misplacedIn(const XMLDocument& document, std::string_view name) {
  const XMLElement* top = document.FirstChildElement(std::string(name).c_str());
  return top != nullptr ? top : nestedIn(document, name);
}

void addMisplaced(const XMLElement& section, const std::string& place, Findings& findings) {
  const XMLElement* outer = section.Parent()->ToElement();
  findings.add(
      kSectionNested, section,
      tag(section.Name()) + " is not read: it is " +
          (outer == nullptr ? "at the top" : "inside " + tag(outer->Name()) + atLine(*outer)) +
          ", and readers look for it " + place);
}

// @param near  what the section is called instead; null if there is nothing like it
void addMissing(const XMLElement* near, std::string_view name, int line, const std::string& what,
                Findings& findings) {
  if (near != nullptr)
    addNearName(*near, name, findings);
  else
    findings.add(kSectionMissing, line, what + tag(name));
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

void checkTable(const XMLDocument& document, const XMLElement& top, const settings::Table& table,
                Findings& findings) {
  if (top.FirstChildElement(table.section) != nullptr) return;
  const XMLElement* near = nearChild(top, table.section, isKnownSection);
  const XMLElement* misplaced = near == nullptr ? misplacedIn(document, table.section) : nullptr;
  if (misplaced != nullptr)
    addMisplaced(*misplaced, "in " + tag(top.Name()), findings);
  else
    addMissing(near, table.section, top.GetLineNum(), tag(top.Name()) + " has no ", findings);
}

void checkTop(const Source& source, const std::string& name, Findings& findings) {
  const XMLDocument& document = *source.document;
  const XMLElement* top = document.FirstChildElement(name.c_str());
  if (top == nullptr) {
    const XMLElement* near = nearChild(document, name, isKnownTop);
    const XMLElement* nested = near == nullptr ? nestedIn(document, name) : nullptr;
    if (nested != nullptr)
      addMisplaced(*nested, "at the top", findings);
    else
      addMissing(near, name, 1, "there is no ", findings);
  } else if (source.kind == FileKind::Media) {
    for (const settings::Table* table : settings::mediaTables())
      if (name == table->parent) checkTable(document, *top, *table, findings);
    checkTwice(*top, findings);
  }
}

// Sections that are there, next to others that are nearly called so.
void checkAlike(const tinyxml2::XMLNode& parent, const std::vector<std::string_view>& meant,
                Findings& findings) {
  for (const XMLElement* element : childrenOf(parent))
    for (const std::string_view name : meant) {
      const XMLElement* section = parent.FirstChildElement(std::string(name).c_str());
      if (section == nullptr || isAmong(meant, std::string_view(element->Name())) ||
          !isNearMiss(element->Name(), name))
        continue;
      findings.add(kSectionAlike, *element,
                   tag(element->Name()) + " is nearly called as the section " + tag(name) +
                       atLine(*section) + ", and is not it");
      break;
    }
}

// Sections whose names differ in upper and lower case only.
void checkCases(const XMLDocument& document, Findings& findings) {
  std::map<std::string, const XMLElement*> firsts;
  for (const XMLElement* section : childrenOf(document)) {
    const auto [first, isNew] = firsts.emplace(inLowerCase(section->Name()), section);
    const bool isOther = std::string_view(first->second->Name()) != section->Name();
    if (!isNew && isOther && !isKnownTop(first->second->Name()) && !isKnownTop(section->Name()))
      findings.add(kSectionAlike, *section,
                   tag(section->Name()) + " is called as the section " +
                       tag(first->second->Name()) + atLine(*first->second) +
                       " except for upper and lower case");
  }
}

void checkSections(const Source& source, Findings& findings) {
  const XMLDocument& document = *source.document;
  const std::vector<std::string> tops = topsOf(source.kind);
  for (const std::string& name : tops) checkTop(source, name, findings);
  checkTwice(document, findings);
  checkAlike(document, {tops.begin(), tops.end()}, findings);
  if (source.kind == FileKind::Parameters) checkCases(document, findings);
  if (source.kind != FileKind::Media) return;
  for (const settings::Table* table : settings::mediaTables())
    if (const XMLElement* top = document.FirstChildElement(table->parent))
      checkAlike(*top, {table->section}, findings);
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
    return findings.add(
        kWideEncoding, 1,
        std::string("the file is ") + encoding + ", of which the library reads nothing");
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
