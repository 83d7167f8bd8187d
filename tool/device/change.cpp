#include "device/change.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "base/library_log.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/calm.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

std::string directoryOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

bool maybeWritten(const std::string& path) {
  return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

std::string cannotWrite(const std::string& path) {
  return "cannot write " + path + ": " + std::strerror(errno);
}

// An existing file is rewritten in its place; only a new one needs its directory's permission.
std::string whyNotPermitted(const std::string& path) {
  const std::string directory = directoryOf(path);
  struct stat status {};
  if (stat(directory.c_str(), &status) != 0) return cannotWrite(path);
  if (stat(path.c_str(), &status) != 0)
    return errno == ENOENT && maybeWritten(directory) ? "" : cannotWrite(path);
  if (!S_ISREG(status.st_mode))
    return "cannot write " + path + ": it is not a regular file; move it away";
  return maybeWritten(path) ? "" : cannotWrite(path);
}

// What is to be written onto one file system, in whole blocks.
struct Load {
  std::string paths;
  std::uintmax_t needed = 0;
  std::uintmax_t free = 0;
  bool known = false;

  void add(const Writing& writing, const struct statvfs& space) {
    const std::uintmax_t block = space.f_frsize == 0 ? 1 : space.f_frsize;
    paths += (paths.empty() ? "" : " and ") + writing.path;
    needed += (writing.bytes + block - 1) / block * block;
    free = space.f_bavail * block;
    known = space.f_blocks != 0;
  }
};

// Both copies are written while the space of the previous ones may not be free yet.
void addWritings(const std::string& path, std::size_t bytes, std::vector<Writing>& writings) {
  for (const Place place : {Place::Main, Place::Backup})
    writings.push_back({pathOf(place, path), bytes});
}

bool holds(const Copy& copy, const std::string& contents) {
  return copy.loads() && written(*copy.document) == contents;
}

// How a file is left that was to be put back, and whether it is as it was.
std::pair<bool, std::string> putBack(const std::string& path, tinyxml2::XMLDocument& former) {
  const std::string contents = written(former);
  if (holds(loadCopy(path), contents)) return {true, "nothing was changed"};
  CFG_SaveFile(&former, argument(path), BU_FALSE);
  if (!holds(loadCopy(path), contents))
    return {false,
            "the previous contents could not be restored; make room and run 'camcfg verify'"};
  const std::string backup = pathOf(Place::Backup, path);
  const bool isWhole = holds(loadCopy(backup), contents);
  return {isWhole, "the previous contents were restored" +
                       (isWhole ? std::string() : ", but not in " + backup)};
}

// What became of a change.
struct Attempt {
  Copy main;                 // afterwards
  std::string fault;         // empty if it was made
  bool isOver = false;       // another attempt would do nothing else
  bool isDisturbed = false;  // another program saved the file meanwhile
};

constexpr int kAttempts = 3;

// Another program that loaded the file before the change saves what it loaded shortly after it.
// Where programs are kept apart, or nobody has saved lately, nobody is expected to.
Copy readAgain(const std::string& path, const Signature& before) {
  constexpr std::chrono::milliseconds kLately(1000);
  constexpr std::chrono::milliseconds kShortly(20);
  if (ageOf(before) < kLately && !whyNotKeptApart().empty()) std::this_thread::sleep_for(kShortly);
  return loadCalmly(path);
}

void requireBackup(const Change& change) {
  const std::string backup = pathOf(Place::Backup, change.path);
  const bool isAlike = calmly([&] { return sameContents(loadCopy(change.path), loadCopy(backup)); },
                              [](bool alike) { return !alike; });
  if (!isAlike)
    throw Refusal(change.what + ": stored in " + change.path + " but not in its backup " + backup +
                  "; run 'camcfg verify --resync'");
}

Document requireRoom(const Change& change) {
  Document former = requireDocument(change.path);
  std::vector<Writing> writings;
  addWritings(change.path, written(*former).size() + change.growth, writings);
  const std::string obstacle = whyNotWritable(writings);
  if (!obstacle.empty()) throw Refusal(change.what + ": " + obstacle);
  return former;
}

// Whether the file was saved, and the value that was there before the change is there again.
bool isAsBefore(const Change& change, tinyxml2::XMLDocument& former, tinyxml2::XMLDocument& main) {
  return change.standing ? change.standing(main) == change.standing(former)
                         : written(main) == written(former);
}

Attempt attemptTo(const Change& change, tinyxml2::XMLDocument& former) {
  const Signature before = signatureOf(change.path);
  forgetComplaint();
  const bool accepted = change.make();
  const Signature after = signatureOf(change.path);
  const std::string complaint = lastComplaint();

  Attempt attempt;
  attempt.main = readAgain(change.path, before);
  const bool loads = attempt.main.loads();
  attempt.isOver = accepted && loads && change.arrived(*attempt.main.document);
  if (attempt.isOver) return attempt;
  attempt.fault = accepted ? "the change is not in " + change.path : "the library refused it";
  if (!complaint.empty()) attempt.fault += " (" + complaint + ")";
  // What the library could not load, but loads now, another program was saving.
  const bool wasHalfWritten = loads && complaint == "Load file " + change.path + " fail";
  attempt.isDisturbed =
      loads &&
      (wasHalfWritten || signatureOf(change.path) != after ||
       (accepted && after != before && isAsBefore(change, former, *attempt.main.document)));
  attempt.isOver = !loads || !(accepted || wasHalfWritten);
  return attempt;
}

std::string undone(const Change& change, const Copy& main) {
  std::string fault =
      change.what + ": another program's save undid it " + std::to_string(kAttempts) + " times";
  if (!change.standing) return fault;
  const std::optional<std::string> value = change.standing(*main.document);
  return fault + "; " + (value ? quoted(*value) : "nothing") + " is set now";
}

}  // namespace

