#include <algorithm>
#include <map>

#include "base/concat.h"
#include "base/csv.h"
#include "base/json_bytes.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "presets/preset.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::presets {
namespace {

using settings::kPresetId;
using settings::Setting;

std::vector<std::string> memberNames() {
  return settings::membersOf(settings::presetSettings());
}

const Setting* settingOf(const std::string& member) {
  return settings::settingOf(settings::presetSettings(), member);
}

std::string unknown(const std::string& kind, const std::string& name) {
  return concat("unknown ", kind, " '", name, "'", didYouMean(name, memberNames()));
}

void takeNumber(PresetRow& row, const Setting& setting, const std::string& text) {
  const std::string fault = settings::objectionTo(setting, text).why;
  if (fault.empty())
    row.values[setting.member] = *decimal32(text);
  else
    row.faults.push_back(concat(setting.member, " ", fault));
}

void requireColumns(const CsvRow& header) {
  const std::vector<std::string>& names = header.cells;
  const std::string place = concat("line ", header.line, ": ");
  for (auto name = names.begin(); name != names.end(); ++name) {
    if (settingOf(*name) == nullptr) throw Refusal(place + unknown("column", *name));
    if (std::find(names.begin(), name, *name) != name)
      throw Refusal(concat(place, "there are two columns '", *name, "'"));
  }
  if (!isAmong(names, kPresetId)) throw Refusal(place + "there is no column 'id'");
}

PresetRow rowOf(const CsvRow& header, const CsvRow& cells) {
  PresetRow row{"line " + std::to_string(cells.line), noValues(), {}};
  if (cells.cells.size() != header.cells.size())
    row.faults.push_back(concat("it has ", cells.cells.size(), " cells, not ", header.cells.size(),
                                " as line ", header.line));
  const std::size_t count = std::min(cells.cells.size(), header.cells.size());
  for (std::size_t i = 0; i < count; ++i) {
    const Setting& setting = *settingOf(header.cells[i]);
    if (isText(setting))
      row.values[setting.member] = cells.cells[i];
    else if (!cells.cells[i].empty())
      takeNumber(row, setting, cells.cells[i]);
  }
  return row;
}

std::vector<PresetRow> readCsvRows(const std::string& text) {
  const std::vector<CsvRow> table = readCsv(text);
  if (table.empty()) throw Refusal("there is nothing in the file");
  requireColumns(table.front());
  std::vector<PresetRow> rows;
  for (auto cells = table.begin() + 1; cells != table.end(); ++cells)
    rows.push_back(rowOf(table.front(), *cells));
  return rows;
}

void takeMember(PresetRow& row, const std::string& name, const Json& value) {
  const Setting* setting = settingOf(name);
  if (setting == nullptr)
    row.faults.push_back(unknown("member", name));
  else if (value.is_null())
    return;
  else if (!isText(*setting))
    takeNumber(row, *setting, value.dump());
  else if (value.is_string())
    row.values[name] = value;
  else
    row.faults.push_back(concat(name, " ", value.dump(), " is not a text"));
}

// Of a row that is faulty all over.
constexpr std::size_t kMostFaults = 20;

PresetRow rowOf(const std::string& place, const Json& preset) {
  PresetRow row{place, noValues(), {}};
  if (!preset.is_object()) row.faults.emplace_back("it is not an object");
  for (const auto& [name, value] : preset.items()) {
    if (row.faults.size() == kMostFaults) {
      row.faults.emplace_back("and more");
      break;
    }
    const std::size_t faults = row.faults.size();
    const Json text = withTexts(value, name, [&](const auto& member, const auto& why) {
      row.faults.push_back(std::string(member).append(" ").append(why));
    });
    if (row.faults.size() == faults) takeMember(row, name, text);
  }
  return row;
}

Json parsed(const std::string& text) {
  JsonText read = readJson(text);
  if (!read.repeated.empty()) throw Refusal(read.repeated.front() + " occurs there twice");
  if (read.fault == 0) return std::move(read.value);
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(read.fault, text.size()));
  throw Refusal(
      concat("line ", 1 + std::count(text.begin(), end, '\n'), ": it is no JSON from here on"));
}

