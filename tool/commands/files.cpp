#include <camcfg/types.h>

#include <algorithm>

#include "base/refusal.h"
#include "commands/groups.h"
#include "device/health.h"
#include "device/verification.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";

// A file that is not there has no copies.
Json statesOf(const device::ConfigFile* file) {
  Json states;
  for (const device::Place place : device::kPlaces)
    states[device::wordFor(place)] =
        device::wordFor(file == nullptr ? device::State::Missing : file->copy(place).state);
  return states;
}

Json sourceOf(const device::Repair* repair) {
  return repair == nullptr ? Json() : Json(device::wordFor(repair->from));
}

Json recordOf(const device::ConfigFile& file, const device::Verification& verification) {
  Json record = {{"name", file.name}, {"checkedAtStart", file.checkedAtStart}};
  record["found"] = statesOf(verification.found().find(file.name));
  record["now"] = statesOf(&file);
  for (const device::Place place : {device::Place::Main, device::Place::Backup})
    record["restored"][device::wordFor(place)] = sourceOf(verification.restored(file.name, place));
  return record;
}

cli::Table filesTable() {
  return {"files",
          {{"FILE", "{name}"},
           {"MAIN", "{found/main!}", "{now/main!}"},
           {"BACKUP", "{found/backup!}", "{now/backup!}"},
           {"DEFAULT", "{found/default!}", "{now/default!}"},
           {"AT START", "{checkedAtStart}"},
           {"MAIN FROM", "{restored/main}"},
           {"BACKUP FROM", "{restored/backup}"}}};
}

cli::Table keptTable() {
  return {"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}};
}

void worsen(cli::Answer& answer, Status status, const std::string& note) {
  answer.status = std::max(answer.status, status);
  answer.notes.push_back(note);
}

void tellFaults(cli::Answer& answer, const device::Verification& verification) {
  for (const auto& [repair, fault] : verification.outcomes())
    if (!fault.empty())
      worsen(answer, repair.to == device::Place::Main ? Status::Unusable : Status::Refused,
             repair.target() + " was not replaced from " + repair.source() + ": " + fault);
}

bool isToldAlready(const device::ConfigFile& file, const device::Verification& verification) {
  const std::vector<device::Outcome>& outcomes = verification.outcomes();
  return std::any_of(outcomes.begin(), outcomes.end(), [&](const device::Outcome& outcome) {
    return outcome.repair.name == file.name && outcome.repair.to == device::Place::Main;
  });
}

void tellUnusable(cli::Answer& answer, const device::Verification& verification) {
  for (const device::ConfigFile& file : verification.now().files)
    if (file.main.state != device::State::Good && !isToldAlready(file, verification))
      worsen(answer, Status::Unusable,
             file.path(device::Place::Main) + " " + file.main.fault + device::outlookFor(file));
}

void tellUnlevel(cli::Answer& answer, const device::Verification& verification) {
  const std::vector<device::ConfigFile>& files = verification.now().files;
  const auto unlevel = [](const device::ConfigFile& file) {
    return file.main.state == device::State::Good && file.backup.state != device::State::Good;
  };
  const auto count = std::count_if(files.begin(), files.end(), unlevel);
  if (verification.levelled() || count == 0) return;
  answer.notes.push_back("note: without a backup that is level with the main copy: " +
                         std::to_string(count) + "; '--resync' brings them level");
}

cli::Answer verify(const cli::Arguments& arguments) {
  device::Verification verification(arguments.directory(kKeepDamaged));
  verification.startUp();
  if (arguments.given(kResync)) verification.level();

  cli::Answer answer;
  answer.value = {{"files", Json::array()}, {"kept", verification.kept()}};
  for (const device::ConfigFile& file : verification.now().files)
    answer.value["files"].push_back(recordOf(file, verification));
  answer.layout.emplace_back(filesTable());
  if (!verification.kept().empty()) answer.layout.emplace_back(keptTable());
  tellFaults(answer, verification);
  tellUnusable(answer, verification);
  tellUnlevel(answer, verification);
  return answer;
}

}  // namespace

cli::CommandGroup filesGroup() {
  return {"Files",
          {{"verify",
            "Check all files as at start-up and restore broken main copies",
            {{cli::Option::Flag, kResync, "Then bring backups level with their main copies"},
             {cli::Option::HostDirectory, kKeepDamaged, "Save damaged bytes in DIR before"}},
            verify}}};
}

}  // namespace camcfg::tool::commands
