#include "fuzz/device.h"

#include <camcfg/store.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "camcfg/testkit/device_root.h"
#include "support/quick_saves.h"
#include "testkit/enter_root.h"

namespace camcfg::fuzz {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDirectories[] = {CFG_DIR_MAIN, CFG_DIR_BACKUP, CFG_DIR_DEFAULT,
                                        CFG_DIR_LANGUAGE};

// The working directory stays outside when the device's root is entered, so that paths relative to
// it always lead to the host: libFuzzer saves a crasher from wherever it was found.
class Device {
 public:
  Device() {
    tests::insteadOfSync = [] {};
    const int directory = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    // The first time in the way that also gets the permission; from then on only by chroot().
    const std::string error = enterRoot(root_.hostPath());
    if (!error.empty()) throw std::runtime_error("scratch device: " + error);
    entered_ = true;
    leave();
    if (fchdir(directory) != 0) abort();
    close(directory);
  }

  void enter() {
    std::fflush(stdout);
    output_ = dup(STDOUT_FILENO);
    dup2(nowhere_, STDOUT_FILENO);
    entered_ = chroot(root_.hostPath().c_str()) == 0;
    if (!entered_) throw std::runtime_error("scratch device: cannot be entered");
  }

  void leave() {
    if (!entered_) return;
    entered_ = false;
    const int directory = open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (fchdir(outside_) != 0 || chroot(".") != 0 || fchdir(directory) != 0) abort();
    close(directory);
    if (output_ < 0) return;
    std::fflush(stdout);
    dup2(output_, STDOUT_FILENO);
    close(output_);
    output_ = -1;
  }

 private:
  testkit::DeviceRoot root_{testkit::DeviceRoot::StayOut};
  int outside_ = open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
  int nowhere_ = open("/dev/null", O_WRONLY | O_CLOEXEC);
  int output_ = -1;
  bool entered_ = false;
};

using Files = std::map<std::string, std::string>;

Files readSmallFiles() {
  Files files;
  for (const fs::directory_entry& entry : fs::directory_iterator(CAMCFG_FUZZ_DEVICE))
    files[entry.path().filename()] = readFile(entry.path());
  return files;
}

const Files& smallFiles() {
  static const Files files = readSmallFiles();
  return files;
}

// In memory, unless a place is given.
Device& device() {
  if (access("/dev/shm", R_OK | W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 0);
  static Device device;
  return device;
}

class Stay {
 public:
  Stay() { device().enter(); }
  ~Stay() { device().leave(); }
  Stay(const Stay&) = delete;
  Stay& operator=(const Stay&) = delete;
};

void removeFiles() {
  for (const char* directory : kDirectories)
    for (const fs::directory_entry& entry : fs::directory_iterator(directory))
      fs::remove_all(entry.path());
}

bool isLocked(const tag_CFG_FILE_LOCK& lock) {
  if (pthread_mutex_trylock(lock.pstMutex) != 0) return true;
  pthread_mutex_unlock(lock.pstMutex);
  return lock.s32Locked != 0;
}

}  // namespace

void prepareDevice() {
  smallFiles();
  device();
}

void inDevice(const std::function<void()>& run) {
  const Stay stay;
  removeFiles();
  run();
  for (const auto& [path, lock] : g_mapFileLock)
    require(!isLocked(lock), "the lock of " + path + " is released");
}

void leaveDevice() {
  device().leave();
}

void writeFile(const std::string& path, const std::string& contents) {
  if (contents == kNoFile)
    fs::remove(path);
  else
    std::ofstream(path, std::ios::binary) << contents;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return kNoFile;
  return {std::istreambuf_iterator<char>(file), {}};
}

const std::string& smallFile(const std::string& name) {
  return smallFiles().at(name);
}

void releaseIfLocked(const char* path) {
  const auto lock = g_mapFileLock.find(path);
  if (lock != g_mapFileLock.end() && lock->second.s32Locked != 0) cfgUnlockFile(path);
}

std::string asReadBack(const std::string& text) {
  std::string read;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    const bool endsLine = text[i] == '\r' || text[i] == '\n';
    read += endsLine ? '\n' : text[i];
    // A pair of both, either way round, is one line end.
    if (endsLine && next != text[i] && (next == '\r' || next == '\n')) ++i;
  }
  return read;
}

}  // namespace camcfg::fuzz
