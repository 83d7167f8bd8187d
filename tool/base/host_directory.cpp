#include "base/host_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "base/refusal.h"
#include "testkit/enter_root.h"

namespace camcfg::tool {
namespace {

constexpr int kAsDirectory = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

[[noreturn]] void refuse(const std::string& path) {
  throw Refusal(path + ": " + std::strerror(errno));
}

int openOrMake(const char* path) {
  mkdir(path, 0777);
  return open(path, kAsDirectory);
}

std::vector<std::unique_ptr<Descriptor>>& temporaries() {
  static std::vector<std::unique_ptr<Descriptor>> directories;
  return directories;
}

std::string attemptName(int attempt) {
  return "camcfg-" + std::to_string(getpid()) + "-" + std::to_string(attempt);
}

// The directory that a new one was made in; below 0, with errno set, if none may be written to.
int makeIn(std::string& name) {
  constexpr int kAttempts = 100;
  if (temporaries().empty()) rememberTemporaries();
  for (const auto& directory : temporaries())
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      name = attemptName(attempt);
      if (mkdirat(directory->get(), name.c_str(), 0700) == 0) return directory->get();
      if (errno != EEXIST) break;
    }
  return -1;
}

std::vector<std::string> namesIn(int directory) {
  std::vector<std::string> names;
  DIR* stream = fdopendir(openat(directory, ".", kAsDirectory));
  if (stream == nullptr) return names;
  while (const dirent* entry = readdir(stream)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(stream);
  return names;
}

// Files, and directories of files.
void removeAllIn(int directory) {
  for (const std::string& name : namesIn(directory)) {
    if (unlinkat(directory, name.c_str(), 0) == 0) continue;
    const Descriptor inner(openat(directory, name.c_str(), kAsDirectory | O_NOFOLLOW));
    if (inner) removeAllIn(inner.get());
    unlinkat(directory, name.c_str(), AT_REMOVEDIR);
  }
}

}  // namespace

HostDirectory::HostDirectory(const std::string& path)
    : path_(path), descriptor_(openOrMake(path.c_str())) {
  if (!descriptor_) refuse(path);
}

bool HostDirectory::holds(const std::string& name, const std::string& bytes) const {
  const Descriptor file(
      openat(descriptor_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  std::string held;
  return file && readAll(file.get(), held) && held == bytes;
}

void HostDirectory::write(const std::string& name, const std::string& bytes) {
  Descriptor file(
      openat(descriptor_.get(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (file && writeAll(file.get(), bytes) && fsync(file.get()) == 0 && file.close()) return;
  const int error = errno;
  if (error != EEXIST) unlinkat(descriptor_.get(), name.c_str(), 0);
  errno = error;
  refuse(path_ + "/" + name);
}

std::string HostDirectory::save(const std::string& name, const std::string& bytes) {
  std::string free = name;
  struct stat status {};
  for (int next = 1; fstatat(descriptor_.get(), free.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
       ++next) {
    if (holds(free, bytes)) return path_ + "/" + free;
    free = name + "." + std::to_string(next);
  }
  write(free, bytes);
  fsync(descriptor_.get());
  return path_ + "/" + free;
}

void rememberTemporaries() {
  const char* chosen = std::getenv("TMPDIR");
  temporaries().clear();
  for (const char* path : {chosen, "/tmp", "/dev/shm"}) {
    auto directory = std::make_unique<Descriptor>(path == nullptr ? -1 : open(path, kAsDirectory));
    if (*directory) temporaries().push_back(std::move(directory));
  }
}

HostTemporary::HostTemporary()
    : parent_(makeIn(name_)),
      descriptor_(parent_ < 0 ? -1 : openat(parent_, name_.c_str(), kAsDirectory)) {
  if (descriptor_) return;
  const int error = errno;
  if (parent_ >= 0) unlinkat(parent_, name_.c_str(), AT_REMOVEDIR);
  throw Refusal(std::string("no temporary directory can be made in TMPDIR, /tmp or /dev/shm: ") +
                std::strerror(error));
}

HostTemporary::~HostTemporary() {
  try {
    removeAllIn(descriptor_.get());
  } catch (const std::bad_alloc&) {
    // What is left there is the system's to remove.
  }
  unlinkat(parent_, name_.c_str(), AT_REMOVEDIR);
}

void HostTemporary::write(const std::string& directory, const std::string& name,
                          const std::string& text) const {
  mkdirat(descriptor_.get(), directory.c_str(), 0700);
  const std::string path = directory + "/" + name;
  Descriptor file(openat(descriptor_.get(), path.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file || !writeAll(file.get(), text) || !file.close())
    throw Refusal("temporary file " + name + ": " + std::strerror(errno));
}

std::string HostTemporary::enter() const {
  return fchdir(descriptor_.get()) == 0 ? enterRoot(".") : std::strerror(errno);
}

}  // namespace camcfg::tool
