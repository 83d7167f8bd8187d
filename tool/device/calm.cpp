#include "device/calm.h"

#include <camcfg/types.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <set>
#include <thread>

#include "base/plain_text.h"

namespace camcfg::tool::device {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto kQuiet = 300ms;
constexpr auto kLongest = 3000ms;
constexpr auto kInterval = 10ms;

// A lease on a file that nobody has open for writing; below 0 without one, with EAGAIN for a file
// that somebody is writing.
int lease(const std::string& path) {
  struct stat status {};
  errno = ENOENT;
  if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return -1;
  // Whoever then wants to write has this process signalled, which would end it.
  std::signal(SIGIO, SIG_IGN);
  const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0 || fcntl(fd, F_SETLEASE, F_RDLCK) == 0) return fd;
  const int error = errno;
  close(fd);
  errno = error;
  return -1;
}

bool isMain(const std::string& path) {
  return beginsWith(path, CFG_DIR_MAIN "/");
}

bool isBackupAlike(const std::string& path) {
  return !isMain(path) || readFile(path) == readFile(pathOf(Place::Backup, path));
}

}  // namespace

Signature signatureOf(const std::string& path) {
  struct stat status {};
  const bool exists = stat(path.c_str(), &status) == 0;
  if (!exists && stat(directoryOf(path).c_str(), &status) != 0) return {};
  return {static_cast<std::int64_t>(status.st_dev),
          static_cast<std::int64_t>(status.st_ino),
          exists ? status.st_size : -1,
          status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec,
          status.st_ctim.tv_sec,
          status.st_ctim.tv_nsec};
}

std::chrono::milliseconds ageOf(const Signature& signature) {
  const auto changed = std::chrono::seconds(signature[5]) + std::chrono::nanoseconds(signature[6]);
  const auto age = std::chrono::system_clock::now().time_since_epoch() - changed;
  return std::max(std::chrono::duration_cast<std::chrono::milliseconds>(age), 0ms);
}

bool isOpenForWriting(const std::string& path) {
  const Descriptor leased(lease(path));
  return !leased && errno == EAGAIN;
}

Calm::Calm() : noted_(latest()) {}

// What was seen a while ago is as good a beginning: a file that has changed since is read again once
// more, if there is any doubt.
Calm::Files& Calm::latest() {
  static Files files = filesNow();
  return files;
}

Calm::Files Calm::filesNow() {
  std::set<std::string> names;
  for (const char* path : {CFG_FILE_BUSINESS, CFG_FILE_MPP, CFG_FILE_PRESET})
    names.insert(nameOf(path));
  for (const char* directory : {CFG_DIR_MAIN, CFG_DIR_BACKUP})
    for (const std::string& name : xmlNamesIn(directory)) names.insert(name);
  Files files;
  for (const std::string& name : names)
    for (const Place place : {Place::Main, Place::Backup})
      files[pathOf(place, name)] = signatureOf(pathOf(place, name));
  return files;
}

bool Calm::lookAgain() {
  if (!deadline_) deadline_ = Clock::now() + kLongest;
  Files seen = noted_;
  for (auto since = Clock::now();;) {
    const Files now = filesNow();
    if (now != seen) since = Clock::now();
    seen = now;
    const auto all = [&](auto condition) { return std::all_of(now.begin(), now.end(), condition); };
    const bool isQuiet = Clock::now() - since >= kQuiet ||
                         all([](const auto& file) { return ageOf(file.second) >= kQuiet; }) ||
                         all([](const auto& file) { return isBackupAlike(file.first); });
    const auto isClosed = [](const auto& file) {
      return !isMain(file.first) || !isOpenForWriting(file.first);
    };
    // A save may have ended between the look at the files and the look at who writes them.
    if (isQuiet && all(isClosed) && filesNow() == now) {
      const bool isChanged = now != noted_;
      noted_ = latest() = now;
      return isChanged;
    }
    if (Clock::now() >= *deadline_) return false;
    std::this_thread::sleep_for(kInterval);
  }
}

Copy loadCalmly(const std::string& path) {
  return calmly([&] { return loadCopy(path); },
                [](const Copy& copy) { return copy.state != State::Good; });
}

ReadLeases::ReadLeases(const std::vector<std::string>& paths) {
  const auto deadline = Clock::now() + kLongest;
  for (const std::string& path : paths) {
    int file = lease(path);
    for (; file < 0 && errno == EAGAIN && Clock::now() < deadline; file = lease(path))
      std::this_thread::sleep_for(kInterval);
    if (file >= 0) files_.emplace_back(file);
  }
}

}  // namespace camcfg::tool::device
