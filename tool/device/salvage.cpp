#include "device/salvage.h"

#include <camcfg/types.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "base/plain_text.h"
#include "device/change.h"
#include "device/kept_damage.h"
#include "device/repair.h"
#include "device/salvage_copy.h"
#include "device/save.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

using Bytes = std::optional<std::string>;

constexpr const char* kFiles[] = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};
constexpr const char* kSources[] = {kFromMain, kFromBackup, kDisputed, kFromFactory};

// The copies of a file that are looked at.
struct Task {
  std::string path;  // of the main copy
  std::array<Bytes, 2> copies{};
  std::array<std::string, 2> states{};

  void set(Place place, Bytes bytes, const std::string& state) {
    const auto index = static_cast<std::size_t>(place);
    copies[index] = std::move(bytes);
    states[index] = state;
  }
};

struct Salvaged {
  const Task& task;
  SalvagedFile file;
};

// Bytes that can be read without waiting for anybody.
Bytes bytesIn(const std::string& path, const Copy& copy) {
  const bool isFile = copy.state != State::NotAFile && copy.state != State::Missing;
  return isFile ? readFile(path) : std::nullopt;
}

// The library reads a file to its first NUL.
bool hasHole(const Bytes& bytes) {
  return bytes && bytes->find('\0') != std::string::npos;
}

bool canBeReplaced(const Copy& copy) {
  return copy.state != State::NotAFile && copy.state != State::Unreadable;
}

std::vector<Task> damagedFiles() {
  const FileSet set = surveyFiles();
  std::vector<Task> tasks;
  for (const char* path : kFiles) {
    const ConfigFile* found = set.find(nameOf(path));
    if (found == nullptr) continue;
    const ConfigFile& file = *found;
    Task task{path};
    for (const Place place : {Place::Main, Place::Backup})
      task.set(place, bytesIn(file.path(place), file.copy(place)), wordFor(file.copy(place).state));
    const bool isDamaged =
        !file.main.loads() || file.main.state == State::CutShort || hasHole(task.copies[0]);
    const bool isAnythingLeft = task.copies[0] || task.copies[1];
    if (isDamaged && isAnythingLeft && canBeReplaced(file.main)) tasks.push_back(std::move(task));
  }
  return tasks;
}

std::string stemOf(const char* path) {
  const std::string name = nameOf(path);
  return name.substr(0, name.rfind('.'));
}

std::optional<SalvagedFile> salvaged(const Task& task) {
  const Bytes factory = readFile(pathOf(Place::Default, task.path));
  return factory ? device::salvaged(task.copies[0], task.copies[1], *factory) : std::nullopt;
}

// The file that a copy belongs to: by its name, else the one of which it has the most.
std::string fileOf(const std::string& path, const std::string& bytes) {
  for (const char* file : kFiles)
    if (nameOf(path).find(stemOf(file)) != std::string::npos) return file;
  std::string best;
  std::size_t most = 0;
  for (const char* file : kFiles) {
    Task task{file};
    task.copies[0] = bytes;
    const std::optional<SalvagedFile> found = salvaged(task);
    const std::size_t number = found ? found->from(kFromMain) : 0;
    if (number <= most) continue;
    most = number;
    best = file;
  }
  if (best.empty()) throw Refusal::about(path, path + ": nothing in it says what it configures");
  return best;
}

// A path of the device's is the device's; another one is of the system that the tool was started on.
std::string bytesOf(const HostFile& file) {
  for (const char* main : kFiles)
    for (const Place place : {Place::Main, Place::Backup})
      if (file.path == pathOf(place, main)) return device::bytesOf(file.path);
  if (!file.fault.empty()) throw Refusal::about(file.path, file.path + ": " + file.fault);
  return file.contents;
}

// Of a file in "cfg1", and of one that was kept from there.
Place placeOf(const std::string& path) {
  const std::string directory = nameOf(path.substr(0, path.size() - nameOf(path).size() - 1));
  const bool isBackup = directory == nameOf("/cfg1") || beginsWith(nameOf(path), "cfg1-");
  return isBackup ? Place::Backup : Place::Main;
}

std::vector<Task> tasksOf(const std::vector<HostFile>& files) {
  std::vector<Task> tasks;
  for (const HostFile& file : files) {
    std::string bytes = bytesOf(file);
    const std::string path = fileOf(file.path, bytes);
    auto task = std::find_if(tasks.begin(), tasks.end(),
                             [&](const Task& each) { return each.path == path; });
    if (task == tasks.end()) task = tasks.insert(task, {path});
    const Place place = file.path.find('/') == std::string::npos ? Place::Main : placeOf(file.path);
    if (task->copies[static_cast<std::size_t>(place)])
      throw Refusal(Status::Usage,
                    file.path + " is a second " + wordFor(place) + " copy of " + path);
    task->set(place, std::move(bytes), "given");
  }
  return tasks;
}

