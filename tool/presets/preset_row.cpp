#include "presets/preset_row.h"

#include <algorithm>

#include "base/csv.h"
#include "base/decimal.h"
#include "base/json_reader.h"
#include "base/plain_text.h"
#include "base/refusal.h"
#include "base/spelling.h"
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
  for (const Setting& setting : settings::presetSettings())
    if (member == setting.member) return &setting;
  return nullptr;
}

bool isText(const Setting& setting) {
  return setting.kind == settings::Kind::Text;
}

std::string unknown(const std::string& kind, const std::string& name) {
  return "unknown " + kind + " '" + name + "'" + didYouMean(name, memberNames());
}

void takeNumber(PresetRow& row, const Setting& setting, const std::string& text) {
  const std::string fault = settings::objectionTo(setting, text).why;
  if (fault.empty())
    row.values[setting.member] = *decimal32(text);
  else
    row.faults.push_back(std::string(setting.member) + " " + fault);
}

void requireColumns(const CsvRow& header) {
  const std::vector<std::string>& names = header.cells;
  const std::string place = "line " + std::to_string(header.line) + ": ";
  for (auto name = names.begin(); name != names.end(); ++name) {
    if (settingOf(*name) == nullptr) throw Refusal(place + unknown("column", *name));
    if (std::find(names.begin(), name, *name) != name)
      throw Refusal(place + "there are two columns '" + *name + "'");
  }
  if (!isAmong(names, kPresetId)) throw Refusal(place + "there is no column 'id'");
}

PresetRow rowOf(const CsvRow& header, const CsvRow& cells) {
  PresetRow row{"line " + std::to_string(cells.line), noValues(), {}};
  if (cells.cells.size() != header.cells.size())
    row.faults.push_back("it has " + std::to_string(cells.cells.size()) + " cells, not " +
                         std::to_string(header.cells.size()) + " as line " +
                         std::to_string(header.line));
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
    row.faults.push_back(name + " " + value.dump() + " is no text");
}

PresetRow rowOf(const std::string& place, const Json& preset) {
  PresetRow row{place, noValues(), {}};
  if (!preset.is_object()) row.faults.emplace_back("it is no object");
  for (const auto& [name, value] : preset.items())
    if (preset.is_object()) takeMember(row, name, value);
  return row;
}

Json parsed(const std::string& text) {
  JsonText read = readJson(text);
  if (!read.repeated.empty()) throw Refusal(read.repeated.front() + " occurs there twice");
  if (read.fault == 0) return std::move(read.value);
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(read.fault, text.size()));
  throw Refusal("line " + std::to_string(1 + std::count(text.begin(), end, '\n')) +
                ": it is no JSON from here on");
}

std::vector<PresetRow> readJsonRows(const std::string& text) {
  const Json presets = parsed(text);
  if (!presets.is_array()) throw Refusal("it is no array of presets");
  std::vector<PresetRow> rows;
  for (const Json& preset : presets)
    rows.push_back(rowOf("preset " + std::to_string(rows.size() + 1) + " of the array", preset));
  return rows;
}

}  // namespace

std::vector<PresetRow> readPresetRows(const std::string& text) {
  const std::size_t start = text.find_first_not_of("\xef\xbb\xbf \t\r\n");
  const bool isJson = start != std::string::npos && (text[start] == '[' || text[start] == '{');
  return isJson ? readJsonRows(text) : readCsvRows(text);
}

std::vector<PresetRow> rowsOf(const std::vector<Preset>& presets) {
  std::vector<PresetRow> rows;
  rows.reserve(presets.size());
  for (const Preset& preset : presets) rows.push_back({preset.label(), preset.values, {}});
  return rows;
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

}  // namespace camcfg::tool::presets
