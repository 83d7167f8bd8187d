#include <camcfg/preset.h>

#include <set>

#include "base/concat.h"
#include "base/name_matches.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/near_names.h"
#include "lint/rules.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using settings::Setting;
using tinyxml2::XMLElement;

constexpr char kName[] = "preset";
constexpr std::size_t kSeenById = 32;
constexpr int kProposed = 128;  // ids from 0 that are proposed for new presets

// Called "preset 3", or "preset" if its id is not known.
Item itemOf(const XMLElement& element, Findings& findings) {
  const std::optional<int> id = settings::integerIn(element, "Id");
  return {element, id ? "preset " + std::to_string(*id) : kName, findings};
}

bool isMeantAsPreset(const XMLElement& element) {
  return isSameWord(element.Name(), kName) ||
         (isNearMiss(element.Name(), kName) && (has(element, "Id") || has(element, "Description")));
}

Elements presetsIn(const XMLElement& group, Findings& findings) {
  Elements found;
  for (const XMLElement* element : childrenOf(group)) {
    const std::string_view name = element->Name();
    if (!beginsWith(name, kName)) {
      if (isMeantAsPreset(*element))
        addNearName(*element, kName, findings);
      else
        findings.add(kNotAPreset, *element, tag(name) + " is not read: its name is not <preset>");
      continue;
    }
    found.push_back(element);
    if (name != kName) findings.add(kPresetName, *element, tag(name) + " is read as a <preset>");
  }
  return found;
}

void checkValues(const Item& preset) {
  const settings::Settings& all = settings::presetSettings();
  std::vector<const char*> attributes;
  for (const Setting& setting : all) attributes.push_back(setting.attributes.front().name);
  preset.checkCase(attributes);
  for (const Setting& setting : all) {
    if (setting.kind != settings::Kind::Integer || setting.need == settings::Need::Required)
      continue;
    const char* attribute = setting.attributes.front().name;
    preset.checkInteger(attribute);
    if (!preset.has(attribute))
      preset.add(kPresetPositionMissing, concat(" has no \"", attribute, "\""));
  }
  for (const XMLElement* inner : childrenOf(preset.element))
    if (beginsWith(inner->Name(), kName) || isMeantAsPreset(*inner))
      itemOf(*inner, preset.findings)
          .add(kPresetNested,
               concat(" is inside ", preset.name, atLine(preset.element), ": no call finds it"));
  const settings::Range& limits = all.front().limits;
  const std::optional<int> id = settings::integerIn(preset.element, "Id");
  if (id && !limits.has(*id))
    preset.addAt(kPresetIdRange, "Id", ": the id is outside " + limits.text());
}

void checkLength(const Item& preset) {
  const std::size_t length = preset.text("Description").size();
  const std::string what =
      concat(": the description has ", length, " bytes and is not returned by ");
  if (length != 0) preset.checkName("Description");
  if (length == 0)
    preset.addAt(kDescriptionMissing, "Description", " has no description");
  else if (length >= PRESET_DESC_SIZE)
    preset.addAt(kDescriptionHidden, "Description", what + "any query");
  else if (length >= kSeenById)
    preset.addAt(kDescriptionHiddenById, "Description", what + "a query by id");
}

void checkDescriptions(const Elements& presets, Findings& findings) {
  Elements described;
  std::vector<std::string_view> texts;
  for (const XMLElement* preset : presets) {
    const char* text = preset->Attribute("Description");
    if (text == nullptr || *text == '\0') continue;
    described.push_back(preset);
    texts.emplace_back(text);
  }
  const std::vector<NameMatches> matches = matchNames(texts);
  for (std::size_t i = 0; i < described.size(); ++i) {
    const auto [same, longer] = matches[i];
    const auto add = [&](const Rule& rule, const std::string& verb, std::size_t other) {
      itemOf(*described[i], findings)
          .addAt(rule, "Description",
                 concat(": the description ", quoted(texts[i]), " ", verb,
                        itemOf(*described[other], findings).name, " ", quoted(texts[other]),
                        atLine(*described[other])));
    };
    if (longer < same)
      add(kDescriptionShadowed, "finds ", longer);
    else if (same != i)
      add(kDescriptionTwice, "finds ", same);
    else if (longer != kNoMatch)
      add(kDescriptionBeginsAnother, "begins that of ", longer);
  }
}

void checkFreeIds(const XMLElement& group, const Elements& presets, Findings& findings) {
  std::set<int> taken;
  for (const XMLElement* preset : presets) {
    const int id = preset->IntAttribute("Id", -1);
    if (id >= 0 && id < kProposed) taken.insert(id);
  }
  if (taken.size() == static_cast<std::size_t>(kProposed))
    findings.add(kPresetNoFreeId, group, concat("all ids from 0 to ", kProposed - 1, " are taken"));
}

}  // namespace

void checkPresets(const Source& source, Findings& findings) {
  const XMLElement* group = source.document->FirstChildElement("PresetCfg");
  if (group == nullptr) return;
  const Elements presets = presetsIn(*group, findings);
  for (const XMLElement* preset : presets) {
    checkValues(itemOf(*preset, findings));
    checkLength(itemOf(*preset, findings));
  }
  checkEntryIds(presets, "this preset", findings);
  checkDescriptions(presets, findings);
  checkFreeIds(*group, presets, findings);
}

}  // namespace camcfg::tool::lint
