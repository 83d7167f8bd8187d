#include <camcfg/types.h>

#include <algorithm>
#include <map>
#include <optional>

#include "base/json.h"
#include "presets/preset.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::presets {
namespace {

using settings::kPresetId;

// The first preset of each id.
class ById {
 public:
  explicit ById(const Json& presets) {
    for (const Json& preset : presets) presets_.emplace(preset.at(kPresetId), &preset);
  }

  // Null if there is none.
  const Json* find(const Json& id) const {
    const auto found = presets_.find(id);
    return found == presets_.end() ? nullptr : found->second;
  }

 private:
  std::map<Json, const Json*> presets_;
};

// Whether each preset is found by an id of its own.
bool areDistinct(const Json& presets) {
  const ById byId(presets);
  return std::all_of(presets.begin(), presets.end(), [&](const Json& preset) {
    return !preset.at(kPresetId).is_null() && byId.find(preset.at(kPresetId)) == &preset;
  });
}

bool isGiven(const settings::Node& node, const char* name) {
  return node.value().is_object() && node.value().contains(name) &&
         !node.value().at(name).is_null();
}

// The form of the description is looked at when it is known whether it changes.
Values readValues(const settings::Node& node) {
  Values values = noValues();
  static const settings::Settings& all = settings::presetSettings();
  static const std::vector<std::string> members = settings::membersOf(all);
  if (!node.isObjectOf(members)) return values;
  for (const settings::Setting& setting : all) {
    const char* member = setting.member;
    if (isGiven(node, member))
      values[member] = isText(setting) ? Json(node.member(member).text())
                                       : Json(node.member(member).number(setting.limits));
    else if (setting.need == settings::Need::Required)
      node.refuseMissing(member);
  }
  return values;
}

// What is given, over what the preset has.
Json merged(const Json* before, const Values& given) {
  Json preset = given;
  for (const std::string& name : given.names())
    if (given.at(name).is_null() && before != nullptr) preset.at(name) = before->at(name);
  return preset;
}

// What stays of a preset may be what no record can hold.
bool isDescriptionHeld(const Values& given, const Json& former) {
  const Json& description = given.at(settings::kPresetDescription);
  return description.is_null() || description == former.at(settings::kPresetDescription);
}

// All that counts of a faulty preset is the id that it takes up.
Json faulty(const settings::Node& node) {
  return {{kPresetId, isGiven(node, kPresetId) ? node.value().at(kPresetId) : Json()}};
}

// A preset as it will be. One that is to be as it is stays so, whatever it lacks.
Json readPreset(const settings::Node& node, const std::optional<Presets>& presets,
                const ById& before) {
  if (node.isHeld()) return node.value();
  const std::size_t faults = node.faults();
  const Values given = readValues(node);
  if (node.faults() != faults) return faulty(node);
  const Json* former = before.find(given.at(kPresetId));
  if (former != nullptr && merged(former, given) == *former) return *former;
  const int id = given.at(kPresetId).get<int>();
  const PresetUpdate update = updateOf(presets ? presets->lookup(id) : nullptr, given);
  if (update.fault.empty()) return update.values;
  if (former != nullptr && isDescriptionHeld(given, *former)) return merged(former, given);
  node.refuse(update.fault);
  return update.values;
}

// In the order that the file will have: those that are there keep theirs, new ones come last.
Json inFileOrder(const Json& presets, const Json& before) {
  Json ordered = Json::array();
  const ById there(before);
  const ById stated(presets);
  for (const Json& former : before)
    if (const Json* preset = stated.find(former.at(kPresetId))) ordered.push_back(*preset);
  for (const Json& preset : presets)
    if (there.find(preset.at(kPresetId)) == nullptr) ordered.push_back(preset);
  return ordered;
}

Json readPresets(const settings::Node& node, const Json& before, device::Plan& /*plan*/) {
  if (!node.isArray()) return before;
  std::optional<Presets> presets;
  if (!before.empty()) presets.emplace();
  const ById former(before);
  std::map<Json, bool> ids;  // and whether they are held
  Json after = Json::array();
  for (const settings::Node& element : node.elements(kPresetId)) {
    const Json preset = readPreset(element, presets, former);
    const Json& id = preset.at(kPresetId);
    const bool isHeld = isGiven(element, kPresetId) && element.member(kPresetId).isHeld();
    const auto [other, isNew] = ids.emplace(id, isHeld);
    if (!id.is_null() && !isNew && !(other->second && isHeld))
      element.member(kPresetId).refuse("there is another one with this id");
    after.push_back(preset);
  }
  return areDistinct(before) ? inFileOrder(after, before) : after;
}

std::vector<device::Change> replacement(const Json& after) {
  return {replacing({after.begin(), after.end()})};
}

// Of presets without an id, or with the same one, the library finds one at most.
std::vector<device::Change> presetChanges(const Json& before, const Json& after, bool /*force*/) {
  if (!areDistinct(before)) return replacement(after);
  const ById former(before);
  const ById kept(after);
  std::vector<int> deleted;
  for (const Json& preset : before)
    if (kept.find(preset.at(kPresetId)) == nullptr)
      deleted.push_back(preset.at(kPresetId).get<int>());
  std::vector<device::Change> changes;
  if (!deleted.empty()) changes.push_back(deletion(deleted));
  std::vector<Values> changed;
  for (const Json& preset : after) {
    const Json* same = former.find(preset.at(kPresetId));
    if (same == nullptr || *same != preset) changed.push_back(preset);
  }
  if (!changed.empty()) changes.push_back(storing(kSection, changed));
  return changes;
}

}  // namespace

device::Section presetsSection() {
  const auto load = [] { return Presets().json(); };
  const auto readable = [=]() -> device::Readable {
    if (presetGroupOf(*device::requireDocument(CFG_FILE_PRESET)) == nullptr)
      return {Json::array(), {{whyNoGroup(), ""}}};
    return {load(), {}};
  };
  return {kSection,        load,    readPresets, presetChanges,
          CFG_FILE_PRESET, nullptr, readable,    replacement};
}

}  // namespace camcfg::tool::presets
