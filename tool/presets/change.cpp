#include "presets/change.h"

#include <camcfg/store.h>

#include <algorithm>

#include "base/plain_text.h"
#include "base/refusal.h"
#include "device/change.h"
#include "settings/presets.h"
#include "settings/table.h"

namespace camcfg::tool::presets {
namespace {

using settings::Setting;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr std::size_t kLongestDescription = PRESET_DESC_SIZE - 1;
// A new preset whose numbers have eleven characters each and whose description is all entities.
constexpr std::size_t kGrowth = 180 + kLongestDescription * 6;

bool isText(const Setting& setting) {
  return setting.kind == settings::Kind::Text;
}

// What a record can have of a value that is not given.
std::string lossOf(const Preset& preset, const Setting& setting) {
  const char* attribute = setting.attributes.front().name;
  const char* text = preset.element->Attribute(attribute);
  if (text == nullptr) return "";
  const std::string give = std::string("give ") + (isText(setting) ? "a " : "") + setting.member;
  if (!isText(setting))
    return preset.values.at(setting.member).is_null()
               ? std::string("its ") + attribute + " " + quoted(text) +
                     " is no integer and would become 0; " + give + " as well"
               : "";
  return std::string_view(text).size() <= kLongestDescription
             ? ""
             : "its present description would be cut to " + std::to_string(kLongestDescription) +
                   " bytes; " + give + " as well";
}

void put(tagPRESET_CFG_S& record, const Setting& setting, const Json& value) {
  if (value.is_null()) return;
  if (isText(setting))
    setting.field.setText(&record, std::string(firstBytes(value.text(), kLongestDescription)));
  else
    setting.field.as<std::int32_t>(&record) = value.get<std::int32_t>();
}

Values valuesOf(const tagPRESET_CFG_S& record) {
  return settings::toJson(settings::presetSettings(), &record);
}

bool isStored(XMLDocument& document, const tagPRESET_CFG_S& record) {
  XMLElement* group = presetGroupOf(document);
  XMLElement* element =
      group == nullptr ? nullptr : CFG_GetElementByNameId(group, "preset", record.s32Id);
  return element != nullptr && presetOf(*element).values == valuesOf(record);
}

// How many presets are written exactly like this.
std::ptrdiff_t countOf(XMLDocument& document, const std::string& text) {
  std::ptrdiff_t count = 0;
  XMLElement* group = presetGroupOf(document);
  for (XMLElement* element = group == nullptr ? nullptr : group->FirstChildElement();
       element != nullptr; element = element->NextSiblingElement())
    count += written(*element) == text ? 1 : 0;
  return count;
}

std::function<bool()> deletionOf(const Presets& presets, const Preset& preset) {
  const std::optional<int> id = preset.id();
  if (id && presets.lookup(*id) == &preset) return [id] { return CFG_PRESET_DeleteById(*id) == 0; };
  const std::string text = preset.description().value_or("");
  const Preset* found = presets.lookup(text);
  if (preset.description() && found == &preset)
    return [text] { return CFG_PRESET_DeleteByDesc(text.c_str()) == 0; };
  throw Refusal(preset.label() + ": the library would delete " +
                (found == nullptr ? "none" : found->label()) +
                ", since a description that begins like this comes first");
}

}  // namespace

PresetUpdate updateOf(const Preset* existing, const Values& given) {
  PresetUpdate update{};
  for (const Setting& setting : settings::presetSettings()) {
    const Json& wanted = given.at(setting.member);
    const bool keeps = existing != nullptr && wanted.is_null();
    std::string fault;
    if (keeps)
      fault = lossOf(*existing, setting);
    else if (!wanted.is_null() && setting.whyNotUsable != nullptr)
      fault = setting.whyNotUsable(wanted.text());
    if (update.fault.empty()) update.fault = fault;
    put(update.record, setting, keeps ? existing->values.at(setting.member) : wanted);
  }
  update.values = valuesOf(update.record);
  return update;
}

void storePresets(const std::string& what, std::vector<tagPRESET_CFG_S> records) {
  device::Change change{CFG_FILE_PRESET, what, records.size() * kGrowth, nullptr, nullptr};
  change.make = [&records] {
    return std::all_of(records.begin(), records.end(),
                       [](tagPRESET_CFG_S& record) { return CFG_PRESET_SetParam(&record) == 0; });
  };
  change.arrived = [&records](XMLDocument& document) {
    return std::all_of(records.begin(), records.end(), [&document](const tagPRESET_CFG_S& record) {
      return isStored(document, record);
    });
  };
  device::makeChange(change);
}

Json storePreset(const Values& given) {
  const Presets presets;
  const int id = given.at(settings::kPresetId).get<int>();
  const Preset* existing = presets.lookup(id);
  const std::string what = "preset " + std::to_string(id);
  const PresetUpdate update = updateOf(existing, given);
  if (!update.fault.empty()) throw Refusal(what + ": " + update.fault);
  storePresets(what, {update.record});
  Json stored = update.values;
  stored["before"] = existing == nullptr ? Json() : existing->values;
  return stored;
}

void deletePreset(const Presets& presets, const Preset& preset) {
  const std::string text = written(*preset.element);
  const std::ptrdiff_t before = countOf(*preset.element->GetDocument(), text);
  const auto arrived = [&](XMLDocument& document) {
    return presetGroupOf(document) != nullptr && countOf(document, text) == before - 1;
  };
  device::makeChange({CFG_FILE_PRESET, preset.label(), 0, deletionOf(presets, preset), arrived});
}

}  // namespace camcfg::tool::presets
