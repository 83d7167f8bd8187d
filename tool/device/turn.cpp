#include "device/turn.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <cerrno>
#include <cstring>
#include <thread>

#include "base/concat.h"
#include "base/host.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "device/files.h"

namespace camcfg::tool::device {
namespace {

using Clock = std::chrono::steady_clock;

constexpr char kLocks[] = "/run/camcfg";
constexpr std::chrono::milliseconds kLookInterval(10);

bool isTaken = false;

int openAsDirectory(const char* path) {
  return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

int openLocked() {
  const int directory = openAsDirectory(CFG_DIR_MAIN);
  return directory >= 0 ? directory : openAsDirectory("/");
}

// "another camcfg (process 217)", as far as the kernel's list of locks can be read from here.
std::string holderOf(int directory) {
  struct stat status {};
  fstat(directory, &status);
  char file[64];
  std::snprintf(file, sizeof file, "%02x:%02x:%lu", major(status.st_dev), minor(status.st_dev),
                static_cast<unsigned long>(status.st_ino));
  const std::string locks = readFile("/proc/locks").value_or("");
  for (const std::string& line : parts(locks, '\n')) {
    // "1: FLOCK ADVISORY WRITE 217 08:01:131090 0 EOF"
    const std::vector<std::string> word = wordsIn(line);
    if (word.size() > 5 && word[1] == "FLOCK" && word[5] == file)
      return concat("another camcfg (process ", word[4], ")");
  }
  return "another camcfg";
}

void waitFor(int directory, const Patience& patience) {
  bool isSaid = false;
  for (const auto start = Clock::now(); flock(directory, LOCK_EX | LOCK_NB) != 0;) {
    if (errno != EWOULDBLOCK && errno != EINTR) return;
    const auto waited = Clock::now() - start;
    if (waited >= patience.most)
      throw Refusal(concat(holderOf(directory),
                           " is changing the device and did not finish within ",
                           patience.most.count() / 1000, " s; nothing was changed"));
    if (!isSaid && waited >= patience.untilSaid)
      announce(concat("waiting for ", holderOf(directory), ", which is changing the device"));
    isSaid = isSaid || waited >= patience.untilSaid;
    std::this_thread::sleep_for(kLookInterval);
  }
}

}  // namespace

const Turn::Files& Turn::allFiles() {
  static const Files all = {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET};
  return all;
}

Turn::Turn(const Files& files, const Patience& patience, std::vector<std::string>* finished) {
  if (files.empty() || isTaken) return;
  Descriptor directory(openLocked());
  if (directory) waitFor(directory.get(), patience);
  directory_.emplace(std::move(directory));
  isTaken = true;
  try {
    lockAll(hasLeftJournal() ? allFiles() : files);
    const std::vector<std::string> lines = finishInterrupted();
    if (finished != nullptr)
      *finished = lines;
    else
      for (const std::string& line : lines) announce(line);
  } catch (const Refusal&) {
    release();
    throw;
  }
}

Turn::~Turn() {
  if (directory_) release();
}

// The library's own calls lock the path as they name it. They share the lock between processes with
// whoever in this process has it by another spelling.
void Turn::lockAll(const Files& files) {
  if (!whyNotKeptApart().empty()) return;
  for (const char* path : files) {
    const std::string spelling = std::string(CFG_DIR_MAIN "/./") + nameOf(path);
    if (cfgLockFile(spelling.c_str()) != 0)
      throw Refusal(std::string(path) +
                    " is locked by another program and was not released within 10 s; nothing was "
                    "changed");
    locked_.push_back(spelling);
  }
}

void Turn::release() {
  isTaken = false;
  for (const std::string& spelling : locked_) cfgUnlockFile(spelling.c_str());
  locked_.clear();
}

std::optional<RecordedChange> interruptedChange() {
  if (!hasLeftJournal()) return std::nullopt;
  const Descriptor directory(openLocked());
  const bool isAtWork = directory && flock(directory.get(), LOCK_SH | LOCK_NB) != 0;
  return isAtWork ? std::nullopt : waitingChange();
}

std::string whyNotKeptApart() {
  struct stat status {};
  const std::string path = kLocks;
  if (lstat(kLocks, &status) != 0)
    return path + (errno == ENOENT || errno == ENOTDIR ? " does not exist"
                                                       : std::string(": ") + std::strerror(errno));
  if (!S_ISDIR(status.st_mode)) return path + " is not a directory";
  if (faccessat(AT_FDCWD, kLocks, W_OK | X_OK, AT_EACCESS) != 0)
    return concat(path, ": ", std::strerror(errno));
  return "";
}

}  // namespace camcfg::tool::device
