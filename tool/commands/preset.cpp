#include "presets/preset.h"

#include <algorithm>
#include <limits>

#include "base/decimal.h"
#include "base/library_log.h"
#include "base/refusal.h"
#include "commands/groups.h"
#include "commands/options.h"
#include "commands/words.h"
#include "presets/change.h"
#include "presets/import.h"
#include "settings/nearest.h"

namespace camcfg::tool::commands {
namespace {

constexpr std::size_t kFaultsTold = 20;
constexpr char kDescription[] = "--description";
constexpr std::size_t kSeenById = 32;  // bytes from which a query by id keeps a description back

void addNote(cli::Answer& answer, const std::string& note) {
  if (!note.empty()) answer.notes.push_back(note);
}

Json allOf(const presets::Presets& presets) {
  Json all = Json::array();
  for (const presets::Preset& preset : presets.all()) all.push_back(preset.json());
  return all;
}

cli::Answer list(const cli::Arguments& /*arguments*/) {
  cli::Answer answer;
  answer.value = allOf(presets::Presets());
  answer.layout = {cli::Table{"",
                              {{"ID", "{id}"},
                               {"PAN", "{pan}"},
                               {"TILT", "{tilt}"},
                               {"ZOOM", "{zoom}"},
                               {"FOCUS", "{focus}"},
                               {"FOCUS MODE", "{focusMode}"},
                               {"DESCRIPTION", "{description}"}}}};
  return answer;
}

cli::Answer get(const cli::Arguments& arguments) {
  const presets::Presets presets;
  const presets::Preset& preset = presets.require(arguments.text(kPreset));
  cli::Answer answer;
  answer.value = preset.json();
  answer.layout = {cli::Fields{{{"id", "{id}"},
                                {"description", "{description}"},
                                {"pan", "{pan}"},
                                {"tilt", "{tilt}"},
                                {"zoom", "{zoom}"},
                                {"focus", "{focus}"},
                                {"focus mode", "{focusMode}"}}}};
  addNote(answer, presets.shadowOf(preset));
  return answer;
}

int requireNumber(const char* option, const std::string& text) {
  using Limits = std::numeric_limits<int>;
  const std::optional<long long> number = decimal(text);
  if (!number) throw Refusal(std::string(option) + ": '" + text + "' is no decimal integer");
  if (*number < Limits::min() || *number > Limits::max())
    throw Refusal(std::string(option) + ": " +
                  settings::outside(text, *number, Limits::min(), Limits::max()));
  return static_cast<int>(*number);
}

int requireId(const std::string& text) {
  const std::optional<long long> id = decimal(text);
  if (!id) throw Refusal("'" + text + "' is no id (0.." + std::to_string(PRESET_ID_MAX) + ")");
  if (*id < 0 || *id > PRESET_ID_MAX)
    throw Refusal("id " + settings::outside(text, *id, 0, PRESET_ID_MAX));
  return static_cast<int>(*id);
}

presets::PresetValues given(const cli::Arguments& arguments, int id) {
  presets::PresetValues values;
  values.id = id;
  if (arguments.given(kDescription)) values.description = arguments.text(kDescription);
  for (std::size_t i = 0; i < presets::kPresetNumbers.size(); ++i) {
    const char* option = presets::kPresetNumbers[i].option;
    if (arguments.given(option)) values.numbers[i] = requireNumber(option, arguments.text(option));
  }
  return values;
}

// What lookups make of a description that was just stored.
void tellHazards(cli::Answer& answer, int id) {
  const presets::Presets presets;
  const presets::Preset* preset = presets.lookup(id);
  if (preset == nullptr) return;
  addNote(answer, presets.shadowOf(*preset));
  if (preset->description && preset->description->size() >= kSeenById)
    answer.notes.push_back("note: applications that ask for preset " + std::to_string(id) +
                           " by its id get no description of " + std::to_string(kSeenById) +
                           " bytes or more");
}

std::vector<cli::Block> changesOf(const Json& before, const Json& value) {
  if (before.is_null()) return {cli::Line{"preset {id}: created"}};
  std::vector<cli::Block> lines;
  for (const auto& [name, now] : value.items()) {
    if (now == before[name]) continue;
    std::string line = "preset {id}: ";
    line.append(name).append(" {before/").append(name).append("} -> {").append(name).append("}");
    lines.emplace_back(cli::Line{line});
  }
  if (lines.empty()) lines.emplace_back(cli::Line{"preset {id}: unchanged"});
  return lines;
}

cli::Answer store(const presets::PresetValues& values) {
  const presets::Presets presets;
  const presets::Preset* existing = presets.lookup(*values.id);
  const std::string what = "preset " + std::to_string(*values.id);
  const presets::PresetUpdate update = presets::updateOf(existing, values);
  if (!update.fault.empty()) throw Refusal(what + ": " + update.fault);
  presets::storePresets(what, {update.record});

  presets::PresetValues stored = values;
  stored.description = update.record.s8Description;
  for (std::size_t i = 0; i < presets::kPresetNumbers.size(); ++i)
    stored.numbers[i] = update.record.*presets::kPresetNumbers[i].field;
  cli::Answer answer;
  answer.value = stored.json();
  const Json before = existing == nullptr ? Json() : existing->json();
  answer.layout = changesOf(before, answer.value);
  answer.value["before"] = before;
  if (values.description) tellHazards(answer, *values.id);
  return answer;
}

cli::Answer set(const cli::Arguments& arguments) {
  return store(given(arguments, requireId(arguments.text(kId))));
}

// With every id taken, the library's search succeeds all the same and leaves the number alone.
int requireUnusedId() {
  constexpr int kNone = -1;
  int id = kNone;
  forgetComplaint();
  if (CFG_PRESET_GetUnusedId(&id) != 0)
    throw Refusal("the library finds no free id (" + lastComplaint() + ")");
  if (id == kNone)
    throw Refusal("no id is left: all from 0 to " + std::to_string(PRESET_ID_MAX - 1) +
                  " are taken; delete a preset first");
  return id;
}

cli::Answer add(const cli::Arguments& arguments) {
  const presets::Presets usable;
  cli::Answer answer = store(given(arguments, requireUnusedId()));
  answer.layout = {cli::Line{"{id}"}};
  return answer;
}

cli::Answer remove(const cli::Arguments& arguments) {
  const presets::Presets presets;
  const presets::Preset& preset = presets.require(arguments.text(kPreset));
  cli::Answer answer;
  addNote(answer, presets.shadowOf(preset));
  presets::deletePreset(presets, preset);
  answer.value = preset.json();
  answer.value["label"] = preset.label();
  answer.layout = {cli::Line{"{label}: deleted"}};
  return answer;
}

cli::Block exportedAs(const std::string& format, const presets::Presets& presets) {
  if (format == "csv") return cli::Verbatim{presets::presetsAsCsv(presets.all())};
  if (format == "json") return cli::WholeValue{};
  throw Refusal(Status::Usage, std::string(kFormat) + ": '" + format + "' is neither csv nor json");
}

// What a device without presets would refuse.
void tellNotImportable(cli::Answer& answer, const presets::Presets& presets) {
  std::vector<presets::PresetRow> rows;
  for (const presets::Preset& preset : presets.all())
    rows.push_back({preset.label(), preset.values(), {}});
  const presets::PresetImport import(nullptr, rows);
  for (const std::string& fault : import.faults())
    answer.notes.push_back("note: an import will refuse " + fault);
}

cli::Answer exportAll(const cli::Arguments& arguments) {
  const std::string format = arguments.given(kFormat) ? arguments.text(kFormat) : "csv";
  const presets::Presets presets;
  cli::Answer answer;
  answer.value = allOf(presets);
  answer.layout = {exportedAs(format, presets)};
  tellNotImportable(answer, presets);
  return answer;
}

void tellFaults(cli::Answer& answer, const std::vector<std::string>& faults) {
  const std::size_t told = std::min(faults.size(), kFaultsTold);
  answer.notes.assign(faults.begin(), faults.begin() + static_cast<std::ptrdiff_t>(told));
  const std::string more =
      told == faults.size() ? "" : " (" + std::to_string(faults.size() - told) + " more faults)";
  answer.notes.push_back("nothing was imported" + more);
  answer.status = Status::Refused;
}

cli::Answer importAll(const cli::Arguments& arguments) {
  const presets::Presets presets;
  const presets::PresetImport import(&presets, presets::readPresets(arguments.text(kFile)));
  cli::Answer answer;
  answer.value = import.json();
  if (!import.faults().empty()) {
    tellFaults(answer, import.faults());
    return answer;
  }
  if (!arguments.given(kDryRun)) import.carryOut();
  answer.layout = {cli::Fields{
      {{"created", "{created}"}, {"updated", "{updated}"}, {"unchanged", "{unchanged}"}}}};
  return answer;
}

std::vector<cli::Option> withValues(std::vector<cli::Option> options) {
  constexpr const char* kHelp[] = {"Pan position", "Tilt position", "Zoom position",
                                   "Focus position", "Focus mode"};
  for (std::size_t i = 0; i < presets::kPresetNumbers.size(); ++i)
    options.push_back({cli::Option::Value, presets::kPresetNumbers[i].option, kHelp[i]});
  options.push_back({cli::Option::Value, kDescription, "Text of up to 63 bytes"});
  return options;
}

const cli::Option kOnePreset{cli::Option::Argument, kPreset, "An id, or a whole description"};
const cli::Option kAnyId{cli::Option::Argument, kId, "Id from 0 to 128", presetIdWords};

}  // namespace

cli::CommandGroup presetGroup() {
  return {
      "Camera positions",
      {{"preset", "List, change, import and export camera positions", {}, nullptr},
       {"preset list", "List the presets", {}, list},
       {"preset get", "Show a preset", {kOnePreset}, get},
       {"preset set", "Change what is given of a preset, or create it", withValues({kAnyId}), set},
       {"preset add", "Create a preset under the next free id and print the id", withValues({}),
        add},
       {"preset delete", "Delete a preset", {kOnePreset}, remove},
       {"preset export",
        "Print all presets for an import",
        {{cli::Option::Value, kFormat, "csv (if none is given) or json", oneOf({"csv", "json"})}},
        exportAll},
       {"preset import",
        "Create and change presets from a CSV or JSON file, all or none",
        {{cli::Option::HostFile, kFile, "File as 'preset export' prints it; - is standard input"},
         {cli::Option::Flag, kDryRun, "Only tell what would be done"}},
        importAll}}};
}

}  // namespace camcfg::tool::commands
