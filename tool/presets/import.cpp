#include "presets/import.h"

#include <algorithm>
#include <map>

#include "presets/change.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::presets {
namespace {

// A table cannot tell an empty description from none.
bool isChange(const Preset& present, const Values& given) {
  const settings::Settings& all = settings::presetSettings();
  return std::any_of(all.begin(), all.end(), [&](const settings::Setting& setting) {
    const Json& wanted = given.at(setting.member);
    const Json& now = present.values.at(setting.member);
    const bool isNone = now.is_null() && wanted == "";
    return !wanted.is_null() && wanted != now && !isNone;
  });
}

// What an import is going to do.
struct Import {
  std::vector<tagPRESET_CFG_S> records;
  std::vector<int> created;
  std::vector<int> updated;
  std::vector<int> unchanged;
  std::vector<std::string> faults;
  std::map<int, std::string> places;  // of the ids

  void addFault(const PresetRow& row, const std::string& why) {
    faults.push_back(row.place + ": " + why);
  }
  bool takeId(const PresetRow& row);
  void add(const Presets* presets, const PresetRow& row);
};

bool Import::takeId(const PresetRow& row) {
  const Json& id = row.values.at(settings::kPresetId);
  if (id.is_null()) {
    if (row.faults.empty()) addFault(row, "it has no id");
    return false;
  }
  const settings::Setting& setting = settings::presetSettings().front();
  const std::string fault = settings::objectionTo(setting, id.dump()).why;
  if (!fault.empty()) {
    addFault(row, "id " + fault);
    return false;
  }
  const auto [other, isNew] = places.emplace(id.get<int>(), row.place);
  if (!isNew) addFault(row, "id " + id.dump() + " is in " + other->second + " already");
  return isNew;
}

void Import::add(const Presets* presets, const PresetRow& row) {
  for (const std::string& fault : row.faults) addFault(row, fault);
  if (!takeId(row)) return;
  const int id = row.values.at(settings::kPresetId).get<int>();
  const Preset* present = presets == nullptr ? nullptr : presets->lookup(id);
  if (present != nullptr && !isChange(*present, row.values)) return unchanged.push_back(id);
  const PresetUpdate update = updateOf(present, row.values);
  if (!update.fault.empty()) addFault(row, update.fault);
  records.push_back(update.record);
  (present == nullptr ? created : updated).push_back(id);
}

Import planFor(const Presets* presets, const std::vector<PresetRow>& rows) {
  Import import;
  for (const PresetRow& row : rows) import.add(presets, row);
  return import;
}

}  // namespace

Outcome importPresets(const std::string& text, bool isDryRun) {
  const Presets presets;
  const Import import = planFor(&presets, readPresetRows(text));
  const bool isSound = import.faults.empty();
  if (isSound && !isDryRun && !import.records.empty()) storePresets("presets", import.records);
  const auto done = [&](const std::vector<int>& ids) {
    return isSound ? Json(ids) : Json::array();
  };
  return {{{"created", done(import.created)},
           {"updated", done(import.updated)},
           {"unchanged", done(import.unchanged)},
           {"faults", import.faults}},
          {},
          isSound ? Status::Done : Status::Refused};
}

std::vector<std::string> faultsOf(const std::vector<PresetRow>& rows) {
  return planFor(nullptr, rows).faults;
}

}  // namespace camcfg::tool::presets
