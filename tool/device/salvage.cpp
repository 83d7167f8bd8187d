#include "device/salvage.h"

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/change.h"
#include "device/kept_damage.h"
#include "device/repair.h"
#include "device/room.h"
#include "device/salvage_copy.h"
#include "device/salvage_task.h"
#include "device/save.h"
#include "device/shared_files.h"
#include "device/trial.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

constexpr const char* kSources[] = {kFromMain, kFromBackup, kDisputed, kFromFactory};

struct Salvaged {
  const SalvageTask& task;
  SalvagedFile file;
};

// What start-up verification would make of a file: the contents that a change of it starts from.
std::string insteadOf(const std::string& path) {
  const std::string backup = pathOf(Place::Backup, path);
  const Bytes bytes = loadCopy(backup).state == State::Good ? readFile(backup) : std::nullopt;
  return bytes && !hasHole(bytes) ? *bytes : device::bytesOf(pathOf(Place::Default, path));
}

// Damaged copies of the device, which are about to be replaced.
Json keptCopies(const std::vector<Salvaged>& files) {
  Json kept = Json::array();
  for (const Salvaged& file : files)
    for (const Place place : {Place::Main, Place::Backup}) {
      const std::string path = pathOf(place, file.task.path);
      const Copy copy = loadCopy(path);
      const Bytes bytes = bytesOf(path, copy);
      if (bytes && (copy.state != State::Good || hasHole(bytes)))
        kept.push_back({{"copy", path}, {"as", keepDamaged(path)}});
    }
  return kept;
}

// All files of one change, or none.
Json applied(const std::vector<Salvaged>& files) {
  Json kept = keptCopies(files);
  std::vector<Change> changes;
  changes.reserve(files.size());
  for (const Salvaged& file : files)
    changes.push_back(changeTo({file.task.path, file.file.bytes}, insteadOf(file.task.path)));
  makeChanges(changes);
  return kept;
}

Json recordOf(const Salvaged& salvaged) {
  const auto& states = salvaged.task.states;
  Json record = {{"name", nameOf(salvaged.task.path)}};
  for (const Place place : {Place::Main, Place::Backup}) {
    const std::string& state = states[static_cast<std::size_t>(place)];
    record[wordFor(place)] = state.empty() ? Json() : Json(state);
  }
  for (const char* source : kSources) record["settings"][source] = salvaged.file.from(source);
  return record;
}

void append(Json& list, const Json& records, const std::string& file) {
  for (const Json& record : records) {
    Json named = {{"file", file}};
    for (const auto& [name, value] : record.items()) named[name] = value;
    list.push_back(std::move(named));
  }
}

std::vector<Salvaged> salvagedOf(const std::vector<SalvageTask>& tasks, Outcome& outcome) {
  std::vector<Salvaged> files;
  for (const SalvageTask& task : tasks) {
    std::optional<SalvagedFile> file = task.salvaged();
    if (file) {
      files.push_back({task, std::move(*file)});
      continue;
    }
    const std::string factory = pathOf(Place::Default, task.path);
    outcome.notes.push_back(
        concat(task.path, " cannot be salvaged: ", factory, " ", loadCopy(factory).fault));
    outcome.status = Status::Unusable;
  }
  return files;
}

// "settings from main: 40, backup: 2, disputed: 1, factory: 3"
std::string summaryOf(const SalvagedFile& file) {
  std::string text = "settings from";
  for (const char* source : kSources)
    text += concat(source == kSources[0] ? " " : ", ", source, ": ", file.from(source));
  return text;
}

// Without a journal and a history. What verification would do instead loses the damaged copies as well,
// and the settings with them.
void storeUnnoted(const SalvageTask& task, const SalvagedFile& file) {
  const std::string obstacle = whyNotWritable({replacing(task.path, file.bytes.size())});
  if (!obstacle.empty()) throw Refusal(obstacle);
  saveContents({{task.path, file.bytes}});
  if (bytesOf(task.path) != file.bytes) throw Refusal("the copy is incomplete");
}

std::string notSalvaged(const SalvageTask& task, const Refusal& refusal) {
  return concat(task.path, " was not salvaged: ", refusal.what());
}

