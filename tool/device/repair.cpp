#include "device/repair.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "base/concat.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "base/progress.h"
#include "device/advice.h"
#include "device/calm.h"
#include "device/in_the_way.h"
#include "device/room.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

Writing writingOf(const Repair& repair) {
  struct stat source {};
  stat(repair.source().c_str(), &source);
  return replacing(repair.target(), static_cast<std::uintmax_t>(source.st_size));
}

// What prevents a repair.
std::string obstacleTo(const Repair& repair) {
  if (!repair.fitsTheCopy()) return kNameTooLong;
  return whyNotWritable({writingOf(repair)});
}

// Why a repair that should have been done was not; empty if the copies are the same now.
std::string whyNotDone(const Repair& repair) {
  const Copy target = loadCopy(repair.target());
  if (sameContents(loadCopy(repair.source()), target)) return "";
  std::string obstacle = obstacleTo(repair);
  if (!obstacle.empty()) return obstacle;
  return target.state == State::Unreadable ? "the copy " + target.fault : "the copy is incomplete";
}

// Replaces a copy through the library, with the main copy's lock held. The other copy of the file is
// only read: whenever the work is cut short, one of the two is whole. What is returned is why it was
// not done; empty if it was.
std::string carryOut(const Repair& repair, const SharedFiles& shared) {
  const std::string other = shared.ofAnotherName(repair.target());
  if (!other.empty()) return sameFileFault(repair.target(), other);
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

void requireWritable(const FileSet& set) {
  const std::string fault = Forecast(set).whyNotVerified();
  if (!fault.empty()) throw Refusal(Status::Unusable, "cannot restore main copies: " + fault);
}

void verifyAsAtStart(const FileSet& set) {
  requireAnyFile(set);
  forgetComplaint();
  if (CFG_VerifyFileFormat() == 0) return;
  const std::string complaint = lastComplaint();
  throw Refusal(Status::Unusable, complaint.empty() ? "out of memory" : complaint);
}

std::string bytesToKeep(const std::string& path) {
  std::optional<std::string> bytes = readFile(path);
  if (!bytes) throw Refusal(concat("cannot keep ", path, ": ", std::strerror(errno)));
  return std::move(*bytes);
}

// A repair and why it was not done; done if there is no fault.
struct Attempt {
  Repair repair;
  std::string fault;
};

// The check of all configuration files, and what became of them.
class Verification {
 public:
  explicit Verification(HostDirectory* keepIn) : keepIn_(keepIn), found_(surveyFiles()) {}

  void startUp() {
    const std::vector<Repair> repairs = startUpRepairs(found_);
    requireWritable(found_);
    for (const Repair& repair : repairs) keep(repair, found_);
    verifyUndisturbed();
    now_ = surveyFiles();
    for (const Repair& repair : repairs) add({repair, whyNotDone(repair)});
  }

  void resync() {
    const SharedFiles shared(now_);
    for (const ConfigFile& file : now_.files) resync(file, shared);
    now_ = surveyFiles();
  }

  Outcome outcome(bool resynced) const {
    Outcome outcome;
    outcome.value = {{"files", Json::array()}, {"kept", kept_}};
    const auto worsen = [&](Status status, const std::string& note) {
      outcome.status = std::max(outcome.status, status);
      outcome.notes.push_back(note);
    };
    for (const auto& [repair, fault] : attempts_)
      if (!fault.empty())
        worsen(repair.to == Place::Main ? Status::Unusable : Status::Refused,
               concat(repair.target(), " was not replaced from ", repair.source(), ": ", fault));
    int outOfSync = 0;
    for (const ConfigFile& file : now_.files) {
      outcome.value["files"].push_back(recordOf(file));
      if (file.main.state != State::Good && !isTold(file))
        worsen(Status::Unusable, concat(file.path(Place::Main), " ", file.main.fault,
                                        Adviser(now_).onCopy(file, Place::Main).outlook));
      outOfSync += file.main.state == State::Good && file.backup.state != State::Good ? 1 : 0;
    }
    if (!resynced && outOfSync != 0)
      outcome.notes.push_back(concat("note: without a backup in sync with the main copy: ",
                                     outOfSync, "; '--resync' brings them up to date"));
    return outcome;
  }

 private:
  // A file that the library finds half written it would replace by its backup.
  void verifyUndisturbed() const {
    std::vector<std::string> usable;
    for (const ConfigFile& file : found_.files)
      if (file.main.loads()) usable.push_back(file.path(Place::Main));
    const ReadLeases unchanged(usable);
    verifyAsAtStart(found_);
  }

  void resync(const ConfigFile& file, const SharedFiles& shared) {
    PairState states{file.main.state, file.backup.state};
    while (const auto repair = nextResync(file.name, states, file.factory.state)) {
      std::string fault;
      try {
        keep(*repair, now_);
        fault = carryOut(*repair, shared);
      } catch (const Refusal& refusal) {
        fault = refusal.what();
      }
      add({*repair, fault});
      if (!fault.empty()) return;
      states = compared(loadCopy(file.path(Place::Main)), loadCopy(file.path(Place::Backup)));
    }
  }

  void add(Attempt attempt) {
    if (attempt.fault.empty()) noteChange();
    attempts_.push_back(std::move(attempt));
  }

  void keep(const Repair& repair, const FileSet& set) {
    const ConfigFile* file = set.find(repair.name);
    if (keepIn_ == nullptr || file == nullptr) return;
    const State state = file->copy(repair.to).state;
    if (state != State::Damaged && state != State::Unreadable && state != State::CutShort &&
        state != State::NoElement)
      return;
    const std::string path = repair.target();
    std::string as = path.substr(1);  // "/cfg0/x.xml" is kept as "cfg0-x.xml"
    as[as.find('/')] = '-';
    kept_.push_back({{"copy", path}, {"as", keepIn_->save(as, bytesToKeep(path))}});
  }

  Json recordOf(const ConfigFile& file) const {
    Json record = {{"name", file.name}, {"checkedAtStart", file.checkedAtStart}};
    const ConfigFile missing;  // which has no copies
    const ConfigFile* found = found_.find(file.name);
    for (const Place place : kPlaces) {
      const Copy& before = (found == nullptr ? missing : *found).copy(place);
      record["found"][wordFor(place)] = wordFor(before.state);
    }
    for (const Place place : kPlaces)
      record["now"][wordFor(place)] = wordFor(file.copy(place).state);
    record["restored"] = {{wordFor(Place::Main), nullptr}, {wordFor(Place::Backup), nullptr}};
    for (const auto& [repair, fault] : attempts_)
      if (fault.empty() && repair.name == file.name)
        record["restored"][wordFor(repair.to)] = wordFor(repair.from);
    return record;
  }

  // Whether a note on its repair says already that a main copy is not good.
  bool isTold(const ConfigFile& file) const {
    return std::any_of(attempts_.begin(), attempts_.end(), [&](const Attempt& attempt) {
      return attempt.repair.name == file.name && attempt.repair.to == Place::Main;
    });
  }

  HostDirectory* keepIn_;
  Json kept_ = Json::array();
  FileSet found_;
  FileSet now_;
  std::vector<Attempt> attempts_;
};

}  // namespace

Outcome verify(HostDirectory* keepIn, bool resync) {
  const Turn turn(Turn::allFiles());
  const std::vector<std::string> made = resync ? makeDirectories() : std::vector<std::string>();
  Verification verification(keepIn);
  verification.startUp();
  if (resync) verification.resync();
  Outcome outcome = verification.outcome(resync);
  for (const std::string& directory : made)
    outcome.notes.push_back(concat("note: ", directory, " did not exist and was made"));
  return outcome;
}

}  // namespace camcfg::tool::device
