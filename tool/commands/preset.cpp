#include "device/preset.h"

#include <algorithm>
#include <limits>

#include "commands/groups.h"
#include "commands/vocabulary.h"
#include "device/nearest.h"
#include "device/preset_change.h"
#include "device/preset_import.h"
#include "device/words.h"
#include "frame/decimal.h"
#include "frame/library_log.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

constexpr char kFormat[] = "--format";
constexpr char kDryRun[] = "--dry-run";
constexpr std::size_t kFaultsTold = 20;
constexpr char kDescription[] = "--description";
constexpr std::size_t kSeenById = 32;  // bytes from which a query by id keeps a description back

void addNote(Answer& answer, const std::string& note) {
  if (!note.empty()) answer.notes.push_back(note);
}

Json allOf(const Presets& presets) {
  Json all = Json::array();
  for (const Preset& preset : presets.all()) all.push_back(preset.json());
  return all;
}

Answer list(const Arguments& /*arguments*/) {
  Answer answer;
  answer.value = allOf(Presets());
  answer.layout = {Table{"",
                         {{"ID", "{id}"},
                          {"PAN", "{pan}"},
                          {"TILT", "{tilt}"},
                          {"ZOOM", "{zoom}"},
                          {"FOCUS", "{focus}"},
                          {"FOCUS MODE", "{focusMode}"},
                          {"DESCRIPTION", "{description}"}}}};
  return answer;
}

