#include <camcfg/types.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>

#include "base/plain_text.h"
#include "device/advice.h"
#include "device/forecast.h"
#include "device/repair.h"
#include "device/salvage.h"
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

// What becomes of the files if nobody does anything.
class Prospects {
 public:
  explicit Prospects(const FileSet& set) : set_(set), isRefused_(!whyNotVerified(set).empty()) {
    const bool isWell = std::all_of(set.files.begin(), set.files.end(), [](const auto& file) {
      return file.main.state == State::Good && file.backup.state == State::Good;
    });
    if (!isWell) salvaged_ = salvagedBeforeStart();
  }

  bool isSalvaged(const ConfigFile& file) const { return isAmong(salvaged_, file.name); }

  Forecast start(const ConfigFile& file) const {
    Forecast forecast(set_, file);
    forecast.start();
    return forecast;
  }

  Forecast boot(const ConfigFile& file) const {
    Forecast forecast(set_, file);
    if (!isRefused_) forecast.boot(isSalvaged(file));
    return forecast;
  }

 private:
  const FileSet& set_;
  bool isRefused_;
  std::vector<std::string> salvaged_;
};

Json recordOf(const ConfigFile& file, Place place) {
  Json record = {{"file", file.name},        {"copy", wordFor(place)},
                 {"path", file.path(place)}, {"state", wordFor(file.copy(place).state)},
                 {"bytes", nullptr},         {"changed", nullptr}};
  struct stat status {};
  if (stat(file.path(place).c_str(), &status) != 0) return record;
  if (S_ISREG(status.st_mode)) record["bytes"] = status.st_size;
  const std::string changed = utcText(status.st_mtime);
  if (!changed.empty()) record["changed"] = changed;
  return record;
}

void addCopies(const ConfigFile& file, const Prospects& prospects, Json& copies) {
  const Forecast start = prospects.start(file);
  const Forecast boot = prospects.boot(file);
  for (const Place place : kPlaces) {
    Json record = recordOf(file, place);
    const bool isChecked = file.checkedAtStart && place != Place::Default;
    record["atStart"] = isChecked ? Json(start.source(place)) : Json();
    record["afterStart"] = wordFor(start.state(place));
    record["atBoot"] = place == Place::Default ? Json() : Json(boot.source(place));
    record["afterBoot"] = wordFor(boot.state(place));
    const std::optional<Place> same = sameFileAs(file, place);
    record["sameFileAs"] = same ? Json(file.path(*same)) : Json();
    copies.push_back(std::move(record));
  }
}

// What is wrong with the copies of a file.
struct Judgement {
  Health health = Health::Well;
  std::vector<Advice> advice;

  void add(Health least, Advice what) {
    health = std::max(health, least);
    advice.push_back(std::move(what));
  }
};

Judgement judge(const FileSet& set, const ConfigFile& file, const Prospects& prospects) {
  Judgement judgement;
  if (file.main.state != State::Good)
    judgement.add(prospects.start(file).state(Place::Main) == State::Good ? Health::Degraded
                                                                          : Health::Unusable,
                  adviceOn(set, file, Place::Main, prospects.isSalvaged(file)));
  if (file.backup.state != State::Good)
    judgement.add(Health::Degraded, adviceOn(set, file, Place::Backup));
  // A file of somebody else's, not in the factory set, has no factory copy.
  const bool isExpected = isRequired(file.name) || file.checkedAtStart;
  if (std::optional<Advice> advice = adviceOnFactory(set, file, isExpected))
    judgement.add(Health::Degraded, std::move(*advice));
  for (const Place place : {Place::Backup, Place::Default})
    if (const std::optional<Place> other = sameFileAs(file, place); other && *other < place)
      judgement.add(Health::Degraded, adviceOnLink(set, file, place, *other));
  return judgement;
}

Json jsonOf(const Advice& advice) {
  return {{"path", advice.path},
          {"problem", advice.problem},
          {"move", Json(advice.move)},
          {"command", advice.command ? Json(*advice.command) : Json()}};
}

}  // namespace

Outcome checkHealth() {
  const FileSet set = surveyWithRequired();
  const Prospects prospects(set);
  Health worst = Health::Well;
  Outcome outcome;
  outcome.value = {{"health", ""}, {"files", Json::array()}, {"copies", Json::array()}};
  Json advice = Json::array();
  for (const ConfigFile& file : set.files) {
    const Judgement judgement = judge(set, file, prospects);
    worst = std::max(worst, judgement.health);
    outcome.value["files"].push_back({{"name", file.name},
                                      {"health", wordFor(judgement.health)},
                                      {"required", isRequired(file.name)},
                                      {"checkedAtStart", file.checkedAtStart}});
    addCopies(file, prospects, outcome.value["copies"]);
    for (const Advice& each : judgement.advice) {
      outcome.notes.push_back(each.path + " " + each.problem + each.outlook);
      advice.push_back(jsonOf(each));
    }
  }
  outcome.value["health"] = wordFor(worst);
  const std::string whyNot = whyNotKeptApart();
  outcome.value["keptApart"] = whyNot.empty();
  outcome.value["keptApartWhyNot"] = whyNot.empty() ? Json() : Json(whyNot);
  outcome.value["findings"] = outcome.notes;
  outcome.value["advice"] = std::move(advice);
  constexpr Status kStatus[] = {Status::Done, Status::Degraded, Status::Unusable};
  outcome.status = kStatus[static_cast<std::size_t>(worst)];
  return outcome;
}

}  // namespace camcfg::tool::device
