#include "device/health.h"

#include <camcfg/types.h>
#include <sys/stat.h>

#include <algorithm>

namespace camcfg::tool::device {
namespace {

constexpr const char* kRequired[] = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};

bool isRequired(const std::string& name) {
  return std::any_of(std::begin(kRequired), std::end(kRequired),
                     [&](const char* path) { return nameOf(path) == name; });
}

ConfigFile missingFile(const std::string& name) {
  ConfigFile file;
  file.name = name;
  for (Copy* copy : {&file.main, &file.backup, &file.factory}) copy->fault = "is missing";
  return file;
}

FileSet surveyWithRequired() {
  FileSet set = surveyFiles();
  for (const char* path : kRequired)
    if (set.find(nameOf(path)) == nullptr) set.files.push_back(missingFile(nameOf(path)));
  std::sort(set.files.begin(), set.files.end(),
            [](const ConfigFile& a, const ConfigFile& b) { return a.name < b.name; });
  return set;
}

// The first copy that start-up verification opens and that is a pipe.
std::optional<Place> pipeAtStart(const ConfigFile& file, bool anyBackup) {
  if (!file.checkedAtStart) return std::nullopt;
  for (const Place place : kPlaces) {
    if (place == Place::Backup && !anyBackup) continue;
    if (file.copy(place).isPipe) return place;
    if (file.copy(place).loads()) break;
  }
  return std::nullopt;
}

// What start-up verification does, file by file.
class StartUp {
 public:
  explicit StartUp(const FileSet& set) : set_(set), repairs_(startUpRepairs(set)) {}

  AtStart to(const ConfigFile& file, Place place) const {
    if (!file.checkedAtStart || place == Place::Default) return AtStart::NotLookedAt;
    if (const auto pipe = pipeAtStart(file, set_.anyBackup))
      return *pipe == place ? AtStart::WaitsForEver : AtStart::NotLookedAt;
    const Repair* repair = find(file, place);
    if (repair == nullptr || !repair->fitsTheCopy()) return AtStart::Stays;
    return repair->from == Place::Backup ? AtStart::FromBackup : AtStart::FromDefault;
  }

  bool restores(const ConfigFile& file, Place place) const {
    const AtStart done = to(file, place);
    return done == AtStart::FromBackup || done == AtStart::FromDefault;
  }

  std::optional<Place> pipe(const ConfigFile& file) const {
    return pipeAtStart(file, set_.anyBackup);
  }

 private:
  const Repair* find(const ConfigFile& file, Place place) const {
    const auto found = std::find_if(repairs_.begin(), repairs_.end(), [&](const Repair& repair) {
      return repair.name == file.name && repair.to == place;
    });
    return found == repairs_.end() ? nullptr : &*found;
  }

  const FileSet& set_;
  std::vector<Repair> repairs_;
};

CopyHealth healthOf(const ConfigFile& file, Place place, const StartUp& startUp) {
  CopyHealth health{place, file.copy(place).state, {}, {}, startUp.to(file, place)};
  struct stat status {};
  if (stat(file.path(place).c_str(), &status) != 0) return health;
  if (S_ISREG(status.st_mode)) health.bytes = static_cast<std::uintmax_t>(status.st_size);
  health.changed = status.st_mtime;
  return health;
}

std::string restoredFrom(AtStart done) {
  return done == AtStart::FromBackup ? "; the next start restores it from its backup"
                                     : "; the next start restores it from the factory set";
}

std::string outlookForBackup(const ConfigFile& file) {
  return file.main.state == State::Good && file.backup.state != State::NotAFile
             ? "; 'camcfg verify --resync' brings it level"
             : "";
}

void judgeMain(FileHealth& health, const ConfigFile& file, const StartUp& startUp) {
  if (file.main.state == State::Good) return;
  const bool restored = startUp.restores(file, Place::Main);
  health.health = restored ? Health::Degraded : Health::Unusable;
  health.findings.push_back(
      file.path(Place::Main) + " " + file.main.fault +
      (restored ? restoredFrom(startUp.to(file, Place::Main)) : outlookFor(file)));
}

void judgeBackup(FileHealth& health, const ConfigFile& file, const StartUp& startUp) {
  if (file.backup.state == State::Good) return;
  health.health = std::max(health.health, Health::Degraded);
  const bool unlike = file.backup.state == State::OutOfStep;
  health.findings.push_back(
      file.path(Place::Backup) + " " + (unlike ? "is unlike its main copy" : file.backup.fault) +
      (startUp.restores(file, Place::Backup) ? restoredFrom(startUp.to(file, Place::Backup))
                                             : outlookForBackup(file)));
}

// A file of somebody else's, beside the factory set, has no factory copy.
void judgeDefault(FileHealth& health, const ConfigFile& file) {
  const bool expected = health.required || file.checkedAtStart;
  if (file.factory.state == State::Good || (!expected && file.factory.state == State::Missing))
    return;
  health.health = std::max(health.health, Health::Degraded);
  health.findings.push_back(file.path(Place::Default) + " " + file.factory.fault +
                            ", so no start can restore from it");
}

void judgePipe(FileHealth& health, const ConfigFile& file, const StartUp& startUp) {
  const std::optional<Place> pipe = startUp.pipe(file);
  if (!pipe) return;
  health.health = Health::Unusable;
  health.findings.push_back(file.path(*pipe) +
                            " is a pipe, at which every start waits for ever; move it away");
}

FileHealth healthOf(const ConfigFile& file, const StartUp& startUp) {
  FileHealth health{file.name, isRequired(file.name), file.checkedAtStart, Health::Well, {}, {}};
  for (const Place place : kPlaces) health.copies.push_back(healthOf(file, place, startUp));
  judgePipe(health, file, startUp);
  judgeMain(health, file, startUp);
  judgeBackup(health, file, startUp);
  judgeDefault(health, file);
  return health;
}

}  // namespace

const char* wordFor(Health health) {
  switch (health) {
    case Health::Well:
      return "well";
    case Health::Degraded:
      return "degraded";
    case Health::Unusable:
      break;
  }
  return "unusable";
}

std::vector<FileHealth> checkHealth() {
  const FileSet set = surveyWithRequired();
  const StartUp startUp(set);
  std::vector<FileHealth> all;
  for (const ConfigFile& file : set.files) all.push_back(healthOf(file, startUp));
  return all;
}

std::string outlookFor(const ConfigFile& file) {
  if (file.main.state == State::NotAFile || file.main.state == State::NoElement)
    return "; move it away and run 'camcfg verify'";
  if (file.main.state == State::Unreadable) return "";
  if (file.backup.state == State::Good)
    return file.checkedAtStart && file.main.state != State::CutShort
               ? ""
               : "; 'camcfg verify --resync' restores it from its backup";
  return file.factory.loads() ? "" : " and no other copy of it is good";
}

}  // namespace camcfg::tool::device
