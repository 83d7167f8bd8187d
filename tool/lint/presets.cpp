#include <camcfg/preset.h>

#include <set>
#include <string_view>

#include "lint/elements.h"
#include "lint/name_matches.h"
#include "lint/subject.h"
#include "lint/values.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;

namespace {

constexpr Rule kIdRange{"preset-id-range", Severity::Error,
                        "The id is outside 0..128: the preset cannot be changed by its id.",
                        "<preset Id=\"129\" Description=\"Dock\"/>"};
constexpr Rule kNoFreeId{"preset-no-free-id", Severity::Warning,
                         "All ids from 0 to 127 are taken: CFG_PRESET_GetUnusedId succeeds, but "
                         "reports none.",
                         "128 presets"};
constexpr Rule kPositionMissing{"preset-position-missing", Severity::Warning,
                                "A position is missing: queries leave what the caller's record "
                                "held before.",
                                "<preset Id=\"3\" Description=\"Dock\" PanPos=\"-20\"/>"};
constexpr Rule kDescriptionMissing{"description-missing", Severity::Warning,
                                   "A preset without a description is found by none; the empty "
                                   "one finds the first preset that has any.",
                                   "<preset Id=\"3\" Description=\"\"/>"};
constexpr Rule kDescriptionLong{"description-hidden-by-id", Severity::Warning,
                                "The description has 32 bytes or more: a query by id does not "
                                "return it, one by description does.",
                                "<preset Id=\"3\" Description=\"a description of 40 bytes\"/>"};
constexpr Rule kDescriptionTooLong{"description-hidden", Severity::Error,
                                   "The description has 64 bytes or more: no query returns it.",
                                   "<preset Id=\"3\" Description=\"a description of 70 bytes\"/>"};
constexpr Rule kDescriptionTwice{"description-twice", Severity::Error,
                                 "Two presets have the same description: it finds the first.",
                                 "<preset Id=\"3\" Description=\"Dock\"/> and after it <preset "
                                 "Id=\"4\" Description=\"Dock\"/>"};
constexpr Rule kDescriptionShadowed{
    "description-shadowed", Severity::Error,
    "Presets are found by the beginning of their descriptions, the first in the file is taken: "
    "this description finds the longer one before it.",
    "<preset Id=\"3\" Description=\"Dock 2\"/> and after it <preset Id=\"4\" "
    "Description=\"Dock\"/>"};
constexpr Rule kDescriptionBegins{
    "description-begins-another", Severity::Warning,
    "This description begins a later one: once this preset is deleted, it finds and deletes the "
    "other.",
    "<preset Id=\"3\" Description=\"Dock\"/> and after it <preset Id=\"4\" "
    "Description=\"Dock 2\"/>"};
constexpr Rule kPresetName{"preset-name", Severity::Warning,
                           "An element whose name only begins with \"preset\" is a preset to "
                           "searches and counts.",
                           "<presets Id=\"3\" Description=\"Dock\"/>"};
constexpr Rule kNotAPreset{"not-a-preset", Severity::Warning,
                           "An element among the presets whose name does not begin with \"preset\" "
                           "is not read.",
                           "<Preset Id=\"3\" Description=\"Dock\"/>"};

constexpr char kName[] = "preset";
constexpr std::size_t kSeenById = 32;
constexpr int kProposed = 128;  // ids from 0 that are proposed for new presets

// "preset 3", or "preset" if its id is not known.
std::string labelOf(const XMLElement& element) {
  const std::optional<int> id = settings::integerIn(element, "Id");
  return id ? "preset " + std::to_string(*id) : kName;
}

Elements presetsIn(const XMLElement& group, Findings& findings) {
  Elements found;
  for (const XMLElement* element : childrenOf(group)) {
    const std::string_view name = element->Name();
    if (!beginsWith(name, kName))
      findings.add(kNotAPreset, *element, tag(name) + " is not read: its name is not <preset>");
    else
      found.push_back(element);
    if (beginsWith(name, kName) && name != kName)
      findings.add(kPresetName, *element, tag(name) + " is read as a <preset>");
  }
  return found;
}

void checkNumber(const XMLElement& preset, const settings::Setting& setting,
                 const std::string& label, Findings& findings) {
  const char* attribute = setting.attributes.front().name;
  checkInteger(preset, attribute, label, findings);
  if (!has(preset, attribute))
    findings.add(kPositionMissing, preset, label + " has no \"" + attribute + "\"");
}

void checkId(const XMLElement& preset, const settings::Range& limits, const std::string& label,
             Findings& findings) {
  const std::optional<int> id = settings::integerIn(preset, "Id");
  if (id && (*id < limits.least || *id > limits.most))
    findings.add(kIdRange, preset, "Id",
                 label + ": the id is outside " + std::to_string(limits.least) + ".." +
                     std::to_string(limits.most));
}

void checkValues(const XMLElement& preset, const std::string& label, Findings& findings) {
  std::vector<const char*> attributes;
  for (const settings::Setting& setting : settings::presetSettings())
    attributes.push_back(setting.attributes.front().name);
  checkAttributeCase(preset, attributes, label, findings);
  for (const settings::Setting& setting : settings::presetSettings())
    if (setting.kind == settings::Kind::Integer && setting.need != settings::Need::Required)
      checkNumber(preset, setting, label, findings);
  checkId(preset, settings::presetSettings().front().limits, label, findings);
}

void checkLength(const XMLElement& preset, const std::string& label, Findings& findings) {
  const std::size_t length = textOf(preset, "Description").size();
  const std::string what =
      label + ": the description has " + std::to_string(length) + " bytes and is not returned by ";
  if (length == 0)
    findings.add(kDescriptionMissing, preset, "Description", label + " has no description");
  else if (length >= PRESET_DESC_SIZE)
    findings.add(kDescriptionTooLong, preset, "Description", what + "any query");
  else if (length >= kSeenById)
    findings.add(kDescriptionLong, preset, "Description", what + "a query by id");
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
    const std::string what = labelOf(*described[i]) + ": the description " + quoted(texts[i]) + " ";
    const auto tell = [&](const Rule& rule, const std::string& verb, std::size_t other) {
      findings.add(rule, *described[i], "Description",
                   what + verb + labelOf(*described[other]) + " " + quoted(texts[other]) +
                       atLine(*described[other]));
    };
    if (longer < same)
      tell(kDescriptionShadowed, "finds ", longer);
    else if (same != i)
      tell(kDescriptionTwice, "finds ", same);
    else if (longer != kNoMatch)
      tell(kDescriptionBegins, "begins that of ", longer);
  }
}

