#include "device/health.h"

#include <camcfg/types.h>
#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <optional>

#include "device/repair.h"

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

// How well a device is off with its files, from best to worst.
enum class Health { Well, Degraded, Unusable };

const char* wordFor(Health health) {
  constexpr const char* kWords[] = {"well", "degraded", "unusable"};
  return kWords[static_cast<std::size_t>(health)];
}

// What start-up verification does to a copy.
enum class AtStart { NotLookedAt, Stays, FromBackup, FromDefault, WaitsForEver };

Json jsonOf(AtStart done) {
  static const Json kWords[] = {nullptr, "stays", "from-backup", "from-default", "waits-for-ever"};
  return kWords[static_cast<std::size_t>(done)];
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

// "2026-11-21T11:15:13Z"
Json timeOf(std::time_t time) {
  std::tm parts{};
  char text[sizeof "2026-11-21T11:15:13Z" + 8] = {};
  if (gmtime_r(&time, &parts) == nullptr) return nullptr;
  return std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts) == 0 ? Json() : Json(text);
}

Json recordOf(const ConfigFile& file, Place place, const StartUp& startUp) {
  Json record = {{"file", file.name},
                 {"copy", wordFor(place)},
                 {"path", file.path(place)},
                 {"state", wordFor(file.copy(place).state)},
                 {"bytes", nullptr},
                 {"changed", nullptr},
                 {"atStart", jsonOf(startUp.to(file, place))}};
  struct stat status {};
  if (stat(file.path(place).c_str(), &status) != 0) return record;
  if (S_ISREG(status.st_mode)) record["bytes"] = status.st_size;
  record["changed"] = timeOf(status.st_mtime);
  return record;
}

// What is wrong with the copies of a file.
class Judgement {
 public:
  Judgement(const ConfigFile& file, const StartUp& startUp) : file_(file), startUp_(startUp) {
    judgePipe();
    judgeMain();
    judgeBackup();
    judgeDefault();
  }

  Health health() const { return health_; }
  const std::vector<std::string>& findings() const { return findings_; }

 private:
  void add(Health least, Place place, const std::string& fault) {
    health_ = std::max(health_, least);
    findings_.push_back(file_.path(place) + " " + fault);
  }

  void judgePipe() {
    if (const std::optional<Place> pipe = startUp_.pipe(file_))
      add(Health::Unusable, *pipe, "is a pipe, at which every start waits for ever; move it away");
  }

  void judgeMain() {
    if (file_.main.state == State::Good) return;
    const auto restored = startUp_.outlook(file_, Place::Main);
    add(restored ? Health::Degraded : Health::Unusable, Place::Main,
        file_.main.fault + restored.value_or(outlookFor(file_)));
  }

  void judgeBackup() {
    const State state = file_.backup.state;
    if (state == State::Good) return;
    const bool resynced = file_.main.state == State::Good && state != State::NotAFile;
    add(Health::Degraded, Place::Backup,
        (state == State::OutOfStep ? "is unlike its main copy" : file_.backup.fault) +
            startUp_.outlook(file_, Place::Backup)
                .value_or(resynced ? "; 'camcfg verify --resync' brings it up to date" : ""));
  }

  // A file of somebody else's, not in the factory set, has no factory copy.
  void judgeDefault() {
    const State state = file_.factory.state;
    const bool expected = isRequired(file_.name) || file_.checkedAtStart;
    if (state == State::Good || (!expected && state == State::Missing)) return;
    add(Health::Degraded, Place::Default,
        file_.factory.fault + ", so no start can restore from it");
  }

  const ConfigFile& file_;
  const StartUp& startUp_;
  Health health_ = Health::Well;
  std::vector<std::string> findings_;
};

Status statusOf(Health health) {
  if (health == Health::Well) return Status::Done;
  return health == Health::Degraded ? Status::Degraded : Status::Unusable;
}

}  // namespace

Outcome checkHealth() {
  const FileSet set = surveyWithRequired();
  const StartUp startUp(set);
  Health worst = Health::Well;
  Outcome outcome;
  outcome.value = {{"health", ""}, {"files", Json::array()}, {"copies", Json::array()}};
  for (const ConfigFile& file : set.files) {
    const Judgement judgement(file, startUp);
    worst = std::max(worst, judgement.health());
    outcome.value["files"].push_back({{"name", file.name},
                                      {"health", wordFor(judgement.health())},
                                      {"required", isRequired(file.name)},
                                      {"checkedAtStart", file.checkedAtStart}});
    for (const Place place : kPlaces)
      outcome.value["copies"].push_back(recordOf(file, place, startUp));
    for (const std::string& finding : judgement.findings()) outcome.notes.push_back(finding);
  }
  outcome.value["health"] = wordFor(worst);
  outcome.value["findings"] = outcome.notes;
  outcome.status = statusOf(worst);
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
