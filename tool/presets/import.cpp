#include "presets/import.h"

#include "presets/change.h"
#include "settings/nearest.h"

namespace camcfg::tool::presets {
namespace {

bool isGivenOtherwise(const std::optional<int>& given, const std::optional<int>& present) {
  return given && given != present;
}

// A table cannot tell an empty description from none.
bool isChange(const Preset& present, const PresetValues& given) {
  for (std::size_t i = 0; i < given.numbers.size(); ++i)
    if (isGivenOtherwise(given.numbers[i], present.numbers[i])) return true;
  return given.description && *given.description != present.description.value_or("");
}

}  // namespace

PresetImport::PresetImport(const Presets* presets, const std::vector<PresetRow>& rows) {
  for (const PresetRow& row : rows) plan(presets, row);
}

void PresetImport::addFault(const PresetRow& row, const std::string& why) {
  faults_.push_back(row.place + ": " + why);
}

bool PresetImport::takeId(const PresetRow& row) {
  const std::optional<int>& id = row.values.id;
  if (!id) {
    if (row.faults.empty()) addFault(row, "it has no id");
    return false;
  }
  if (*id < 0 || *id > PRESET_ID_MAX) {
    addFault(row, "id " + settings::outside(std::to_string(*id), *id, 0, PRESET_ID_MAX));
    return false;
  }
  const auto [other, isNew] = places_.emplace(*id, row.place);
  if (!isNew) addFault(row, "id " + std::to_string(*id) + " is in " + other->second + " already");
  return isNew;
}

void PresetImport::plan(const Presets* presets, const PresetRow& row) {
  for (const std::string& fault : row.faults) addFault(row, fault);
  if (!takeId(row)) return;
  const Preset* present = presets == nullptr ? nullptr : presets->lookup(*row.values.id);
  const bool changes = present == nullptr || isChange(*present, row.values);
  if (!changes) return unchanged_.push_back(*row.values.id);

  const PresetUpdate update = updateOf(present, row.values);
  if (!update.fault.empty()) addFault(row, update.fault);
  records_.push_back(update.record);
  (present == nullptr ? created_ : updated_).push_back(*row.values.id);
}

void PresetImport::carryOut() const {
  if (!records_.empty()) storePresets("presets", records_);
}

Json PresetImport::json() const {
  const auto done = [this](const std::vector<int>& ids) {
    return faults_.empty() ? Json(ids) : Json::array();
  };
  return {{"created", done(created_)},
          {"updated", done(updated_)},
          {"unchanged", done(unchanged_)},
          {"faults", faults_}};
}

}  // namespace camcfg::tool::presets
