#include "presets/change.h"

#include <camcfg/store.h>

#include <algorithm>
#include <cstring>

#include "base/refusal.h"
#include "device/change.h"
#include "settings/nearest.h"

namespace camcfg::tool::presets {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr std::size_t kLongestDescription = PRESET_DESC_SIZE - 1;
// A new preset whose numbers have eleven characters each and whose description is all entities.
constexpr std::size_t kGrowth = 180 + kLongestDescription * 6;

std::string kept(const Preset& preset, std::size_t number) {
  const PresetNumber& field = kPresetNumbers[number];
  const char* text = preset.element->Attribute(field.attribute);
  if (text == nullptr || preset.numbers[number]) return "";
  return std::string("its ") + field.attribute + " '" + text +
         "' is no integer and would become 0; give " + field.name + " as well";
}

void copyDescription(tagPRESET_CFG_S& record, const std::string& text) {
  std::memcpy(record.s8Description, text.data(), std::min(text.size(), kLongestDescription));
}

bool isStored(XMLDocument& document, const tagPRESET_CFG_S& record) {
  XMLElement* group = presetGroupOf(document);
  XMLElement* element =
      group == nullptr ? nullptr : CFG_GetElementByNameId(group, "preset", record.s32Id);
  if (element == nullptr) return false;
  const Preset preset = presetOf(*element);
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    if (preset.numbers[i] != record.*kPresetNumbers[i].field) return false;
  return preset.id == record.s32Id && preset.description == std::string(record.s8Description);
}

std::string textOf(const XMLElement& element) {
  tinyxml2::XMLPrinter printer;
  element.Accept(&printer);
  return printer.CStr();
}

// How many presets are written exactly like this.
std::ptrdiff_t countOf(XMLDocument& document, const std::string& text) {
  std::ptrdiff_t count = 0;
  XMLElement* group = presetGroupOf(document);
  for (XMLElement* element = group == nullptr ? nullptr : group->FirstChildElement();
       element != nullptr; element = element->NextSiblingElement())
    count += textOf(*element) == text ? 1 : 0;
  return count;
}

std::function<bool()> deletionOf(const Presets& presets, const Preset& preset) {
  if (preset.id && presets.lookup(*preset.id) == &preset)
    return [id = *preset.id] { return CFG_PRESET_DeleteById(id) == 0; };
  if (preset.description && presets.lookup(*preset.description) == &preset)
    return [text = *preset.description] { return CFG_PRESET_DeleteByDesc(text.c_str()) == 0; };
  throw Refusal(preset.label() + ": the library would delete " +
                presets.lookup(*preset.description)->label() +
                ", since a description that begins like this comes first");
}

}  // namespace

std::string whyNotADescription(const std::string& text) {
  if (text.size() > kLongestDescription)
    return "the description has " + std::to_string(text.size()) + " bytes, the limit is " +
           std::to_string(kLongestDescription) +
           settings::nearestOfLength(text, kLongestDescription);
  const auto steers = [](unsigned char c) { return c < 0x20 || c == 0x7f; };
  return std::any_of(text.begin(), text.end(), steers)
             ? "the description has a control character in it"
             : "";
}

PresetUpdate updateOf(const Preset* existing, const PresetValues& given) {
  PresetUpdate update{};
  update.record.s32Id = *given.id;
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i) {
    const bool keeps = existing != nullptr && !given.numbers[i];
    if (keeps && update.fault.empty()) update.fault = kept(*existing, i);
    const std::optional<int> number = keeps ? existing->numbers[i] : given.numbers[i];
    update.record.*kPresetNumbers[i].field = number.value_or(0);
  }
  const bool keeps = existing != nullptr && !given.description;
  const std::string text =
      (keeps ? existing->description : given.description).value_or(std::string());
  const std::string fault = given.description ? whyNotADescription(text) : "";
  if (update.fault.empty()) update.fault = fault;
  if (keeps && update.fault.empty() && text.size() > kLongestDescription)
    update.fault = "its present description would be cut to " +
                   std::to_string(kLongestDescription) + " bytes; give a description as well";
  copyDescription(update.record, text);
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

void deletePreset(const Presets& presets, const Preset& preset) {
  const std::string text = textOf(*preset.element);
  const std::ptrdiff_t before = countOf(*preset.element->GetDocument(), text);
  const auto arrived = [&](XMLDocument& document) {
    return presetGroupOf(document) != nullptr && countOf(document, text) == before - 1;
  };
  device::makeChange({CFG_FILE_PRESET, preset.label(), 0, deletionOf(presets, preset), arrived});
}

}  // namespace camcfg::tool::presets
