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

FileSet surveyWithRequired() {
  FileSet set = surveyFiles();
  for (const char* path : kRequired) {
    if (set.find(nameOf(path)) != nullptr) continue;
    ConfigFile& file = set.files.emplace_back();
    file.name = nameOf(path);
    for (Copy* copy : {&file.main, &file.backup, &file.factory}) copy->fault = "is missing";
  }
  std::sort(set.files.begin(), set.files.end(),
            [](const ConfigFile& a, const ConfigFile& b) { return a.name < b.name; });
  return set;
}

// What start-up verification does, file by file.
class StartUp {
 public:
  explicit StartUp(const FileSet& set) : set_(set), repairs_(startUpRepairs(set)) {}

  AtStart to(const ConfigFile& file, Place place) const {
    if (!file.checkedAtStart || place == Place::Default) return AtStart::NotLookedAt;
    if (const auto found = pipe(file))
      return *found == place ? AtStart::WaitsForEver : AtStart::NotLookedAt;
    const auto repair = std::find_if(repairs_.begin(), repairs_.end(), [&](const Repair& each) {
      return each.name == file.name && each.to == place;
    });
    if (repair == repairs_.end() || !repair->fitsTheCopy()) return AtStart::Stays;
    return repair->from == Place::Backup ? AtStart::FromBackup : AtStart::FromDefault;
  }

  /// What a finding adds on a copy that is restored; none for one that is not.
  std::optional<std::string> outlook(const ConfigFile& file, Place place) const {
    const AtStart done = to(file, place);
    if (done == AtStart::FromBackup) return "; the next start restores it from its backup";
    if (done == AtStart::FromDefault) return "; the next start restores it from the factory set";
    return std::nullopt;
  }

  /// The first copy that it opens and that is a pipe.
  std::optional<Place> pipe(const ConfigFile& file) const {
    if (!file.checkedAtStart) return std::nullopt;
    for (const Place place : kPlaces) {
      if (place == Place::Backup && !set_.anyBackup) continue;
      if (file.copy(place).isPipe) return place;
      if (file.copy(place).loads()) break;
    }
    return std::nullopt;
  }

 private:
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

void judgeMain(FileHealth& health, const ConfigFile& file, const StartUp& startUp) {
  if (file.main.state == State::Good) return;
  const auto restored = startUp.outlook(file, Place::Main);
  health.health = restored ? Health::Degraded : Health::Unusable;
  health.findings.push_back(file.path(Place::Main) + " " + file.main.fault +
                            restored.value_or(outlookFor(file)));
}

void judgeBackup(FileHealth& health, const ConfigFile& file, const StartUp& startUp) {
  if (file.backup.state == State::Good) return;
  health.health = std::max(health.health, Health::Degraded);
  const bool unlike = file.backup.state == State::OutOfStep;
  const bool resynced = file.main.state == State::Good && file.backup.state != State::NotAFile;
  health.findings.push_back(
      file.path(Place::Backup) + " " + (unlike ? "is unlike its main copy" : file.backup.fault) +
      startUp.outlook(file, Place::Backup)
          .value_or(resynced ? "; 'camcfg verify --resync' brings it level" : ""));
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
  constexpr const char* kWords[] = {"well", "degraded", "unusable"};
  return kWords[static_cast<std::size_t>(health)];
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
