#include "device/repair.h"

#include <camcfg/store.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/library_log.h"
#include "base/progress.h"

namespace camcfg::tool::device {
namespace {

constexpr std::size_t kBlock = 512;  // of st_blocks

// What stands against a repair.
std::string obstacleTo(const Repair& repair) {
  if (!repair.fitsTheCopy()) return "its name is too long for the library to copy it";
  return whyNotWritable({writingOf(repair)});
}

}  // namespace

bool Repair::fitsTheCopy() const {
  return ("cp " + source() + " " + target()).size() < CFG_PATH_SIZE;
}

std::vector<Repair> startUpRepairs(const FileSet& set) {
  std::vector<Repair> repairs;
  for (const ConfigFile& file : set.files) {
    if (!file.checkedAtStart || file.main.loads()) continue;
    if (set.anyBackup && file.backup.loads()) {
      repairs.push_back({file.name, Place::Main, Place::Backup});
    } else if (file.factory.loads()) {
      repairs.push_back({file.name, Place::Main, Place::Default});
      if (set.anyBackup) repairs.push_back({file.name, Place::Backup, Place::Default});
    }
  }
  return repairs;
}

std::vector<Repair> levelRepairs(const FileSet& set) {
  std::vector<Repair> repairs;
  for (const ConfigFile& file : set.files) {
    if (file.main.state == State::Good && file.backup.state != State::Good)
      repairs.push_back({file.name, Place::Backup, Place::Main});
    else if ((!file.main.loads() || file.main.state == State::CutShort) &&
             file.backup.state == State::Good)
      repairs.push_back({file.name, Place::Main, Place::Backup});
  }
  return repairs;
}

Writing writingOf(const Repair& repair) {
  struct stat source {};
  struct stat target {};
  stat(repair.source().c_str(), &source);
  stat(repair.target().c_str(), &target);
  const auto bytes = static_cast<std::uintmax_t>(source.st_size);
  const std::uintmax_t given = static_cast<std::uintmax_t>(target.st_blocks) * kBlock;
  return {repair.target(), bytes > given ? bytes - given : 0};
}

std::string whyNotDone(const Repair& repair) {
  if (sameContents(loadCopy(repair.source()), loadCopy(repair.target()))) return "";
  const std::string obstacle = obstacleTo(repair);
  return obstacle.empty() ? "the copy did not arrive whole" : obstacle;
}

std::string carryOut(const Repair& repair) {
  std::string obstacle = obstacleTo(repair);
  if (!obstacle.empty()) return obstacle;
  workingOn(repair.target());
  const std::string lock = pathOf(Place::Main, repair.name);
  if (cfgLockFile(lock.c_str()) != 0) return lastComplaint();
  // The library's save would empty the main copy, the only good one, before it rewrites the backup.
  cfgSyncCfgFile(repair.source().c_str(), repair.target().c_str());
  sync();
  CFG_UnlockFile(argument(lock));
  return whyNotDone(repair);
}

}  // namespace camcfg::tool::device