void checkFreeIds(const XMLElement& group, const Elements& presets, Findings& findings) {
  std::set<int> taken;
  for (const XMLElement* preset : presets) {
    const int id = preset->IntAttribute("Id", -1);
    if (id >= 0 && id < kProposed) taken.insert(id);
  }
  if (taken.size() == static_cast<std::size_t>(kProposed))
    findings.add(kNoFreeId, group,
                 "all ids from 0 to " + std::to_string(kProposed - 1) + " are taken");
}

void check(const Source& source, Findings& findings) {
  const XMLElement* group = childNamed(*source.document, "PresetCfg");
  if (group == nullptr) return;
  const Elements presets = presetsIn(*group, findings);
  for (const XMLElement* preset : presets) {
    const std::string label = labelOf(*preset);
    checkValues(*preset, label, findings);
    checkLength(*preset, label, findings);
  }
  checkEntryIds(presets, "this preset", findings);
  checkDescriptions(presets, findings);
  checkFreeIds(*group, presets, findings);
}

}  // namespace

Subject presets() {
  return {"presets",
          {&kIdRange, &kNoFreeId, &kPositionMissing, &kDescriptionMissing, &kDescriptionLong,
           &kDescriptionTooLong, &kDescriptionTwice, &kDescriptionShadowed, &kDescriptionBegins,
           &kPresetName, &kNotAPreset},
          Kind::Presets,
          check};
}

}  // namespace camcfg::tool::lint
