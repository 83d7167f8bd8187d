#include "presets/section.h"

#include <algorithm>
#include <cstdint>

#include "base/json_reader.h"
#include "presets/change.h"

namespace camcfg::tool::presets {
namespace {

constexpr char kName[] = "presets";
constexpr char kId[] = "id";
constexpr char kDescription[] = "description";
const settings::Range kIds{0, PRESET_ID_MAX};
const settings::Range kNumber{INT32_MIN, INT32_MAX};

std::vector<std::string> memberNames() {
  std::vector<std::string> names = {kId, kDescription};
  for (const PresetNumber& number : kPresetNumbers) names.emplace_back(number.name);
  return names;
}

Json loadPresets() {
  const Presets presets;
  Json list = Json::array();
  for (const Preset& preset : presets.all()) list.push_back(preset.json());
  return list;
}

const Json* withId(const Json& presets, const Json& id) {
  const auto found = std::find_if(presets.begin(), presets.end(),
                                  [&](const Json& preset) { return preset.at(kId) == id; });
  return found == presets.end() ? nullptr : &*found;
}

// Whether each preset is found by an id of its own.
bool areDistinct(const Json& presets) {
  return std::all_of(presets.begin(), presets.end(), [&](const Json& preset) {
    return !preset.at(kId).is_null() && withId(presets, preset.at(kId)) == &preset;
  });
}

bool isGiven(const settings::Node& node, const char* name) {
  return node.value().is_object() && node.value().contains(name) &&
         !node.value().at(name).is_null();
}

PresetValues readValues(const settings::Node& node) {
  PresetValues values;
  if (!node.isObjectOf(memberNames())) return values;
  if (isGiven(node, kId))
    values.id = node.member(kId).number(kIds);
  else
    node.refuseMissing(kId);
  if (isGiven(node, kDescription)) values.description = node.member(kDescription).text();
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    if (isGiven(node, kPresetNumbers[i].name))
      values.numbers[i] = node.member(kPresetNumbers[i].name).number(kNumber);
  return values;
}

PresetValues valuesOf(const Json& preset) {
  settings::Faults none;
  return readValues(settings::Node(preset, kName, none));
}

// What is given, over what the preset has.
Json merged(const Json* before, const PresetValues& given) {
  Json preset = given.json();
  for (const auto& [name, value] : preset.items())
    if (value.is_null() && before != nullptr) value = before->at(name);
  return preset;
}

// All that counts of a faulty preset is the id that it takes up.
Json faulty(const settings::Node& node) {
  Json preset = Json::object();
  preset[kId] = isGiven(node, kId) ? node.value().at(kId) : Json();
  return preset;
}

// A preset as it will be. One that is to be as it is stays so, whatever it lacks.
Json readPreset(const settings::Node& node, const Presets& presets, const Json& before) {
  const std::size_t faults = node.faults();
  const PresetValues given = readValues(node);
  if (node.faults() != faults) return faulty(node);
  const Json* former = withId(before, *given.id);
  if (former != nullptr && merged(former, given) == *former) return *former;
  const PresetUpdate update = updateOf(presets.lookup(*given.id), given);
  if (!update.fault.empty()) node.refuse(update.fault);
  PresetValues values;
  values.id = given.id;
  values.description = update.record.s8Description;
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    values.numbers[i] = update.record.*kPresetNumbers[i].field;
  return values.json();
}

// In the order that the file will have: those that are there keep theirs, new ones come last.
Json inFileOrder(const Json& presets, const Json& before) {
  Json ordered = Json::array();
  for (const Json& former : before)
    if (const Json* preset = withId(presets, former.at(kId))) ordered.push_back(*preset);
  for (const Json& preset : presets)
    if (withId(before, preset.at(kId)) == nullptr) ordered.push_back(preset);
  return ordered;
}

Json readPresets(const settings::Node& node, const Json& before, device::Plan& /*plan*/) {
  if (!node.isArray()) return before;
  if (before.size() > kMostValues) {
    node.refuse("the device has more than " + std::to_string(kMostValues) +
                " presets; mend them first");
    return before;
  }
  if (!areDistinct(before)) {
    node.refuse("the device has presets without an id or with the same one; mend them first");
    return before;
  }
  const Presets presets;
  Json after = Json::array();
  for (std::size_t i = 0; i < node.value().size(); ++i) {
    const Json preset = readPreset(node.element(i), presets, before);
    if (!preset.at(kId).is_null() && withId(after, preset.at(kId)) != nullptr)
      node.element(i).member(kId).refuse("there is another one with this id");
    after.push_back(preset);
  }
  return inFileOrder(after, before);
}

device::Step deletion(int id) {
  const std::string what = elementPlace(kName, static_cast<std::size_t>(id));
  return {what, CFG_FILE_PRESET, 0, [id] {
            const Presets presets;
            if (const Preset* preset = presets.lookup(id)) deletePreset(presets, *preset);
          }};
}

device::Step storing(const std::vector<PresetValues>& changed) {
  std::size_t growth = 0;
  for (const PresetValues& values : changed) growth += device::roomFor(values.json());
  return {kName, CFG_FILE_PRESET, growth, [changed] {
            const Presets presets;
            std::vector<tagPRESET_CFG_S> records;
            records.reserve(changed.size());
            for (const PresetValues& values : changed)
              records.push_back(updateOf(presets.lookup(*values.id), values).record);
            storePresets(kName, records);
          }};
}

std::vector<device::Step> presetSteps(const Json& before, const Json& after) {
  std::vector<device::Step> steps;
  for (const Json& preset : before)
    if (withId(after, preset.at(kId)) == nullptr)
      steps.push_back(deletion(preset.at(kId).get<int>()));
  std::vector<PresetValues> changed;
  for (const Json& preset : after) {
    const Json* former = withId(before, preset.at(kId));
    if (former == nullptr || *former != preset) changed.push_back(valuesOf(preset));
  }
  if (!changed.empty()) steps.push_back(storing(changed));
  return steps;
}

}  // namespace

device::Section presetsSection() {
  return {kName,
          loadPresets,
          readPresets,
          presetSteps,
          [] { return std::vector<std::string>(); },
          CFG_FILE_PRESET};
}

}  // namespace camcfg::tool::presets
