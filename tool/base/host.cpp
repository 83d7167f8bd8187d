#include "base/host.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <vector>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "testkit/enter_root.h"

namespace camcfg::tool {
namespace {

constexpr char kPrefix[] = "camcfg-scratch-";
constexpr int kAsDirectory = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

[[noreturn]] void refuse(const std::string& path) {
  throw Refusal::about(path, concat(path, ": ", std::strerror(errno)));
}

int openOrMake(const char* path) {
  mkdir(path, 0777);
  return open(path, kAsDirectory);
}

std::vector<std::unique_ptr<Descriptor>> temporaries;
std::string boot;

// The directory that a new one was made in; below 0, with errno set, if none may be written to.
int makeIn(std::string& name) {
  constexpr int kAttempts = 100;
  if (temporaries.empty()) rememberTemporaries();
  for (const auto& directory : temporaries)
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      name = concat(kPrefix, getpid(), "-", attempt);
      if (mkdirat(directory->get(), name.c_str(), 0700) == 0) return directory->get();
      if (errno != EEXIST) break;
    }
  return -1;
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

// What a run that was killed has left, of this user. A directory is locked as long as it is used; a
// new one is given time to be locked.
void removeLeftIn(int parent) {
  constexpr std::time_t kYoung = 60;
  for (const std::string& name : namesIn(parent)) {
    struct stat status {};
    if (!beginsWith(name, kPrefix) ||
        fstatat(parent, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        status.st_uid != geteuid() || std::time(nullptr) - status.st_mtime < kYoung)
      continue;
    const Descriptor left(openat(parent, name.c_str(), kAsDirectory | O_NOFOLLOW));
    if (!left || flock(left.get(), LOCK_EX | LOCK_NB) != 0) continue;
    removeAllIn(left.get());
    unlinkat(parent, name.c_str(), AT_REMOVEDIR);
  }
}

}  // namespace

bool writeAll(int fd, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t written = ::write(fd, text.data() + done, text.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return true;
}

bool readAll(int fd, std::string& text) {
  char buffer[16384];
  for (;;) {
    const ssize_t got = read(fd, buffer, sizeof buffer);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    text.append(buffer, static_cast<std::size_t>(got));
  }
}

std::optional<std::string> readFile(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  std::string bytes;
  if (!file || !readAll(file.get(), bytes)) return std::nullopt;
  return bytes;
}

std::vector<std::string> namesIn(int directory) {
  std::vector<std::string> names;
  const int fd = openat(directory, ".", kAsDirectory);
  DIR* stream = fdopendir(fd);
  if (stream == nullptr) {
    if (fd >= 0) close(fd);
    return names;
  }
  while (const dirent* entry = readdir(stream))
    if (const std::string_view name = entry->d_name; name != "." && name != "..")
      names.emplace_back(name);
  closedir(stream);
  return names;
}

std::optional<std::string> linkTarget(const std::string& path) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), target, sizeof target);
  if (length < 0) return std::nullopt;
  return std::string(target, static_cast<std::size_t>(length));
}

bool hasEnding(std::string_view name, std::string_view ending) noexcept {
  return name.size() > ending.size() && name.substr(name.size() - ending.size()) == ending;
}

MemoryFile::MemoryFile() : descriptor_(memfd_create("camcfg", MFD_CLOEXEC)) {}

bool MemoryFile::fill(const std::string& text) const {
  return writeAll(get(), text) && lseek(get(), 0, SEEK_SET) == 0;
}

std::string MemoryFile::contents() const {
  std::string text;
  if (lseek(get(), 0, SEEK_SET) == 0) readAll(get(), text);
  return text;
}

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
  refuse(concat(path_, "/", name));
}

