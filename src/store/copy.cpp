#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/text.h"
#include "camcfg/store.h"

namespace {

// What system() returns for a command that ends with status 1.
constexpr int kFailed = 1 << 8;

constexpr std::size_t kCommandSize = 128;

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return fd_; }
  bool close() {
    const int fd = fd_;
    fd_ = -1;
    return fd < 0 || ::close(fd) == 0;
  }

 private:
  int fd_;
};

bool writeAll(int fd, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = write(fd, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

bool copyThroughMemory(int from, int to) {
  char buffer[16384];
  for (;;) {
    const ssize_t got = read(from, buffer, sizeof buffer);
    if (got == 0) return true;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0 || !writeAll(to, buffer, static_cast<std::size_t>(got))) return false;
  }
}

bool kernelCannotCopy(int error) {
  return error == EXDEV || error == ENOSYS || error == EINVAL || error == EOPNOTSUPP ||
         error == EPERM;
}

bool copyContents(int from, int to) {
  constexpr std::size_t kChunk = std::size_t{1} << 30;
  bool copiedAny = false;
  for (;;) {
    const ssize_t copied = copy_file_range(from, nullptr, to, nullptr, kChunk, 0);
    if (copied > 0) {
      copiedAny = true;
    } else if (copied == 0) {
      // Some file systems report the size 0 for a file that has contents.
      return copiedAny || copyThroughMemory(from, to);
    } else if (errno != EINTR) {
      return kernelCannotCopy(errno) && copyThroughMemory(from, to);
    }
  }
}

// The new file is made exclusively, so that a dangling link is not written through.
int openDestination(int directory, const char* name, mode_t mode) {
  constexpr int kFlags = O_WRONLY | O_TRUNC | O_CLOEXEC;
  int existing = openat(directory, name, kFlags | O_NONBLOCK);
  // Somebody has a lease on the file and is asked to give it up. That is worth waiting for.
  if (existing < 0 && errno == EWOULDBLOCK) existing = openat(directory, name, kFlags);
  if (existing >= 0 || errno != ENOENT) return existing;
  return openat(directory, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
}

const char* lastComponent(const char* path) {
  const char* slash = std::strrchr(path, '/');
  return slash == nullptr ? path : slash + 1;
}

bool copyFile(const char* source, const char* destination) {
  // A pipe in place of a file is neither waited for nor emptied into the destination.
  const Descriptor from(open(source, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat fromStat {};
  if (from.get() < 0 || fstat(from.get(), &fromStat) != 0 || S_ISDIR(fromStat.st_mode) ||
      S_ISFIFO(fromStat.st_mode))
    return false;

  const Descriptor directory(open(destination, O_PATH | O_DIRECTORY | O_CLOEXEC));
  const int base = directory.get() >= 0 ? directory.get() : AT_FDCWD;
  const char* name = directory.get() >= 0 ? lastComponent(source) : destination;

  struct stat toStat {};
  if (fstatat(base, name, &toStat, 0) == 0 && toStat.st_dev == fromStat.st_dev &&
      toStat.st_ino == fromStat.st_ino)
    return false;

  Descriptor to(openDestination(base, name, fromStat.st_mode & 0777));
  return to.get() >= 0 && copyContents(from.get(), to.get()) && to.close();
}

}  // namespace

int cfgSyncCfgFile(const char* source, const char* destination) {
  if (source == nullptr || destination == nullptr) return kFailed;
  // Deliberate: the destination is what is left of it in a command "cp SOURCE DESTINATION" that is
  // cut to its room. On devices a long destination has always lost its end.
  // [copy-command-cut]
  const std::size_t start = std::strlen("cp ") + std::strlen(source) + std::strlen(" ");
  if (start >= kCommandSize) return kFailed;
  char left[kCommandSize];
  camcfg::copyText(left, kCommandSize - start, destination);
  return left[0] != '\0' && copyFile(source, left) ? 0 : kFailed;
}
