#include <camcfg/types.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>

#include "base/plain_text.h"
#include "device/repair.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

constexpr const char* kRequired[] = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};

bool isRequired(const std::string& name) {
  return std::any_of(std::begin(kRequired), std::end(kRequired),
                     [&](const char* path) { return nameOf(path) == name; });
}

FileSet surveyWithRequired() {
  FileSet set = surveyFiles();
  if (set.files.empty()) requireDevice();
  for (const char* path : kRequired)
    if (set.find(nameOf(path)) == nullptr) set.files.emplace_back().name = nameOf(path);
  std::sort(set.files.begin(), set.files.end(),
            [](const ConfigFile& a, const ConfigFile& b) { return a.name < b.name; });
  return set;
}

// How well a device is off with its files, from best to worst.
enum class Health { Well, Degraded, Unusable };

const char* wordFor(Health health) {
  constexpr const char* kWords[] = {"well", "degraded", "unusable"};
  return kWords[static_cast<std::size_t>(health)];
}

// What start-up verification does, file by file.
class StartUp {
 public:
  explicit StartUp(const FileSet& set) : set_(set), repairs_(startUpRepairs(set)) {}

  /// What it does to a copy; null for one that it does not look at.
  Json to(const ConfigFile& file, Place place) const {
    if (!file.checkedAtStart || place == Place::Default) return nullptr;
    if (const auto found = pipe(file)) return *found == place ? Json("waits-for-ever") : Json();
    const Repair* repair = repairOf(file, place);
    return repair == nullptr ? "stays" : std::string("from-") + wordFor(repair->from);
  }

  /// What a finding adds on a copy that is restored; none for one that is not.
  std::optional<std::string> outlook(const ConfigFile& file, Place place) const {
    const Repair* repair = pipe(file) ? nullptr : repairOf(file, place);
    if (repair == nullptr) return std::nullopt;
    return std::string("; the next start restores it from ") +
           (repair->from == Place::Backup ? "its backup" : "the factory set");
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
  const Repair* repairOf(const ConfigFile& file, Place place) const {
    for (const Repair& repair : repairs_)
      if (repair.name == file.name && repair.to == place && repair.fitsTheCopy()) return &repair;
    return nullptr;
  }

  const FileSet& set_;
  std::vector<Repair> repairs_;
};

Json recordOf(const ConfigFile& file, Place place, const StartUp& startUp) {
  Json record = {{"file", file.name},
                 {"copy", wordFor(place)},
                 {"path", file.path(place)},
                 {"state", wordFor(file.copy(place).state)},
                 {"bytes", nullptr},
                 {"changed", nullptr},
                 {"atStart", startUp.to(file, place)}};
  struct stat status {};
  if (stat(file.path(place).c_str(), &status) != 0) return record;
  if (S_ISREG(status.st_mode)) record["bytes"] = status.st_size;
  const std::string changed = utcText(status.st_mtime);
  if (!changed.empty()) record["changed"] = changed;
  return record;
}

// What is wrong with the copies of a file.
struct Judgement {
  Health health = Health::Well;
  std::vector<std::string> findings;

  void add(Health least, const std::string& finding) {
    health = std::max(health, least);
    findings.push_back(finding);
  }
};

std::string outlookForBackup(const ConfigFile& file) {
  const bool resynced = file.main.state == State::Good && file.backup.state != State::NotAFile;
  return resynced ? "; 'camcfg verify --resync' brings it up to date" : "";
}

Judgement judge(const ConfigFile& file, const StartUp& startUp) {
  Judgement judgement;
  if (const std::optional<Place> pipe = startUp.pipe(file))
    judgement.add(Health::Unusable,
                  file.path(*pipe) + " is a pipe; every start would hang on it; move it away");
  if (file.main.state != State::Good) {
    const auto restored = startUp.outlook(file, Place::Main);
    judgement.add(
        restored ? Health::Degraded : Health::Unusable,
        file.path(Place::Main) + " " + file.main.fault + restored.value_or(outlookFor(file)));
  }
  if (file.backup.state != State::Good)
    judgement.add(Health::Degraded,
                  file.path(Place::Backup) + " " +
                      (file.backup.state == State::OutOfStep ? "differs from its main copy"
                                                             : file.backup.fault) +
                      startUp.outlook(file, Place::Backup).value_or(outlookForBackup(file)));
  // A file of somebody else's, not in the factory set, has no factory copy.
  const bool expected = isRequired(file.name) || file.checkedAtStart;
  const State factory = file.factory.state;
  if (factory != State::Good && (expected || factory != State::Missing))
    judgement.add(Health::Degraded, file.path(Place::Default) + " " + file.factory.fault +
                                        ", so no start can restore from it");
  return judgement;
}

}  // namespace

Outcome checkHealth() {
  const FileSet set = surveyWithRequired();
  const StartUp startUp(set);
  Health worst = Health::Well;
  Outcome outcome;
  outcome.value = {{"health", ""}, {"files", Json::array()}, {"copies", Json::array()}};
  for (const ConfigFile& file : set.files) {
    const Judgement judgement = judge(file, startUp);
    worst = std::max(worst, judgement.health);
    outcome.value["files"].push_back({{"name", file.name},
                                      {"health", wordFor(judgement.health)},
                                      {"required", isRequired(file.name)},
                                      {"checkedAtStart", file.checkedAtStart}});
    for (const Place place : kPlaces)
      outcome.value["copies"].push_back(recordOf(file, place, startUp));
    for (const std::string& finding : judgement.findings) outcome.notes.push_back(finding);
  }
  outcome.value["health"] = wordFor(worst);
  const std::string whyNot = whyNotKeptApart();
  outcome.value["keptApart"] = whyNot.empty();
  outcome.value["keptApartWhyNot"] = whyNot.empty() ? Json() : Json(whyNot);
  outcome.value["findings"] = outcome.notes;
  constexpr Status kStatus[] = {Status::Done, Status::Degraded, Status::Unusable};
  outcome.status = kStatus[static_cast<std::size_t>(worst)];
  return outcome;
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