void salvageLost(const Salvaged& salvaged, Json& done, std::vector<std::string>& notes) {
  const SalvageTask& task = salvaged.task;
  const std::vector<Salvaged> found = {salvaged};
  Json kept = Json::array();
  try {
    kept = applied(found);
  } catch (const Refusal& refusal) {
    const std::optional<std::string> now = readFile(task.path);
    const bool isStored = now == salvaged.file.bytes;
    if (!isStored && now != task.copies[0]) throw;
    if (!isStored) storeUnnoted(task, salvaged.file);
    notes.push_back(concat(task.path, " was salvaged, but ",
                           isStored ? "" : "its damaged copies may not be kept: ", refusal.what()));
  }
  done.push_back(concat(task.path, " was salvaged; ", summaryOf(found.front().file)));
  for (const Json& copy : kept)
    done.push_back(concat(copy.at("copy").text(), " was kept as ", copy.at("as").text()));
}

// Whether the start would take the factory copy, or leave a main copy that ends early, and lose the
// rest.
bool isLost(const SalvageTask& task, const FileSet& set) {
  const std::vector<Repair> repairs = startUpRepairs(set);
  const bool isReplaced = std::any_of(repairs.begin(), repairs.end(), [&](const Repair& repair) {
    return repair.target() == task.path && repair.from == Place::Default;
  });
  const ConfigFile& file = *set.find(nameOf(task.path));
  const bool isBackupGood =
      file.backup.state == State::Good || file.backup.state == State::OutOfStep;
  return isReplaced ||
         (!isBackupGood && (!file.main.loads() || !elementCutOff(file.main, file.factory).empty()));
}

// Whether no copy is that of another file, which would lose its settings.
bool isItsOwn(const SalvageTask& task, const SharedFiles& shared) {
  return shared.ofAnotherName(task.path).empty() &&
         shared.ofAnotherName(pathOf(Place::Backup, task.path)).empty();
}

// What is left of them that the factory copy does not have.
std::vector<Salvaged> lostFiles(const std::vector<SalvageTask>& tasks,
                                std::vector<std::string>& notes) {
  const FileSet set = surveyFiles();
  const SharedFiles shared(set);
  std::vector<Salvaged> files;
  for (const SalvageTask& task : tasks) try {
      std::optional<SalvagedFile> file =
          isLost(task, set) ? task.salvaged() : std::optional<SalvagedFile>();
      if (file && file->from(kFromFactory) != file->settings.size() && isItsOwn(task, shared))
        files.push_back({task, std::move(*file)});
    } catch (const Refusal& refusal) {
      notes.push_back(notSalvaged(task, refusal));
    }
  return files;
}

}  // namespace

Outcome salvage(const std::vector<HostFile>& files, bool apply) {
  const Turn turn(apply ? Turn::allFiles() : Turn::Files());
  if (apply) requireNoTrial();
  if (files.empty()) requireDevice();
  const std::vector<SalvageTask> tasks = files.empty() ? damagedFiles() : copiesGiven(files);
  Outcome outcome;
  outcome.value = {{"applied", false},
                   {"files", Json::array()},
                   {"settings", Json::array()},
                   {"notTaken", Json::array()},
                   {"kept", Json::array()}};
  const std::vector<Salvaged> found = salvagedOf(tasks, outcome);
  for (const Salvaged& salvaged : found) {
    const std::string name = nameOf(salvaged.task.path);
    outcome.value["files"].push_back(recordOf(salvaged));
    append(outcome.value["settings"], salvaged.file.settings, name);
    append(outcome.value["notTaken"], salvaged.file.notTaken, name);
  }
  if (!apply || found.empty()) return outcome;
  outcome.value["kept"] = applied(found);
  outcome.value["applied"] = true;
  return outcome;
}

std::vector<std::string> salvagedBeforeStart() {
  const std::vector<SalvageTask> tasks = damagedFiles();
  std::vector<std::string> names;
  std::vector<std::string> ignored;
  for (const Salvaged& file : lostFiles(tasks, ignored)) names.push_back(nameOf(file.task.path));
  return names;
}

std::vector<std::string> salvageBeforeStart(Json& done) {
  const std::vector<SalvageTask> tasks = damagedFiles();
  std::vector<std::string> notes;
  for (const Salvaged& file : lostFiles(tasks, notes)) try {
      salvageLost(file, done, notes);
    } catch (const Refusal& refusal) {
      notes.push_back(notSalvaged(file.task, refusal));
    }
  return notes;
}

}  // namespace camcfg::tool::device
