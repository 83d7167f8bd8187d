#include <camcfg/types.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/advice.h"
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

// What `boot` would salvage; a device that is well is not looked through for it.
std::vector<std::string> salvagedOf(const FileSet& set) {
  const bool isWell = std::all_of(set.files.begin(), set.files.end(), [](const auto& file) {
    return file.main.state == State::Good && file.backup.state == State::Good;
  });
  return isWell ? std::vector<std::string>() : salvagedBeforeStart();
}

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

void addCopies(const ConfigFile& file, const Adviser& adviser, Json& copies) {
  const Forecast& start = adviser.start();
  const Forecast& boot = adviser.boot();
  for (const Place place : kPlaces) {
    Json record = recordOf(file, place);
    const bool isChecked = file.checkedAtStart && place != Place::Default;
    record["atStart"] = isChecked ? Json(start.source(file, place)) : Json();
    record["afterStart"] = wordFor(start.state(file, place));
    record["atBoot"] = place == Place::Default ? Json() : Json(boot.source(file, place));
    record["afterBoot"] = wordFor(boot.state(file, place));
    const std::string same = adviser.sameFileAs(file, place);
    record["sameFileAs"] = same.empty() ? Json() : Json(same);
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

Judgement judge(const ConfigFile& file, const Adviser& adviser) {
  Judgement judgement;
  if (file.main.state != State::Good)
    judgement.add(adviser.start().state(file, Place::Main) == State::Good ? Health::Degraded
                                                                          : Health::Unusable,
                  adviser.onCopy(file, Place::Main));
  if (file.backup.state != State::Good)
    judgement.add(Health::Degraded, adviser.onCopy(file, Place::Backup));
  // A file of somebody else's, not in the factory set, has no factory copy.
  const bool isExpected = isRequired(file.name) || file.checkedAtStart;
  if (std::optional<Advice> advice = adviser.onFactory(file, isExpected))
    judgement.add(Health::Degraded, std::move(*advice));
  for (const Place place : kPlaces)
    if (std::optional<Advice> advice = adviser.onLink(file, place))
      judgement.add(Health::Degraded, std::move(*advice));
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
  const Adviser adviser(set, salvagedOf(set));
  Health worst = Health::Well;
  Outcome outcome;
  outcome.value = {{"health", ""}, {"files", Json::array()}, {"copies", Json::array()}};
  Json advice = Json::array();
  for (const ConfigFile& file : set.files) {
    const Judgement judgement = judge(file, adviser);
    worst = std::max(worst, judgement.health);
    outcome.value["files"].push_back({{"name", file.name},
                                      {"health", wordFor(judgement.health)},
                                      {"required", isRequired(file.name)},
                                      {"checkedAtStart", file.checkedAtStart}});
    addCopies(file, adviser, outcome.value["copies"]);
    for (const Advice& each : judgement.advice) {
      outcome.notes.push_back(concat(each.path, " ", each.problem, each.outlook));
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
