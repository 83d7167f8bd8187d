#include "presets/file.h"

#include <algorithm>
#include <limits>

#include "base/csv.h"
#include "base/decimal.h"
#include "base/json_reader.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "settings/nearest.h"

namespace camcfg::tool::presets {
namespace {

using Limits = std::numeric_limits<int>;

constexpr char kId[] = "id";
constexpr char kDescription[] = "description";

std::vector<std::string> memberNames() {
  std::vector<std::string> names = {kId, kDescription};
  for (const PresetNumber& number : kPresetNumbers) names.emplace_back(number.name);
  return names;
}

std::string unknown(const std::string& kind, const std::string& name) {
  return "unknown " + kind + " '" + name + "'" + didYouMean(name, memberNames());
}

// The number of a name; null for any other name.
std::optional<int>* numberOf(PresetValues& values, const std::string& name) {
  if (name == kId) return &values.id;
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    if (name == kPresetNumbers[i].name) return &values.numbers[i];
  return nullptr;
}

void takeNumber(PresetRow& row, const std::string& name, const std::string& text) {
  const std::optional<long long> number = decimal(text);
  if (!number)
    row.faults.push_back(name + " '" + text + "' is no decimal integer");
  else if (*number < Limits::min() || *number > Limits::max())
    row.faults.push_back(name + " " +
                         settings::outside(text, *number, Limits::min(), Limits::max()));
  else
    *numberOf(row.values, name) = static_cast<int>(*number);
}

void requireColumns(const CsvRow& header) {
  const std::vector<std::string>& names = header.cells;
  const std::vector<std::string> known = memberNames();
  const std::string place = "line " + std::to_string(header.line) + ": ";
  for (auto name = names.begin(); name != names.end(); ++name) {
    if (std::find(known.begin(), known.end(), *name) == known.end())
      throw Refusal(place + unknown("column", *name));
    if (std::find(names.begin(), name, *name) != name)
      throw Refusal(place + "there are two columns '" + *name + "'");
  }
  if (std::find(names.begin(), names.end(), kId) == names.end())
    throw Refusal(place + "there is no column 'id'");
}

PresetRow rowOf(const CsvRow& header, const CsvRow& cells) {
  PresetRow row{"line " + std::to_string(cells.line), {}, {}};
  if (cells.cells.size() != header.cells.size())
    row.faults.push_back("it has " + std::to_string(cells.cells.size()) + " cells, not " +
                         std::to_string(header.cells.size()) + " as line " +
                         std::to_string(header.line));
  const std::size_t count = std::min(cells.cells.size(), header.cells.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (header.cells[i] == kDescription)
      row.values.description = cells.cells[i];
    else if (!cells.cells[i].empty())
      takeNumber(row, header.cells[i], cells.cells[i]);
  }
  return row;
}

std::vector<PresetRow> readCsvPresets(const std::string& text) {
  const std::vector<CsvRow> table = readCsv(text);
  if (table.empty()) throw Refusal("there is nothing in the file");
  requireColumns(table.front());
  std::vector<PresetRow> rows;
  for (auto cells = table.begin() + 1; cells != table.end(); ++cells)
    rows.push_back(rowOf(table.front(), *cells));
  return rows;
}

void takeMember(PresetRow& row, const std::string& name, const Json& value) {
  if (name == kDescription && value.is_string())
    row.values.description = value.get<std::string>();
  else if (name == kDescription && !value.is_null())
    row.faults.push_back("description " + value.dump() + " is no text");
  else if (name != kDescription && numberOf(row.values, name) == nullptr)
    row.faults.push_back(unknown("member", name));
  else if (name != kDescription && !value.is_null())
    takeNumber(row, name, value.dump());
}

PresetRow rowOf(const std::string& place, const Json& preset) {
  PresetRow row{place, {}, {}};
  if (!preset.is_object()) row.faults.emplace_back("it is no object");
  for (const auto& [name, value] : preset.items())
    if (preset.is_object()) takeMember(row, name, value);
  return row;
}

Json parsed(const std::string& text) {
  JsonText read = readJson(text);
  if (!read.repeated.empty()) throw Refusal(read.repeated.front() + " stands there twice");
  if (read.fault == 0) return std::move(read.value);
  const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(read.fault, text.size()));
  throw Refusal("line " + std::to_string(1 + std::count(text.begin(), end, '\n')) +
                ": it is no JSON from here on");
}

std::vector<PresetRow> readJsonPresets(const std::string& text) {
  const Json presets = parsed(text);
  if (!presets.is_array()) throw Refusal("it is no array of presets");
  std::vector<PresetRow> rows;
  for (const Json& preset : presets)
    rows.push_back(rowOf("preset " + std::to_string(rows.size() + 1) + " of the array", preset));
  return rows;
}

}  // namespace

std::vector<PresetRow> readPresets(const std::string& text) {
  const std::size_t start = text.find_first_not_of("\xef\xbb\xbf \t\r\n");
  const bool isJson = start != std::string::npos && (text[start] == '[' || text[start] == '{');
  return isJson ? readJsonPresets(text) : readCsvPresets(text);
}

std::string presetsAsCsv(const std::vector<Preset>& presets) {
  const auto cell = [](const std::optional<int>& number) {
    return number ? std::to_string(*number) : "";
  };
  std::string text = csvLine(memberNames());
  for (const Preset& preset : presets) {
    std::vector<std::string> cells = {cell(preset.id), preset.description.value_or("")};
    for (const std::optional<int>& number : preset.numbers) cells.push_back(cell(number));
    text += csvLine(cells);
  }
  return text;
}

}  // namespace camcfg::tool::presets