Answer get(const Arguments& arguments) {
  const Presets presets;
  const Preset& preset = presets.require(arguments.text("PRESET"));
  Answer answer;
  answer.value = preset.json();
  answer.layout = {Fields{{{"id", "{id}"},
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
                  outside(text, *number, Limits::min(), Limits::max()));
  return static_cast<int>(*number);
}

int requireId(const std::string& text) {
  const std::optional<long long> id = decimal(text);
  if (!id) throw Refusal("'" + text + "' is no id (0.." + std::to_string(PRESET_ID_MAX) + ")");
  if (*id < 0 || *id > PRESET_ID_MAX) throw Refusal("id " + outside(text, *id, 0, PRESET_ID_MAX));
  return static_cast<int>(*id);
}

PresetValues given(const Arguments& arguments, int id) {
  PresetValues values;
  values.id = id;
  if (arguments.given(kDescription)) values.description = arguments.text(kDescription);
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i) {
    const char* option = kPresetNumbers[i].option;
    if (arguments.given(option)) values.numbers[i] = requireNumber(option, arguments.text(option));
  }
  return values;
}

// What lookups make of a description that was just stored.
void tellHazards(Answer& answer, int id) {
  const Presets presets;
  const Preset* preset = presets.lookup(id);
  if (preset == nullptr) return;
  addNote(answer, presets.shadowOf(*preset));
  if (preset->description && preset->description->size() >= kSeenById)
    answer.notes.push_back("note: applications that ask for preset " + std::to_string(id) +
                           " by its id get no description of " + std::to_string(kSeenById) +
                           " bytes or more");
}

std::vector<Block> changesOf(const Json& before, const Json& value) {
  if (before.is_null()) return {Line{"preset {id}: created"}};
  std::vector<Block> lines;
  for (const auto& [name, now] : value.items()) {
    if (now == before[name]) continue;
    std::string line = "preset {id}: ";
    line.append(name).append(" {before/").append(name).append("} -> {").append(name).append("}");
    lines.emplace_back(Line{line});
  }
  if (lines.empty()) lines.emplace_back(Line{"preset {id}: unchanged"});
  return lines;
}

Answer store(const PresetValues& values) {
  const Presets presets;
  const Preset* existing = presets.lookup(*values.id);
  const std::string what = "preset " + std::to_string(*values.id);
  const PresetUpdate update = updateOf(existing, values);
  if (!update.fault.empty()) throw Refusal(what + ": " + update.fault);
  storePresets(what, {update.record});

  PresetValues stored = values;
  stored.description = update.record.s8Description;
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    stored.numbers[i] = update.record.*kPresetNumbers[i].field;
  Answer answer;
  answer.value = stored.json();
  const Json before = existing == nullptr ? Json() : existing->json();
  answer.layout = changesOf(before, answer.value);
  answer.value["before"] = before;
  if (values.description) tellHazards(answer, *values.id);
  return answer;
}

Answer set(const Arguments& arguments) {
  return store(given(arguments, requireId(arguments.text("ID"))));
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

Answer add(const Arguments& arguments) {
  const Presets usable;
  Answer answer = store(given(arguments, requireUnusedId()));
  answer.layout = {Line{"{id}"}};
  return answer;
}

Answer remove(const Arguments& arguments) {
  const Presets presets;
  const Preset& preset = presets.require(arguments.text("PRESET"));
  Answer answer;
  addNote(answer, presets.shadowOf(preset));
  deletePreset(presets, preset);
  answer.value = preset.json();
  answer.value["label"] = preset.label();
  answer.layout = {Line{"{label}: deleted"}};
  return answer;
}

Block exportedAs(const std::string& format, const Presets& presets) {
  if (format == "csv") return Verbatim{presetsAsCsv(presets.all())};
  if (format == "json") return WholeValue{};
  throw Refusal(Status::Usage, std::string(kFormat) + ": '" + format + "' is neither csv nor json");
}

// What a device without presets would refuse.
void tellNotImportable(Answer& answer, const Presets& presets) {
  std::vector<PresetRow> rows;
  for (const Preset& preset : presets.all()) rows.push_back({preset.label(), preset.values(), {}});
  const PresetImport import(nullptr, rows);
  for (const std::string& fault : import.faults())
    answer.notes.push_back("note: an import will refuse " + fault);
}

Answer exportAll(const Arguments& arguments) {
  const std::string format = arguments.given(kFormat) ? arguments.text(kFormat) : "csv";
  const Presets presets;
  Answer answer;
  answer.value = allOf(presets);
  answer.layout = {exportedAs(format, presets)};
  tellNotImportable(answer, presets);
  return answer;
}

void tellFaults(Answer& answer, const std::vector<std::string>& faults) {
  const std::size_t told = std::min(faults.size(), kFaultsTold);
  answer.notes.assign(faults.begin(), faults.begin() + static_cast<std::ptrdiff_t>(told));
  const std::string more =
      told == faults.size() ? "" : " (" + std::to_string(faults.size() - told) + " more faults)";
  answer.notes.push_back("nothing was imported" + more);
  answer.status = Status::Refused;
}

Answer importAll(const Arguments& arguments) {
  const Presets presets;
  const PresetImport import(&presets, readPresets(arguments.text("FILE")));
  Answer answer;
  answer.value = import.json();
  if (!import.faults().empty()) {
    tellFaults(answer, import.faults());
    return answer;
  }
  if (!arguments.given(kDryRun)) import.carryOut();
  answer.layout = {
      Fields{{{"created", "{created}"}, {"updated", "{updated}"}, {"unchanged", "{unchanged}"}}}};
  return answer;
}

std::vector<Option> withValues(std::vector<Option> options) {
  constexpr const char* kHelp[] = {"Pan position", "Tilt position", "Zoom position",
                                   "Focus position", "Focus mode"};
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    options.push_back({Option::Value, kPresetNumbers[i].option, kHelp[i]});
  options.push_back({Option::Value, kDescription, "Text of up to 63 bytes"});
  return options;
}

const Option kPreset{Option::Argument, "PRESET", "An id, or a whole description"};
const Option kId{Option::Argument, "ID", "Id from 0 to 128", presetIdWords};

}  // namespace

CommandGroup presetGroup() {
  return {"Camera positions",
          {{"preset", "List, change, import and export camera positions", {}, nullptr},
           {"preset list", "List the presets", {}, list},
           {"preset get", "Show a preset", {kPreset}, get},
           {"preset set", "Change what is given of a preset, or create it", withValues({kId}), set},
           {"preset add", "Create a preset under the next free id and print the id", withValues({}),
            add},
           {"preset delete", "Delete a preset", {kPreset}, remove},
           {"preset export",
            "Print all presets for an import",
            {{Option::Value, kFormat, "csv (if none is given) or json", oneOf({"csv", "json"})}},
            exportAll},
           {"preset import",
            "Create and change presets from a CSV or JSON file, all or none",
            {{Option::HostFile, "FILE", "File as 'preset export' prints it; - is standard input"},
             {Option::Flag, kDryRun, "Only tell what would be done"}},
            importAll}}};
}

}  // namespace camcfg::tool
