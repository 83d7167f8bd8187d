#include <camcfg/types.h>

#include <algorithm>

#include "commands/groups.h"
#include "device/health.h"
#include "device/verification.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";

// A file that is not there has no copies.
Json statesOf(const ConfigFile* file) {
  Json states;
  for (const Place place : kPlaces)
    states[wordFor(place)] = wordFor(file == nullptr ? State::Missing : file->copy(place).state);
  return states;
}

Json sourceOf(const Repair* repair) {
  return repair == nullptr ? Json() : Json(wordFor(repair->from));
}

Json recordOf(const ConfigFile& file, const Verification& verification) {
  Json record = {{"name", file.name}, {"checkedAtStart", file.checkedAtStart}};
  record["found"] = statesOf(verification.found().find(file.name));
  record["now"] = statesOf(&file);
  for (const Place place : {Place::Main, Place::Backup})
    record["restored"][wordFor(place)] = sourceOf(verification.restored(file.name, place));
  return record;
}

Table filesTable() {
  return {"files",
          {{"FILE", "{name}"},
           {"MAIN", "{found/main!}", "{now/main!}"},
           {"BACKUP", "{found/backup!}", "{now/backup!}"},
           {"DEFAULT", "{found/default!}", "{now/default!}"},
           {"AT START", "{checkedAtStart}"},
           {"MAIN FROM", "{restored/main}"},
           {"BACKUP FROM", "{restored/backup}"}}};
}

Table keptTable() {
  return {"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}};
}

void worsen(Answer& answer, Status status, const std::string& note) {
  answer.status = std::max(answer.status, status);
  answer.notes.push_back(note);
}

void tellFaults(Answer& answer, const Verification& verification) {
  for (const auto& [repair, fault] : verification.outcomes())
    if (!fault.empty())
      worsen(answer, repair.to == Place::Main ? Status::Unusable : Status::Refused,
             repair.target() + " was not replaced from " + repair.source() + ": " + fault);
}

bool isToldAlready(const ConfigFile& file, const Verification& verification) {
  const std::vector<Outcome>& outcomes = verification.outcomes();
  return std::any_of(outcomes.begin(), outcomes.end(), [&](const Outcome& outcome) {
    return outcome.repair.name == file.name && outcome.repair.to == Place::Main;
  });
}

void tellUnusable(Answer& answer, const Verification& verification) {
  for (const ConfigFile& file : verification.now().files)
    if (file.main.state != State::Good && !isToldAlready(file, verification))
      worsen(answer, Status::Unusable,
             file.path(Place::Main) + " " + file.main.fault + outlookFor(file));
}

void tellUnlevel(Answer& answer, const Verification& verification) {
  const std::vector<ConfigFile>& files = verification.now().files;
  const auto unlevel = [](const ConfigFile& file) {
    return file.main.state == State::Good && file.backup.state != State::Good;
  };
  const auto count = std::count_if(files.begin(), files.end(), unlevel);
  if (verification.levelled() || count == 0) return;
  answer.notes.push_back("note: without a backup that is level with the main copy: " +
                         std::to_string(count) + "; '--resync' brings them level");
}

Answer verify(const Arguments& arguments) {
  Verification verification(arguments.directory(kKeepDamaged));
  verification.startUp();
  if (arguments.given(kResync)) verification.level();

  Answer answer;
  answer.value = {{"files", Json::array()}, {"kept", verification.kept()}};
  for (const ConfigFile& file : verification.now().files)
    answer.value["files"].push_back(recordOf(file, verification));
  answer.layout.emplace_back(filesTable());
  if (!verification.kept().empty()) answer.layout.emplace_back(keptTable());
  tellFaults(answer, verification);
  tellUnusable(answer, verification);
  tellUnlevel(answer, verification);
  return answer;
}

}  // namespace

CommandGroup filesGroup() {
  return {"Files",
          {{"verify",
            "Check all files as at start-up and restore broken main copies",
            {{Option::Flag, kResync, "Then bring backups level with their main copies"},
             {Option::HostDirectory, kKeepDamaged, "Save damaged bytes in DIR before"}},
            verify}}};
}

}  // namespace camcfg::tool
