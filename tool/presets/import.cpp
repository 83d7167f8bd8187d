#include "presets/import.h"

#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::presets {
namespace {

// A table cannot tell an empty description from none.
bool isChange(const Preset& present, const Values& given) {
  for (const settings::Setting& setting : settings::presetSettings()) {
    const Json& wanted = given.at(setting.member);
    const Json& now = present.values.at(setting.member);
    const bool isNone = now.is_null() && wanted == "";
    if (!wanted.is_null() && wanted != now && !isNone) return true;
  }
  return false;
}

const settings::Setting& idSetting() {
  return settings::presetSettings().front();
}

}  // namespace

PresetImport::PresetImport(const Presets* presets, const std::vector<PresetRow>& rows) {
  for (const PresetRow& row : rows) plan(presets, row);
}

void PresetImport::addFault(const PresetRow& row, const std::string& why) {
  faults_.push_back(row.place + ": " + why);
}

bool PresetImport::takeId(const PresetRow& row) {
  const Json& id = row.values.at(settings::kPresetId);
  if (id.is_null()) {
    if (row.faults.empty()) addFault(row, "it has no id");
    return false;
  }
  const std::string fault = settings::objectionTo(idSetting(), id.dump()).why;
  if (!fault.empty()) {
    addFault(row, "id " + fault);
    return false;
  }
  const auto [other, isNew] = places_.emplace(id.get<int>(), row.place);
  if (!isNew) addFault(row, "id " + id.dump() + " is in " + other->second + " already");
  return isNew;
}

void PresetImport::plan(const Presets* presets, const PresetRow& row) {
  for (const std::string& fault : row.faults) addFault(row, fault);
  if (!takeId(row)) return;
  const int id = row.values.at(settings::kPresetId).get<int>();
  const Preset* present = presets == nullptr ? nullptr : presets->lookup(id);
  if (present != nullptr && !isChange(*present, row.values)) return unchanged_.push_back(id);

  const PresetUpdate update = updateOf(present, row.values);
  if (!update.fault.empty()) addFault(row, update.fault);
  records_.push_back(update.record);
  (present == nullptr ? created_ : updated_).push_back(id);
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
