#include <algorithm>

#include "base/concat.h"
#include "device/in_the_way.h"
#include "device/repair.h"
#include "device/salvage.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

// "/cfg0/mpp_cfg.xml was restored from /cfg1/mpp_cfg.xml", for each copy that was replaced.
void addRestored(const Json& files, Json& done) {
  for (const Json& file : files)
    for (const Place to : {Place::Main, Place::Backup})
      for (const Place from : kPlaces) {
        const std::string name = file.at("name").text();
        if (file.at("restored").at(wordFor(to)) != wordFor(from)) continue;
        done.push_back(
            to == Place::Backup && from == Place::Main
                ? concat(pathOf(to, name), " was brought in sync with ", pathOf(from, name))
                : concat(pathOf(to, name), " was restored from ", pathOf(from, name)));
      }
}

}  // namespace

Outcome boot(bool salvages, const std::function<std::vector<std::string>()>& last) {
  std::vector<std::string> finished;
  const Turn turn(Turn::allFiles(), {}, &finished);
  Json done(finished);
  for (const std::string& directory : makeDirectories())
    done.push_back(directory + " did not exist and was made");
  const std::vector<std::string> notSalvaged =
      salvages ? salvageBeforeStart(done) : std::vector<std::string>();
  Outcome verified = verify(nullptr, true);
  addRestored(verified.value["files"], done);
  verified.notes.insert(verified.notes.begin(), notSalvaged.begin(), notSalvaged.end());
  try {
    for (const std::string& line : last()) done.push_back(line);
  } catch (const Refusal& refusal) {
    verified.notes.emplace_back(refusal.what());
    verified.status = std::max(verified.status, Status::Refused);
  }
  const Outcome health = checkHealth();
  return {{{"done", done}, {"health", health.value["health"]}},
          std::move(verified.notes),
          std::max(health.status,
                   verified.status == Status::Refused ? Status::Degraded : Status::Done)};
}

}  // namespace camcfg::tool::device
