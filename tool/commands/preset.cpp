#include "presets/preset.h"

#include <camcfg/preset.h>

#include "base/json_bytes.h"
#include "base/library_log.h"
#include "base/plain_text.h"
#include "commands/groups.h"
#include "device/turn.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::commands {
namespace {

using settings::Setting;

constexpr std::size_t kFaultsTold = 20;
constexpr std::size_t kSeenById = 32;  // bytes from which a query by id keeps a description back

void addNote(Answer& answer, const std::string& note) {
  if (!note.empty()) answer.notes.push_back(note);
}

const Setting& idSetting() {
  return settings::presetSettings().front();
}

Answer list(const Arguments& /*arguments*/) {
  return readableAnswer(presets::presetsSection().readable(),
                        {columnsOf(settings::presetSettings())});
}

Answer get(const Arguments& arguments) {
  const presets::Presets presets;
  const presets::Preset& preset = presets.require(arguments.text(kPreset));
  Fields fields;
  for (const Setting& setting : settings::presetSettings())
    fields.fields.push_back({settings::labelOf(setting), setting.column.cell});
  Answer answer(Outcome{preset.values, {}}, {fields});
  addNote(answer, presets.shadowOf(preset));
  return answer;
}

Json requireNumber(const Setting& setting, const std::string& text) {
  const std::string fault = settings::objectionTo(setting, text).why;
  if (!fault.empty()) throw Refusal(std::string(setting.option) + ": " + fault);
  return *decimal32(text);
}

int requireId(const std::string& text) {
  const std::string permitted = settings::permittedFor(idSetting());
  if (!decimal(text)) throw Refusal("'" + text + "' is not an id (" + permitted + ")");
  const std::string fault = settings::objectionTo(idSetting(), text).why;
  if (!fault.empty()) throw Refusal("id " + fault);
  return *decimal32(text);
}

// What lookups make of a description that was just stored.
void tellHazards(Answer& answer, int id) {
  const presets::Presets presets;
  const presets::Preset* preset = presets.lookup(id);
  if (preset == nullptr) return;
  addNote(answer, presets.shadowOf(*preset));
  if (preset->description().value_or("").size() >= kSeenById)
    answer.notes.push_back("note: applications that ask for preset " + std::to_string(id) +
                           " by its id get no description of " + std::to_string(kSeenById) +
                           " bytes or more");
}

std::vector<cli::Block> changesOf(const Json& stored) {
  const Json& before = stored["before"];
  if (before.is_null()) return {Line{"preset {id}: created"}};
  std::vector<cli::Block> lines;
  for (const auto& [name, was] : before.items()) {
    if (stored.at(name) == was) continue;
    std::string line = "preset {id}: ";
    line.append(name).append(" {before/").append(name).append("} -> {").append(name).append("}");
    lines.emplace_back(Line{line});
  }
  if (lines.empty()) lines.emplace_back(Line{"preset {id}: unchanged"});
  return lines;
}

Answer store(const Arguments& arguments, int id) {
  presets::Values given = presets::noValues();
  given[settings::kPresetId] = id;
  for (const Setting& setting : settings::presetSettings()) {
    if (setting.option == nullptr || !arguments.given(setting.option)) continue;
    const std::string text = arguments.text(setting.option);
    given[setting.member] =
        setting.kind == settings::Kind::Text ? Json(text) : requireNumber(setting, text);
  }
  Answer answer(Outcome{presets::storePreset(given), {}});
  answer.layout = changesOf(answer.value);
  if (!given[settings::kPresetDescription].is_null()) tellHazards(answer, id);
  return answer;
}

Answer set(const Arguments& arguments) {
  const device::Turn turn({CFG_FILE_PRESET});
  return store(arguments, requireId(arguments.text(kId)));
}

// With every id taken, the library's search succeeds nevertheless and leaves the number alone.
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
  const device::Turn turn({CFG_FILE_PRESET});
  const presets::Presets usable;
  Answer answer = store(arguments, requireUnusedId());
  answer.layout = {Line{"{id}"}};
  return answer;
}

Answer remove(const Arguments& arguments) {
  const device::Turn turn({CFG_FILE_PRESET});
  const presets::Presets presets;
  const presets::Preset& preset = presets.require(arguments.text(kPreset));
  Answer answer(Outcome{preset.values, {}}, {Line{"{label}: deleted"}});
  answer.value["label"] = preset.label();
  addNote(answer, presets.shadowOf(preset));
  presets::deletePreset(presets, preset);
  return answer;
}

cli::Block exportedAs(const std::string& format, const presets::Presets& presets) {
  if (format == "csv") return Verbatim{presets::presetsAsCsv(presets.all())};
  if (format == "json") return cli::WholeValue{};
  throw Refusal(Status::Usage, std::string(kFormat) + ": '" + format + "' is neither csv nor json");
}

Answer exportAll(const Arguments& arguments) {
  const std::string format = arguments.given(kFormat) ? arguments.text(kFormat) : "csv";
  const presets::Presets presets;
  Answer answer(Outcome{withBytes(presets.json()), {}}, {exportedAs(format, presets)});
  for (const std::string& fault : presets::faultsOf(presets.all()))
    answer.notes.push_back("note: an import will refuse " + fault);
  return answer;
}

void tellFaults(Answer& answer, const Json& faults) {
  for (const Json& fault : faults)
    if (answer.notes.size() < kFaultsTold) answer.notes.push_back(fault.text());
  const std::size_t more = faults.size() - answer.notes.size();
  answer.notes.push_back("nothing was imported" +
                         (more == 0 ? "" : " (" + std::to_string(more) + " more faults)"));
}

Answer importAll(const Arguments& arguments) {
  const device::Turn turn(arguments.given(kDryRun) ? device::Turn::Files()
                                                   : device::Turn::Files{CFG_FILE_PRESET});
  Answer answer(presets::importPresets(arguments.text(kFile), arguments.given(kDryRun)));
  if (answer.status == Status::Refused)
    tellFaults(answer, answer.value["faults"]);
  else
    answer.layout = {
        Fields{{{"created", "{created}"}, {"updated", "{updated}"}, {"unchanged", "{unchanged}"}}}};
  return answer;
}

std::vector<Option> withValues(std::vector<Option> options) {
  for (const Setting& setting : byRank(settings::presetSettings()))
    if (setting.option != nullptr) options.push_back({Option::Value, setting.option, setting.help});
  return options;
}

const Option kOnePreset{Option::Argument, kPreset, "An id, or a whole description"};

}  // namespace

CommandGroup presetGroup() {
  const Option id{Option::Argument, kId, idSetting().help, presetIdWords};
  return {
      "Camera positions",
      {command("preset", "List, change, import and export camera positions", nullptr),
       command("preset list", "List the presets", list),
       command("preset get", "Show a preset", get, {kOnePreset}),
       changer("preset set", "Change what is given of a preset, or create it", set,
               withValues({id})),
       changer("preset add", "Create a preset under the next free id and print the id", add,
               withValues({})),
       changer("preset delete", "Delete a preset", remove, {kOnePreset}),
       command(
           "preset export", "Print all presets for an import", exportAll,
           {{Option::Value, kFormat, "csv (if none is given) or json", oneOf({"csv", "json"})}}),
       changer("preset import", "Create and change presets from a CSV or JSON file, all or none",
               importAll,
               {{Option::HostFile, kFile, "File as 'preset export' prints it; - is standard input"},
                {Option::Flag, kDryRun, "Only show what would be done"}})}};
}

}  // namespace camcfg::tool::commands
