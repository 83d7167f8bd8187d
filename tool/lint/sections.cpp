#include "lint/sections.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "base/concat.h"
#include "base/name_matches.h"
#include "lint/item.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/media.h"
#include "settings/network.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

void checkTwice(const tinyxml2::XMLNode& parent, Findings& findings) {
  const Elements sections = childrenOf(parent);
  const std::vector<std::string_view> names = namesOf(sections);
  const std::vector<NameMatches> matches = matchNames(names);
  for (std::size_t i = 0; i < sections.size(); ++i)
    if (matches[i].same != i)
      findings.add(kSectionTwice, *sections[i],
                   concat("this ", tag(names[i]), " is not found: the one",
                          atLine(*sections[matches[i].same]), " comes first"));
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
  findings.add(kSectionNested, section,
               concat(tag(section.Name()), " is not read: it is ",
                      outer == nullptr ? "at the top"
                                       : concat("inside ", tag(outer->Name()), atLine(*outer)),
                      ", and readers look for it ", place));
}

// @param near  what the section is called instead; null if there is nothing like it
void addMissing(const XMLElement* near, std::string_view name, int line, const std::string& what,
                Findings& findings) {
  if (near != nullptr)
    addNearName(*near, name, findings);
  else
    findings.add(kSectionMissing, line, what + tag(name));
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
                   concat(tag(element->Name()), " is nearly called as the section ", tag(name),
                          atLine(*section), ", and is not it"));
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
      findings.add(
          kSectionAlike, *section,
          concat(tag(section->Name()), " is called as the section ", tag(first->second->Name()),
                 atLine(*first->second), " except for upper and lower case"));
  }
}

}  // namespace

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

}  // namespace camcfg::tool::lint
