#include "camcfg/testkit/device_root.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "testkit/enter_root.h"

namespace camcfg::testkit {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const std::string& what, const std::string& why) {
  throw std::runtime_error("scratch device: " + what + ": " + why);
}

int openDirectory(const char* path) {
  const int fd = open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (fd < 0) fail(path, std::strerror(errno));
  return fd;
}

std::string makeTemporaryDirectory() {
  const char* parent = std::getenv("TMPDIR");
  std::string pattern = std::string(parent == nullptr ? "/tmp" : parent) + "/camcfg-device-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) fail(pattern, std::strerror(errno));
  return pattern;
}

}  // namespace

DeviceRoot::DeviceRoot(std::string hostPath) : hostPath_(std::move(hostPath)) {}

// Delegates, so that the destructor removes the tree even when laying out or entering fails.
DeviceRoot::DeviceRoot(Entry entry) : DeviceRoot(makeTemporaryDirectory()) {
  for (const char* directory : {"/cfg0", "/cfg1", "/app/resource/defcfg", "/app/resource/language"})
    makeDirectory(directory);
  if (entry == Enter) enter();
}

void DeviceRoot::enter() {
  if (entered_) return;
  outsideRoot_ = openDirectory("/");
  outsideDirectory_ = openDirectory(".");
  const std::string error = enterRoot(hostPath_);
  if (!error.empty()) fail(hostPath_, error);
  entered_ = true;
}

DeviceRoot::~DeviceRoot() {
  if (entered_ && (fchdir(outsideRoot_) != 0 || chroot(".") != 0 || fchdir(outsideDirectory_) != 0))
    abort();
  if (outsideRoot_ >= 0) close(outsideRoot_);
  if (outsideDirectory_ >= 0) close(outsideDirectory_);
  std::error_code ignored;
  fs::remove_all(hostPath_, ignored);
}

// Entered, the device's own paths are the process's paths; outside, they begin with the temporary
// directory.
std::string DeviceRoot::inside(const std::string& path) const {
  return entered_ ? path : hostPath_ + path;
}

void DeviceRoot::write(const std::string& path, const std::string& contents) const {
  makeDirectory(fs::path(path).parent_path());
  std::ofstream file(inside(path), std::ios::binary | std::ios::trunc);
  file << contents;
  if (!file.flush()) fail(path, "cannot be written");
}

std::string DeviceRoot::read(const std::string& path) const {
  std::ifstream file(inside(path), std::ios::binary);
  if (!file) fail(path, "cannot be read");
  return {std::istreambuf_iterator<char>(file), {}};
}

bool DeviceRoot::exists(const std::string& path) const {
  return fs::exists(fs::symlink_status(inside(path)));
}

void DeviceRoot::remove(const std::string& path) const {
  fs::remove_all(inside(path));
}

void DeviceRoot::makeDirectory(const std::string& path) const {
  fs::create_directories(inside(path));
}

std::vector<std::string> DeviceRoot::list(const std::string& path) const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(inside(path)))
    names.push_back(entry.path().filename());
  std::sort(names.begin(), names.end());
  return names;
}

void DeviceRoot::copyFromHost(const std::string& hostDirectory, const std::string& path) const {
  if (entered_) fail(hostDirectory, "fill the device before entering it");
  makeDirectory(path);
  fs::copy(hostDirectory, inside(path),
           fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

}  // namespace camcfg::testkit
