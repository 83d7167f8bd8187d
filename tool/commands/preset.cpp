#include "presets/preset.h"
#include "base/concat.h"

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

constexpr char kDescription[] = "DESCRIPTION";
constexpr std::size_t kFaultsTold = 20;

void addNote(Answer& answer, const std::string& note) {
  if (!note.empty()) answer.notes.push_back(note);
}

const Setting& idSetting() {
  return settings::presetSettings().front();
}

Answer listPresets(const Arguments& /*arguments*/) {
  return readableAnswer(presets::presetsSection().readable(),
                        {columnsOf(settings::presetSettings())});
}

Answer getPreset(const Arguments& arguments) {
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
  if (!fault.empty()) throw Refusal(concat(setting.option, ": ", fault));
  return *decimal32(text);
}

// That of a preset which is there, or one by which a new preset is to go.
int requireId(const std::string& word) {
  if (!decimal(word)) {
    const presets::Presets presets;
    return presets.requireReachableId(presets.require(word));
  }
  const std::string fault = settings::objectionTo(idSetting(), word).why;
  if (!fault.empty()) throw Refusal("id " + fault);
  return *decimal32(word);
}

const Line kNotWritten{"nothing was written"};

std::vector<cli::Block> changesOf(const Json& stored, bool isRehearsal) {
  std::vector<cli::Block> lines;
  const Json& before = stored["before"];
  if (before.is_null()) lines.emplace_back(Line{"preset {id}: created"});
  for (const auto& [name, was] : before.items()) {
    if (stored.at(name) == was) continue;
    std::string line = "preset {id}: ";
    line.append(name).append(" {before/").append(name).append("} -> {").append(name).append("}");
    lines.emplace_back(Line{line});
  }
  const bool isSo = lines.empty();
  if (isSo) lines.emplace_back(Line{std::string("preset {id}: ") + kSoAlready});
  if (!isSo && isRehearsal) lines.emplace_back(kNotWritten);
  return lines;
}

Answer store(const Arguments& arguments, const presets::Values& given) {
  const bool isRehearsal = arguments.given(kDryRun);
  Answer answer(Outcome{presets::storePreset(given, isRehearsal), {}});
  answer.layout = changesOf(answer.value, isRehearsal);
  return answer;
}

presets::Values withId(int id) {
  presets::Values values = presets::noValues();
  values[settings::kPresetId] = id;
  return values;
}

// What the options give of a preset.
presets::Values givenOf(const Arguments& arguments, int id) {
  presets::Values given = withId(id);
  for (const Setting& setting : settings::presetSettings()) {
    if (setting.option == nullptr || !arguments.given(setting.option)) continue;
    const std::string text = arguments.text(setting.option);
    given[setting.member] =
        setting.kind == settings::Kind::Text ? Json(text) : requireNumber(setting, text);
  }
  return given;
}

Answer setPreset(const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_PRESET}));
  return store(arguments, givenOf(arguments, requireId(arguments.text(kPreset))));
}

// A description by which a preset is found, and no other one.
void requireFree(const presets::Presets& presets, const presets::Preset& renamed,
                 const std::string& description) {
  if (description.find_first_not_of(" \t") == std::string::npos)
    throw Refusal(Status::Usage, "which description? the argument is empty");
  if (presets::isDigits(description))
    throw Refusal(quoted(description) +
                  " would be taken for an id; give a description with "
                  "something other than digits in it");
  for (const presets::Preset& preset : presets.all())
    if (&preset != &renamed && preset.description() == description)
      throw Refusal(preset.label() + " has this description already");
}

Answer rename(const Arguments& arguments) {
  const std::string description = arguments.text(kDescription);
  const device::Turn turn(filesFor(arguments, {CFG_FILE_PRESET}));
  const presets::Presets presets;
  const presets::Preset& preset = presets.require(arguments.text(kPreset));
  requireFree(presets, preset, description);
  presets::Values given = withId(presets.requireReachableId(preset));
  given[settings::kPresetDescription] = description;
  return store(arguments, given);
}

// With every id taken, the library's search succeeds nevertheless and leaves the number alone.
int requireUnusedId() {
  constexpr int kNone = -1;
  int id = kNone;
  forgetComplaint();
  if (CFG_PRESET_GetUnusedId(&id) != 0)
    throw Refusal(concat("the library finds no free id (", lastComplaint(), ")"));
  if (id == kNone)
    throw Refusal(concat("no id is left: all from 0 to ", PRESET_ID_MAX - 1,
                         " are taken; delete a preset first"));
  return id;
}

Answer addPreset(const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_PRESET}));
  const presets::Presets usable;
  Answer answer = store(arguments, givenOf(arguments, requireUnusedId()));
  answer.layout.front() = Line{"{id}"};
  return answer;
}

Answer removePreset(const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_PRESET}));
  const presets::Presets presets;
  const presets::Preset& preset = presets.require(arguments.text(kPreset));
  Answer answer(Outcome{preset.values, {}}, {Line{"{label}: deleted"}});
  answer.value["label"] = preset.label();
  addNote(answer, presets.shadowOf(preset));
  presets::deletePreset(presets, preset, arguments.given(kDryRun));
  if (arguments.given(kDryRun)) answer.layout.emplace_back(kNotWritten);
  return answer;
}

cli::Block exportedAs(const std::string& format, const presets::Presets& presets) {
  if (format == "csv") return Verbatim{presets::presetsAsCsv(presets.all())};
  if (format == "json") return cli::WholeValue{};
  throw Refusal(Status::Usage, concat(kFormat, ": '", format, "' is neither csv nor json"));
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
                         (more == 0 ? "" : concat(" (", more, " more faults)")));
}

Answer importAll(const Arguments& arguments) {
  const device::Turn turn(filesFor(arguments, {CFG_FILE_PRESET}));
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

// With the options that every change takes.
cli::Command presetChanger(const char* name, const char* help, Answer (*run)(const Arguments&),
                           std::vector<Option> options) {
  options.push_back(dryRun());
  return changer(name, help, run, std::move(options));
}

const Option kOnePreset{Option::Argument, kPreset, "An id, or a whole description"};

}  // namespace

CommandGroup presetGroup() {
  return {
      "Camera positions",
      {command("preset", "List, change, import and export camera positions", nullptr),
       command("preset list", "List the presets", listPresets),
       command("preset get", "Show a preset", getPreset, {kOnePreset}),
       presetChanger("preset set", "Change what is given of a preset, or create it", setPreset,
                     withValues({{Option::Argument, kPreset,
                                  "An id, which may be a new one, or a whole description"}})),
       presetChanger("preset add", "Create a preset under the next free id and print the id",
                     addPreset, withValues({})),
       presetChanger("preset rename", "Give a preset another description", rename,
                     {kOnePreset, {Option::Argument, kDescription, "The new one", anyWord}}),
       presetChanger("preset delete", "Delete a preset", removePreset, {kOnePreset}),
       command(
           "preset export", "Print all presets for an import", exportAll,
           {{Option::Value, kFormat, "csv (if none is given) or json", oneOf({"csv", "json"})}}),
       changer("preset import", "Create and change presets from a CSV or JSON file, all or none",
               importAll,
               {{Option::HostFile, kFile, "File as 'preset export' prints it; - is standard input"},
                dryRun()})}};
}

}  // namespace camcfg::tool::commands
