#include <camcfg/preset.h>
#include <camcfg/store.h>

#include <algorithm>

#include "base/concat.h"
#include "base/elements.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "presets/preset.h"
#include "settings/presets.h"

namespace camcfg::tool::presets {
namespace {

using settings::Setting;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr std::size_t kLongestDescription = PRESET_DESC_SIZE - 1;

// What a record can have of a value that is not given.
std::string lossOf(const Preset& preset, const Setting& setting) {
  const char* attribute = setting.attributes.front().name;
  const char* text = preset.element->Attribute(attribute);
  if (text == nullptr) return "";
  const std::string give = concat("give ", isText(setting) ? "a " : "", setting.member);
  if (!isText(setting))
    return preset.values.at(setting.member).is_null()
               ? concat("its ", attribute, " ", quoted(text),
                        " is not an integer and would become 0; ", give, " as well")
               : "";
  return std::string_view(text).size() <= kLongestDescription
             ? ""
             : concat("its present description would be cut to ", kLongestDescription, " bytes; ",
                      give, " as well");
}

// What a record has of a value.
Json stored(const Setting& setting, const Json& value) {
  if (!isText(setting)) return value.is_null() ? Json(0) : value;
  return value.is_null() ? "" : std::string(firstBytes(value.text(), kLongestDescription));
}

tagPRESET_CFG_S recordOf(const Values& values) {
  tagPRESET_CFG_S record{};
  for (const Setting& setting : settings::presetSettings()) {
    const Json& value = values.at(setting.member);
    if (isText(setting))
      setting.field.setText(&record, value.text());
    else
      setting.field.as<std::int32_t>(&record) = value.get<std::int32_t>();
  }
  return record;
}

bool areStored(XMLDocument& document, const std::vector<Values>& presets) {
  XMLElement* group = presetGroupOf(document);
  if (group == nullptr) return false;
  const PresetIndex index(*group);
  return std::all_of(presets.begin(), presets.end(), [&](const Values& values) {
    XMLElement* element = index.find(values.at(settings::kPresetId).get<int>());
    return element != nullptr && presetOf(*element).values == values;
  });
}

bool store(const Values& values) {
  tagPRESET_CFG_S record = recordOf(values);
  return CFG_PRESET_SetParam(&record) == 0;
}

// What is no integer and is not given stays as it is.
void write(const Values& values, XMLElement& element) {
  const Values present = presetOf(element).values;
  for (const Setting& setting : settings::presetSettings()) {
    const char* attribute = setting.attributes.front().name;
    const Json& value = values.at(setting.member);
    if (value.is_null() && present.at(setting.member).is_null()) continue;
    if (value.is_null())
      element.DeleteAttribute(attribute);
    else if (isText(setting))
      element.SetAttribute(attribute, value.text().c_str());
    else
      element.SetAttribute(attribute, value.get<int>());
  }
}

// Those that are there stay in their places.
void write(const std::vector<Values>& presets, XMLElement& group) {
  const PresetIndex index(group);
  for (const Values& values : presets) {
    const Json& id = values.at(settings::kPresetId);
    XMLElement* element = id.is_null() ? nullptr : index.find(id.get<int>());
    write(values, element == nullptr ? *group.InsertNewChildElement(kElement) : *element);
  }
}

// The library reads and writes the whole file for each preset that it stores. Here it does so once.
bool storeTogether(const std::vector<Values>& presets) {
  XMLDocument* opened = nullptr;
  XMLElement* group = cfgGetPresetCfgNode(&opened, BU_FALSE);
  if (group == nullptr) return false;
  const device::Document document(opened);
  write(presets, *group);
  return CFG_SaveFile(opened, device::argument(CFG_FILE_PRESET), BU_TRUE) == 0;
}

// Likewise.
bool deleteTogether(const std::vector<int>& ids) {
  XMLDocument* opened = nullptr;
  XMLElement* group = cfgGetPresetCfgNode(&opened, BU_FALSE);
  if (group == nullptr) return false;
  const device::Document document(opened);
  const PresetIndex index(*group);
  for (const int id : ids)
    if (XMLElement* element = index.find(id)) group->DeleteChild(element);
  return CFG_SaveFile(opened, device::argument(CFG_FILE_PRESET), BU_TRUE) == 0;
}

// Whatever presets there are, and where there is no group of them.
bool storeInstead(const std::vector<Values>& presets) {
  const device::Document document = device::requireDocument(CFG_FILE_PRESET);
  XMLElement* group = presetGroupOf(*document);
  if (group == nullptr) group = document->InsertEndChild(document->NewElement(kGroup))->ToElement();
  for (const Preset& preset : presetsIn(*group)) group->DeleteChild(preset.element);
  write(presets, *group);
  return CFG_SaveFile(document.get(), device::argument(CFG_FILE_PRESET), BU_FALSE) == 0;
}

// Whether the library's record holds the preset: all values, and an id as new ones may have.
bool isRecord(const Values& values) {
  return std::none_of(values.begin(), values.end(),
                      [](const Json& value) { return value.is_null(); }) &&
         values.at(settings::kPresetDescription).text().size() <= kLongestDescription &&
         settings::presetSettings().front().limits.has(
             values.at(settings::kPresetId).get<std::int64_t>());
}

bool storeAll(const std::vector<Values>& presets) {
  const bool isOne = presets.size() == 1 && isRecord(presets.front());
  return isOne ? store(presets.front()) : storeTogether(presets);
}

// How many presets are written exactly like this.
std::ptrdiff_t countOf(XMLDocument& document, const std::string& text) {
  XMLElement* group = presetGroupOf(document);
  if (group == nullptr) return 0;
  const std::vector<XMLElement*> presets = childrenOf(*group);
  return std::count_if(presets.begin(), presets.end(),
                       [&](const XMLElement* preset) { return written(*preset) == text; });
}

// Refuses a preset that the library cannot be made to delete.
bool isDeletedByItsId(const Presets& presets, const Preset& preset) {
  const std::optional<int> id = preset.id();
  if (id && presets.lookup(*id) == &preset) return true;
  const std::string text = preset.description().value_or("");
  const Preset* found = presets.lookup(text);
  if (preset.description() && found == &preset) return false;
  throw Refusal(concat(preset.label(), ": the library would delete ",
                       found == nullptr ? "none" : found->label(),
                       ", since a description that begins with it comes first"));
}

}  // namespace

PresetUpdate updateOf(const Preset* existing, const Values& given) {
  PresetUpdate update{noValues(), ""};
  for (const Setting& setting : settings::presetSettings()) {
    const Json& wanted = given.at(setting.member);
    const bool keeps = existing != nullptr && wanted.is_null();
    std::string fault;
    if (keeps)
      fault = lossOf(*existing, setting);
    else if (!wanted.is_null() && setting.whyNotUsable != nullptr)
      fault = setting.whyNotUsable(wanted.text());
    if (update.fault.empty()) update.fault = fault;
    update.values[setting.member] =
        stored(setting, keeps ? existing->values.at(setting.member) : wanted);
  }
  return update;
}

device::Change storing(const std::string& what, const std::vector<Values>& presets) {
  const auto arrived = [presets](XMLDocument& document) { return areStored(document, presets); };
  return {CFG_FILE_PRESET, what, [presets] { return storeAll(presets); }, arrived};
}

device::Change replacing(const std::vector<Values>& presets) {
  const auto arrived = [presets](XMLDocument& document) {
    XMLElement* group = presetGroupOf(document);
    if (group == nullptr) return false;
    const std::vector<Preset> stored = presetsIn(*group);
    return std::equal(
        stored.begin(), stored.end(), presets.begin(), presets.end(),
        [](const Preset& preset, const Values& values) { return preset.values == values; });
  };
  return {CFG_FILE_PRESET, kSection, [presets] { return storeInstead(presets); }, arrived};
}

Json storePreset(const Values& given, bool rehearse) {
  const Presets presets;
  const int id = given.at(settings::kPresetId).get<int>();
  const Preset* existing = presets.lookup(id);
  const std::string what = "preset " + std::to_string(id);
  const PresetUpdate update = updateOf(existing, given);
  if (!update.fault.empty()) throw Refusal(concat(what, ": ", update.fault));
  const bool isSo = existing != nullptr && existing->values == update.values;
  if (!isSo) device::makeChange(storing(what, {update.values}), rehearse);
  Json stored = update.values;
  stored["before"] = existing == nullptr ? Json() : existing->values;
  return stored;
}

device::Change deletion(const std::vector<int>& ids) {
  const auto arrived = [ids](XMLDocument& document) {
    XMLElement* group = presetGroupOf(document);
    if (group == nullptr) return false;
    const PresetIndex index(*group);
    return std::all_of(ids.begin(), ids.end(), [&](int id) { return index.find(id) == nullptr; });
  };
  const auto make = [ids] {
    return ids.size() == 1 ? CFG_PRESET_DeleteById(ids.front()) == 0 : deleteTogether(ids);
  };
  const std::string what =
      ids.size() == 1 ? elementPlace(kSection, static_cast<std::size_t>(ids.front())) : kSection;
  return {CFG_FILE_PRESET, what, make, arrived};
}

void deletePreset(const Presets& presets, const Preset& preset, bool rehearse) {
  const std::string text = written(*preset.element);
  const std::ptrdiff_t before = countOf(*preset.element->GetDocument(), text);
  const auto arrived = [&](XMLDocument& document) {
    return presetGroupOf(document) != nullptr && countOf(document, text) == before - 1;
  };
  const bool byId = isDeletedByItsId(presets, preset);
  const auto erase = [&] {
    return (byId ? CFG_PRESET_DeleteById(*preset.id())
                 : CFG_PRESET_DeleteByDesc(preset.description()->c_str())) == 0;
  };
  device::makeChange({CFG_FILE_PRESET, preset.label(), erase, arrived}, rehearse);
}

}  // namespace camcfg::tool::presets