std::vector<PresetRow> readJsonRows(const std::string& text) {
  const Json presets = parsed(text);
  if (!presets.is_array()) throw Refusal("it is not an array of presets");
  std::vector<PresetRow> rows;
  for (const Json& preset : presets)
    rows.push_back(rowOf(concat("preset ", rows.size() + 1, " of the array"), preset));
  return rows;
}

// A table cannot tell an empty description from none.
bool isChange(const Preset& present, const Values& given) {
  const settings::Settings& all = settings::presetSettings();
  return std::any_of(all.begin(), all.end(), [&](const Setting& setting) {
    const Json& wanted = given.at(setting.member);
    const Json& now = present.values.at(setting.member);
    const bool isNone = now.is_null() && wanted == "";
    return !wanted.is_null() && wanted != now && !isNone;
  });
}

// What an import is going to do.
struct Import {
  std::vector<Values> stored;
  std::vector<int> created;
  std::vector<int> updated;
  std::vector<int> unchanged;
  std::vector<std::string> faults;
  std::map<int, std::string> places;  // of the ids

  void addFault(const PresetRow& row, const std::string& why) {
    faults.push_back(concat(row.place, ": ", why));
  }
  bool takeId(const PresetRow& row);
  void add(const Presets* presets, const PresetRow& row);
};

bool Import::takeId(const PresetRow& row) {
  const Json& id = row.values.at(kPresetId);
  if (id.is_null()) {
    if (row.faults.empty()) addFault(row, "it has no id");
    return false;
  }
  const Setting& setting = settings::presetSettings().front();
  const std::string fault = settings::objectionTo(setting, id.dump()).why;
  if (!fault.empty()) {
    addFault(row, "id " + fault);
    return false;
  }
  const auto [other, isNew] = places.emplace(id.get<int>(), row.place);
  if (!isNew) addFault(row, concat("id ", id.dump(), " is in ", other->second, " already"));
  return isNew;
}

void Import::add(const Presets* presets, const PresetRow& row) {
  for (const std::string& fault : row.faults) addFault(row, fault);
  if (!takeId(row)) return;
  const int id = row.values.at(kPresetId).get<int>();
  const Preset* present = presets == nullptr ? nullptr : presets->lookup(id);
  if (present != nullptr && !isChange(*present, row.values)) return unchanged.push_back(id);
  const PresetUpdate update = updateOf(present, row.values);
  if (!update.fault.empty()) addFault(row, update.fault);
  stored.push_back(update.values);
  (present == nullptr ? created : updated).push_back(id);
}

Import planFor(const Presets* presets, const std::vector<PresetRow>& rows) {
  Import import;
  for (const PresetRow& row : rows) import.add(presets, row);
  return import;
}

}  // namespace

std::vector<PresetRow> readPresetRows(const std::string& text) {
  const std::size_t start = text.find_first_not_of("\xef\xbb\xbf \t\r\n");
  const bool isJson = start != std::string::npos && (text[start] == '[' || text[start] == '{');
  return isJson ? readJsonRows(text) : readCsvRows(text);
}

std::string presetsAsCsv(const std::vector<Preset>& presets) {
  std::string text = csvLine(memberNames());
  for (const Preset& preset : presets) {
    std::vector<std::string> cells;
    for (const Setting& setting : settings::presetSettings())
      cells.push_back(settings::inFile(setting, preset.values.at(setting.member)));
    text += csvLine(cells);
  }
  return text;
}

Outcome importPresets(const std::string& text, bool isDryRun) {
  const Presets presets;
  const Import import = planFor(&presets, readPresetRows(text));
  const bool isSound = import.faults.empty();
  if (isSound && !import.stored.empty())
    device::makeChange(storing(kSection, import.stored), isDryRun);
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

std::vector<std::string> faultsOf(const std::vector<Preset>& presets) {
  std::vector<PresetRow> rows;
  rows.reserve(presets.size());
  for (const Preset& preset : presets) rows.push_back({preset.label(), preset.values, {}});
  return planFor(nullptr, rows).faults;
}

}  // namespace camcfg::tool::presets
