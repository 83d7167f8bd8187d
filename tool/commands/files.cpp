#include <camcfg/types.h>

#include <algorithm>

#include "base/refusal.h"
#include "commands/groups.h"
#include "device/health.h"
#include "device/repair.h"

namespace camcfg::tool::commands {
namespace {

constexpr char kResync[] = "--resync";
constexpr char kKeepDamaged[] = "--keep-damaged";

// "2026-11-21T11:15:13Z"
Json timeOrNull(const std::optional<std::time_t>& time) {
  std::tm parts{};
  char text[sizeof "2026-11-21T11:15:13Z" + 8] = {};
  if (!time || gmtime_r(&*time, &parts) == nullptr) return nullptr;
  return std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts) == 0 ? Json() : Json(text);
}

Json atStartOf(const device::CopyHealth& copy) {
  static const Json kWords[] = {nullptr, "stays", "from-backup", "from-default", "waits-for-ever"};
  return kWords[static_cast<std::size_t>(copy.atStart)];
}

Json recordOf(const device::FileHealth& file) {
  return {{"name", file.name},
          {"health", device::wordFor(file.health)},
          {"required", file.required},
          {"checkedAtStart", file.checkedAtStart}};
}

Json recordOf(const device::FileHealth& file, const device::CopyHealth& copy) {
  return {{"file", file.name},
          {"copy", device::wordFor(copy.place)},
          {"path", device::pathOf(copy.place, file.name)},
          {"state", device::wordFor(copy.state)},
          {"bytes", copy.bytes ? Json(*copy.bytes) : Json()},
          {"changed", timeOrNull(copy.changed)},
          {"atStart", atStartOf(copy)}};
}

Status statusOf(device::Health health) {
  if (health == device::Health::Well) return Status::Done;
  return health == device::Health::Degraded ? Status::Degraded : Status::Unusable;
}

cli::Answer status(const cli::Arguments& /*arguments*/) {
  cli::Answer answer;
  answer.value = {{"health", ""}, {"files", Json::array()}, {"copies", Json::array()}};
  device::Health worst = device::Health::Well;
  for (const device::FileHealth& file : device::checkHealth()) {
    worst = std::max(worst, file.health);
    answer.value["files"].push_back(recordOf(file));
    for (const device::CopyHealth& copy : file.copies)
      answer.value["copies"].push_back(recordOf(file, copy));
    answer.notes.insert(answer.notes.end(), file.findings.begin(), file.findings.end());
  }
  answer.value["findings"] = answer.notes;
  answer.value["health"] = device::wordFor(worst);
  answer.status = statusOf(worst);
  answer.layout = {cli::Table{"copies",
                              {{"FILE", "{file}"},
                               {"COPY", "{copy}"},
                               {"STATE", "{state!}"},
                               {"BYTES", "{bytes}"},
                               {"CHANGED", "{changed}"},
                               {"AT START", "{atStart}"}}},
                   cli::Line{"health: {health!}"}};
  return answer;
}

// A file that is not there has no copies.
Json statesOf(const device::ConfigFile* file) {
  Json states;
  for (const device::Place place : device::kPlaces)
    states[device::wordFor(place)] =
        device::wordFor(file == nullptr ? device::State::Missing : file->copy(place).state);
  return states;
}

Json recordOf(const device::ConfigFile& file, const device::Verification& verification) {
  Json record = {{"name", file.name}, {"checkedAtStart", file.checkedAtStart}};
  record["found"] = statesOf(verification.found().find(file.name));
  record["now"] = statesOf(&file);
  for (const device::Place place : {device::Place::Main, device::Place::Backup}) {
    const device::Repair* repair = verification.restored(file.name, place);
    record["restored"][device::wordFor(place)] =
        repair == nullptr ? Json() : Json(device::wordFor(repair->from));
  }
  return record;
}

void worsen(cli::Answer& answer, Status status, const std::string& note) {
  answer.status = std::max(answer.status, status);
  answer.notes.push_back(note);
}

void noteFaults(cli::Answer& answer, const device::Verification& verification) {
  for (const auto& [repair, fault] : verification.attempts())
    if (!fault.empty())
      worsen(answer, repair.to == device::Place::Main ? Status::Unusable : Status::Refused,
             repair.target() + " was not replaced from " + repair.source() + ": " + fault);
}

void noteUnusable(cli::Answer& answer, const device::Verification& verification) {
  for (const device::ConfigFile& file : verification.now().files) {
    const auto& attempts = verification.attempts();
    const bool isNoted = std::any_of(attempts.begin(), attempts.end(), [&](const auto& attempt) {
      return attempt.repair.name == file.name && attempt.repair.to == device::Place::Main;
    });
    if (file.main.state != device::State::Good && !isNoted)
      worsen(answer, Status::Unusable,
             file.path(device::Place::Main) + " " + file.main.fault + device::outlookFor(file));
  }
}

void noteUnlevel(cli::Answer& answer, const device::Verification& verification) {
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
  answer.layout = {cli::Table{"files",
                              {{"FILE", "{name}"},
                               {"MAIN", "{found/main!}", "{now/main!}"},
                               {"BACKUP", "{found/backup!}", "{now/backup!}"},
                               {"DEFAULT", "{found/default!}", "{now/default!}"},
                               {"AT START", "{checkedAtStart}"},
                               {"MAIN FROM", "{restored/main}"},
                               {"BACKUP FROM", "{restored/backup}"}}}};
  if (!verification.kept().empty())
    answer.layout.emplace_back(
        cli::Table{"kept", {{"DAMAGED COPY", "{copy}"}, {"KEPT AS", "{as}"}}});
  noteFaults(answer, verification);
  noteUnusable(answer, verification);
  noteUnlevel(answer, verification);
  return answer;
}

}  // namespace

cli::CommandGroup filesGroup() {
  return {"Files",
          {{"status", "Tell how every copy is and what the next start does to it", {}, status},
           {"verify",
            "Check all files as at start-up and restore broken main copies",
            {{cli::Option::Flag, kResync, "Then bring backups level with their main copies"},
             {cli::Option::HostDirectory, kKeepDamaged, "Save damaged bytes in DIR before"}},
            verify}}};
}

}  // namespace camcfg::tool::commands
