#include "device/salvage_task.h"

#include <camcfg/types.h>

#include <algorithm>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/salvage_copy.h"
#include "device/save.h"

namespace camcfg::tool::device {
namespace {

constexpr const char* kFiles[] = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};

std::string stemOf(const char* path) {
  const std::string name = nameOf(path);
  return name.substr(0, name.rfind('.'));
}

// Whether the main copy loads but ends early, as the factory copy shows, and a damaged backup has some
// of the rest.
bool isRestInBackup(const SalvageTask& task, const ConfigFile& file) {
  if (!task.copies[1] || file.backup.state == State::Good ||
      file.backup.state == State::OutOfStep || elementCutOff(file.main, file.factory).empty())
    return false;
  const std::optional<SalvagedFile> found = task.salvaged();
  return found && found->from(kFromBackup) != 0;
}

bool isDamaged(const SalvageTask& task, const ConfigFile& file) {
  return (file.main.state != State::Good && file.main.state != State::OutOfStep) ||
         hasHole(task.copies[0]) || isRestInBackup(task, file);
}

// The file that a copy belongs to: by its name, else the one of which it has the most.
std::string fileOf(const std::string& path, const std::string& bytes) {
  for (const char* file : kFiles)
    if (nameOf(path).find(stemOf(file)) != std::string::npos) return file;
  std::string best;
  std::size_t most = 0;
  for (const char* file : kFiles) {
    SalvageTask task{file};
    task.copies[0] = bytes;
    const std::optional<SalvagedFile> found = task.salvaged();
    const std::size_t number = found ? found->from(kFromMain) : 0;
    if (number <= most) continue;
    most = number;
    best = file;
  }
  if (best.empty()) throw Refusal::about(path, path + ": nothing in it says what it configures");
  return best;
}

// A path of the device's is the device's; another one is of the system that the tool was started on.
std::string bytesGiven(const HostFile& file) {
  for (const char* main : kFiles)
    for (const Place place : {Place::Main, Place::Backup})
      if (file.path == pathOf(place, main)) return device::bytesOf(file.path);
  if (!file.fault.empty()) throw Refusal::about(file.path, concat(file.path, ": ", file.fault));
  return file.contents;
}

// Of a file in "cfg1", and of one that was kept from there.
Place placeOf(const std::string& path) {
  const std::string name = nameOf(path);
  const std::string before = path.substr(0, path.size() - name.size());  // "DIRECTORY/"
  const bool isBackup = beginsWith(name, "cfg1-") ||
                        (!before.empty() && nameOf(before.substr(0, before.size() - 1)) == "cfg1");
  return isBackup ? Place::Backup : Place::Main;
}

}  // namespace

Bytes bytesOf(const std::string& path, const Copy& copy) {
  const bool isFile = copy.state != State::NotAFile && copy.state != State::Missing;
  return isFile ? readFile(path) : std::nullopt;
}

bool hasHole(const Bytes& bytes) {
  return bytes && bytes->find('\0') != std::string::npos;
}

void SalvageTask::set(Place place, Bytes bytes, const std::string& state) {
  const auto index = static_cast<std::size_t>(place);
  copies[index] = std::move(bytes);
  states[index] = state;
}

std::optional<SalvagedFile> SalvageTask::salvaged() const {
  const Bytes factory = readFile(pathOf(Place::Default, path));
  return factory ? device::salvaged(copies[0], copies[1], *factory) : std::nullopt;
}

std::vector<SalvageTask> damagedFiles() {
  const FileSet set = surveyFiles();
  std::vector<SalvageTask> tasks;
  for (const char* path : kFiles) {
    const ConfigFile* found = set.find(nameOf(path));
    if (found == nullptr) continue;
    const ConfigFile& file = *found;
    SalvageTask task{path};
    for (const Place place : {Place::Main, Place::Backup})
      task.set(place, bytesOf(file.path(place), file.copy(place)), wordFor(file.copy(place).state));
    const bool isAnythingLeft = task.copies[0] || task.copies[1];
    if (isAnythingLeft && file.main.state != State::Unreadable && isDamaged(task, file))
      tasks.push_back(std::move(task));
  }
  return tasks;
}

std::vector<SalvageTask> copiesGiven(const std::vector<HostFile>& files) {
  std::vector<SalvageTask> tasks;
  for (const HostFile& file : files) {
    std::string bytes = bytesGiven(file);
    const std::string path = fileOf(file.path, bytes);
    auto task = std::find_if(tasks.begin(), tasks.end(),
                             [&](const SalvageTask& each) { return each.path == path; });
    if (task == tasks.end()) task = tasks.insert(task, {path});
    const Place place = placeOf(file.path);
    if (task->copies[static_cast<std::size_t>(place)])
      throw Refusal(Status::Usage,
                    concat(file.path, " is a second ", wordFor(place), " copy of ", path));
    task->set(place, std::move(bytes), "given");
  }
  return tasks;
}

}  // namespace camcfg::tool::device