// What start-up verification would make of a file: the contents that a change of it starts from.
std::string insteadOf(const std::string& path) {
  const std::string backup = pathOf(Place::Backup, path);
  const Bytes bytes = loadCopy(backup).state == State::Good ? readFile(backup) : std::nullopt;
  return bytes && !hasHole(bytes) ? *bytes : device::bytesOf(pathOf(Place::Default, path));
}

Change changeTo(const Salvaged& salvaged) {
  const std::string& path = salvaged.task.path;
  const std::string& bytes = salvaged.file.bytes;
  const auto make = [path, bytes] {
    saveContents({{path, bytes}});
    return true;
  };
  const auto arrived = [bytes](tinyxml2::XMLDocument& document) {
    return written(document) == written(*parsedDocument(bytes));
  };
  return {path, path, make, arrived, {}, insteadOf(path)};
}

// Damaged copies of the device, which are about to be replaced.
Json keptCopies(const std::vector<Salvaged>& files) {
  Json kept = Json::array();
  for (const Salvaged& file : files)
    for (const Place place : {Place::Main, Place::Backup}) {
      const std::string path = pathOf(place, file.task.path);
      const Copy copy = loadCopy(path);
      const Bytes bytes = bytesIn(path, copy);
      if (bytes && (!copy.loads() || hasHole(bytes)))
        kept.push_back({{"copy", path}, {"as", keepDamaged(path)}});
    }
  return kept;
}

// All files of one change, or none.
Json applied(const std::vector<Salvaged>& files) {
  Json kept = keptCopies(files);
  std::vector<Change> changes;
  changes.reserve(files.size());
  for (const Salvaged& file : files) changes.push_back(changeTo(file));
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

std::vector<Salvaged> salvagedOf(const std::vector<Task>& tasks, Outcome& outcome) {
  std::vector<Salvaged> files;
  for (const Task& task : tasks) {
    std::optional<SalvagedFile> file = salvaged(task);
    if (file) {
      files.push_back({task, std::move(*file)});
      continue;
    }
    const std::string factory = pathOf(Place::Default, task.path);
    outcome.notes.push_back(task.path + " cannot be salvaged: " + factory + " " +
                            loadCopy(factory).fault);
    outcome.status = Status::Unusable;
  }
  return files;
}

// "settings from main: 40, backup: 2, disputed: 1, factory: 3"
std::string summaryOf(const SalvagedFile& file) {
  std::string text = "settings from";
  for (const char* source : kSources)
    text += (source == kSources[0] ? " " : ", ") + std::string(source) + ": " +
            std::to_string(file.from(source));
  return text;
}

void salvageLost(const Task& task, Json& done) {
  std::optional<SalvagedFile> file = salvaged(task);
  if (!file || file->from(kFromFactory) == file->settings.size()) return;
  const std::vector<Salvaged> found = {{task, std::move(*file)}};
  const Json kept = applied(found);
  done.push_back(task.path + " was salvaged; " + summaryOf(found.front().file));
  for (const Json& copy : kept)
    done.push_back(copy.at("copy").text() + " was kept as " + copy.at("as").text());
}

}  // namespace

std::size_t SalvagedFile::from(const char* source) const {
  return static_cast<std::size_t>(
      std::count_if(settings.begin(), settings.end(),
                    [&](const Json& setting) { return setting.at("source").text() == source; }));
}

std::optional<SalvagedFile> salvaged(const Bytes& main, const Bytes& backup,
                                     const std::string& factory) {
  const Document document = parsedDocument(factory);
  if (document == nullptr) return std::nullopt;
  const std::string none;
  const SalvageCopies copies = {{Place::Main, main ? *main : none},
                                {Place::Backup, backup ? *backup : none},
                                {Place::Default, factory}};
  SalvageReport report;
  if (!salvageEntries(*document, copies, report)) salvageParameters(*document, copies, report);
  return SalvagedFile{written(*document), std::move(report.settings), std::move(report.notTaken)};
}

Outcome salvage(const std::vector<HostFile>& files, bool apply) {
  const Turn turn(apply ? Turn::allFiles() : Turn::Files());
  if (files.empty()) requireDevice();
  const std::vector<Task> tasks = files.empty() ? damagedFiles() : tasksOf(files);
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

std::vector<std::string> salvageBeforeStart(Json& done) {
  std::vector<std::string> notes;
  const std::vector<Repair> repairs = startUpRepairs(surveyFiles());
  for (const Task& task : damagedFiles()) {
    const bool isLost = std::any_of(repairs.begin(), repairs.end(), [&](const Repair& repair) {
      return repair.target() == task.path && repair.from == Place::Default;
    });
    if (!isLost) continue;
    try {
      salvageLost(task, done);
    } catch (const Refusal& refusal) {
      notes.push_back(task.path + " was not salvaged: " + refusal.what());
    }
  }
  return notes;
}

}  // namespace camcfg::tool::device