std::string HostDirectory::save(const std::string& name, const std::string& bytes) {
  std::string free = name;
  struct stat status {};
  for (int next = 1; fstatat(descriptor_.get(), free.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
       ++next) {
    if (holds(free, bytes)) return concat(path_, "/", free);
    free = concat(name, ".", next);
  }
  write(free, bytes);
  fsync(descriptor_.get());
  return concat(path_, "/", free);
}

void locate(HostFile& file) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(file.path.c_str(), nullptr),
                                                         &std::free);
  struct stat status {};
  if (!real || stat(real.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  const std::string path = real.get();
  const std::size_t slash = path.rfind('/');
  auto directory =
      std::make_shared<const Descriptor>(open(path.substr(0, slash + 1).c_str(), kAsDirectory));
  if (!*directory) return;
  file.directory = std::move(directory);
  file.name = path.substr(slash + 1);
}

void replace(const HostFile& file, const std::string& contents) {
  if (!file.directory) throw Refusal::about(file.path, file.path + ": not a file to be written to");
  const int directory = file.directory->get();
  const Descriptor old(openat(directory, file.name.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  std::string held;
  if (!old || fstat(old.get(), &status) != 0 || !readAll(old.get(), held)) refuse(file.path);
  if (held != file.contents)
    throw Refusal::about(file.path, file.path + ": it has changed since it was read");
  const std::string name = concat(file.name, ".camcfg-", getpid());
  Descriptor fresh(openat(directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
  if (!fresh) refuse(file.path);
  const bool isOwner = fchown(fresh.get(), status.st_uid, status.st_gid) == 0;
  if ((isOwner || status.st_uid == geteuid()) && writeAll(fresh.get(), contents) &&
      fchmod(fresh.get(), status.st_mode & 07777) == 0 && fsync(fresh.get()) == 0 &&
      fresh.close() && renameat(directory, name.c_str(), directory, file.name.c_str()) == 0) {
    fsync(directory);
    return;
  }
  const int error = errno;
  unlinkat(directory, name.c_str(), 0);
  errno = error;
  refuse(file.path);
}

void rememberTemporaries() {
  const char* chosen = std::getenv("TMPDIR");
  temporaries.clear();
  for (const char* path : {chosen, "/dev/shm", "/tmp"}) {
    auto directory = std::make_unique<Descriptor>(path == nullptr ? -1 : open(path, kAsDirectory));
    if (*directory) temporaries.push_back(std::move(directory));
  }
}

void rememberBoot() {
  const Descriptor file(open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC));
  std::string text;
  if (file && readAll(file.get(), text)) boot = text.substr(0, text.find('\n'));
}

const std::string& bootName() {
  return boot;
}

HostTemporary::HostTemporary()
    : parent_(makeIn(name_)),
      descriptor_(parent_ < 0 ? -1 : openat(parent_, name_.c_str(), kAsDirectory)) {
  if (descriptor_) {
    flock(descriptor_.get(), LOCK_SH | LOCK_NB);
    removeLeftIn(parent_);
    return;
  }
  const int error = errno;
  if (parent_ >= 0) unlinkat(parent_, name_.c_str(), AT_REMOVEDIR);
  throw Refusal(std::string("no temporary directory can be made in TMPDIR, /dev/shm or /tmp: ") +
                std::strerror(error));
}

HostTemporary::~HostTemporary() {
  removeAllIn(descriptor_.get());
  unlinkat(parent_, name_.c_str(), AT_REMOVEDIR);
}

void HostTemporary::write(const std::string& directory, const std::string& name,
                          const std::string& text) const {
  mkdirat(descriptor_.get(), directory.c_str(), 0700);
  const std::string path = concat(directory, "/", name);
  Descriptor file(openat(descriptor_.get(), path.c_str(),
                         O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file || !writeAll(file.get(), text) || !file.close())
    throw Refusal(concat("temporary file ", name, ": ", std::strerror(errno)));
}

std::string HostTemporary::enter() const {
  return fchdir(descriptor_.get()) == 0 ? enterRoot(".") : std::strerror(errno);
}

}  // namespace camcfg::tool
