#include "device/planned_repairs.h"

#include <camcfg/types.h>

#include "base/concat.h"

namespace camcfg::tool::device {

bool Repair::fitsTheCopy() const {
  return (concat("cp ", source(), " ", target())).size() < CFG_PATH_SIZE;
}

std::vector<Repair> startUpRepairs(const std::string& name, const Loading& loading) {
  if (loading.main) return {};
  if (loading.backup) return {{name, Place::Main, Place::Backup}};
  if (!loading.factory) return {};
  std::vector<Repair> repairs = {{name, Place::Main, Place::Default}};
  if (loading.anyBackup) repairs.push_back({name, Place::Backup, Place::Default});
  return repairs;
}

std::vector<Repair> startUpRepairs(const FileSet& set) {
  std::vector<Repair> repairs;
  for (const ConfigFile& file : set.files) {
    if (!file.checkedAtStart) continue;
    const Loading loading{file.main.loads(), set.anyBackup && file.backup.loads(),
                          set.anyFactory && file.factory.loads(), set.anyBackup};
    for (Repair& repair : startUpRepairs(file.name, loading)) repairs.push_back(std::move(repair));
  }
  return repairs;
}

std::optional<Repair> nextResync(const std::string& name, const PairState& states, State factory) {
  if (states.main == State::Good && states.backup == State::Good) return std::nullopt;
  if (states.main == State::Good) return Repair{name, Place::Backup, Place::Main};
  if (states.backup == State::Good) return Repair{name, Place::Main, Place::Backup};
  if (factory == State::Good) return Repair{name, Place::Main, Place::Default};
  return std::nullopt;
}

}  // namespace camcfg::tool::device