std::string whyNotWritable(const std::vector<Writing>& writings) {
  std::map<dev_t, Load> loads;
  for (const Writing& writing : writings) {
    std::string fault = whyNotPermitted(writing.path);
    if (!fault.empty()) return fault;

    const std::string directory = directoryOf(writing.path);
    struct stat status {};
    struct statvfs space {};
    if (stat(directory.c_str(), &status) == 0 && statvfs(directory.c_str(), &space) == 0)
      loads[status.st_dev].add(writing, space);
  }
  for (const auto& [device, load] : loads)
    if (load.known && load.needed > load.free)
      return "no room for " + load.paths + ": " + std::to_string(load.needed) +
             " bytes are needed and " + std::to_string(load.free) + " are free";
  return "";
}

void makeChange(const Change& change) {
  const Turn turn({change.path.c_str()});
  const Document former = requireRoom(change);
  Attempt attempt;
  bool isDisturbed = false;
  for (int left = kAttempts; left > 0 && !attempt.isOver; --left) {
    attempt = attemptTo(change, *former);
    isDisturbed = isDisturbed || attempt.isDisturbed;
  }
  if (attempt.fault.empty()) {
    requireBackup(change);
    return noteChange();
  }
  if (isDisturbed && attempt.main.loads()) throw Refusal(undone(change, attempt.main));
  throw Refusal(change.what + ": " + attempt.fault + "; " + putBack(change.path, *former).second);
}

FormerFiles::FormerFiles(const std::map<std::string, std::size_t>& growth) {
  std::vector<Writing> writings;
  for (const auto& [path, bytes] : growth) {
    Document& document = documents_[path];
    document = requireDocument(path);
    addWritings(path, written(*document).size() + bytes, writings);
  }
  const std::string fault = whyNotWritable(writings);
  if (!fault.empty()) throw Refusal(fault);
}

std::vector<std::string> FormerFiles::putBack() {
  std::vector<std::string> faults;
  for (const auto& [path, document] : documents_) {
    const auto [isAsItWas, text] = device::putBack(path, *document);
    if (!isAsItWas) faults.push_back(std::string(path).append(": ").append(text));
  }
  return faults;
}

}  // namespace camcfg::tool::device
