#include "device/state_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/concat.h"
#include "base/outcome.h"

namespace camcfg::tool::device {
namespace {

constexpr int kAsDirectory = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// Nobody but an intruder fills a directory with more.
constexpr std::size_t kMostNames = 10000;

[[noreturn]] void refuseFolder(const std::string& why) {
  throw Refusal(concat(kStateDirectory, " ", why));
}

// Links are reported as "not a directory" as well.
[[noreturn]] void refuseForErrno() {
  if (errno == ENOTDIR || errno == ELOOP) refuseFolder("is not a directory; move it away");
  refuseFolder(std::string("cannot be used: ") + std::strerror(errno));
}

}  // namespace

StateFolder StateFolder::checked(int fd) {
  StateFolder folder(fd);
  struct stat status {};
  if (!folder || fstat(fd, &status) != 0) refuseForErrno();
  if (status.st_uid != 0 && status.st_uid != geteuid())
    refuseFolder("belongs to another user; move it away");
  return folder;
}

StateFolder StateFolder::existing() {
  const int fd = ::open(kStateDirectory, kAsDirectory);
  struct stat status {};
  if (fd < 0 && lstat(kStateDirectory, &status) != 0 && (errno == ENOENT || errno == ENOTDIR))
    return StateFolder(-1);
  return checked(fd >= 0 ? fd : ::open(kStateDirectory, kAsDirectory));
}

StateFolder StateFolder::made() {
  mkdir(kStateDirectory, 0700);
  const int error = errno;
  const int fd = ::open(kStateDirectory, kAsDirectory);
  // Of a directory that is not there, what counts is why it could not be made.
  if (fd < 0 && errno == ENOENT) errno = error;
  return checked(fd);
}

StateFolder StateFolder::folder(const char* name) const {
  return StateFolder(*this ? openat(descriptor_.get(), name, kAsDirectory) : -1);
}

StateFolder StateFolder::madeFolder(const char* name) const {
  mkdirat(descriptor_.get(), name, 0700);
  return folder(name);
}

Descriptor StateFolder::open(const std::string& name) const {
  return Descriptor(
      openat(descriptor_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

bool StateFolder::seal(const std::string& name, bool isSealed) const {
  return fchmodat(descriptor_.get(), name.c_str(), isSealed ? 0400 : 0600, 0) == 0;
}

bool StateFolder::has(const std::string& name, const Descriptor& file) const {
  struct stat named {};
  struct stat opened {};
  return *this && fstat(file.get(), &opened) == 0 &&
         fstatat(descriptor_.get(), name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

StateFile StateFolder::read(const std::string& name, std::size_t most) const {
  StateFile file;
  struct stat status {};
  file.isThere =
      *this && fstatat(descriptor_.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
  if (!file.isThere) return file;
  const Descriptor opened = open(name);
  if (!opened || fstat(opened.get(), &status) != 0)
    file.fault = S_ISLNK(status.st_mode) ? "it is a link" : std::strerror(errno);
  else if (!S_ISREG(status.st_mode))
    file.fault = "it is not a regular file";
  else if (static_cast<std::size_t>(status.st_size) > most)
    file.fault = "it is too long";
  else if (!readAll(opened.get(), file.bytes))
    file.fault = std::strerror(errno);
  return file;
}

std::size_t StateFolder::size(const std::string& name) const {
  struct stat status {};
  const bool isThere =
      *this && fstatat(descriptor_.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
  return isThere ? static_cast<std::size_t>(status.st_size) : 0;
}

bool StateFolder::write(const std::string& name, const std::string& bytes) const {
  unlinkat(descriptor_.get(), name.c_str(), 0);
  Descriptor file(openat(descriptor_.get(), name.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file) return false;
  if (writeAll(file.get(), bytes) && file.close()) return true;
  const int error = errno;
  unlinkat(descriptor_.get(), name.c_str(), 0);
  errno = error;
  return false;
}

bool StateFolder::rename(const std::string& name, const StateFolder& to,
                         const std::string& other) const {
  return renameat(descriptor_.get(), name.c_str(), to.descriptor_.get(), other.c_str()) == 0;
}

bool StateFolder::remove(const std::string& name) const {
  return unlinkat(descriptor_.get(), name.c_str(), 0) == 0 ||
         unlinkat(descriptor_.get(), name.c_str(), AT_REMOVEDIR) == 0;
}

std::vector<std::string> StateFolder::names() const {
  std::vector<std::string> names;
  const int fd = *this ? openat(descriptor_.get(), ".", kAsDirectory) : -1;
  DIR* stream = fd < 0 ? nullptr : fdopendir(fd);
  if (stream == nullptr) return names;
  while (const dirent* entry = names.size() < kMostNames ? readdir(stream) : nullptr) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(stream);
  return names;
}

bool StateFolder::flush() const {
  if (syncfs(descriptor_.get()) == 0) return true;
  if (errno != ENOSYS) return false;
  sync();
  return true;
}

}  // namespace camcfg::tool::device
