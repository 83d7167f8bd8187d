#include "store/lock_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "store/paths.h"

namespace camcfg {
namespace {

// Readers and writers of several users, by group; nobody else, who could keep all others waiting.
constexpr mode_t kLockFileMode = 0660;
constexpr int kFlags = O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// Byte 0 is the lock. Byte 1 is a turnstile that everybody passes on the way to it: whoever has
// waited for some time stays in it, so that those who come again and again have to wait as well.
constexpr off_t kLock = 0;
constexpr off_t kTurnstile = 1;

// Sizes that nobody gives a file by chance.
constexpr off_t kNotedSize = 1020;

// A file that does not exist yet is resolved up to its name.
void resolve(char (&resolved)[PATH_MAX], const char* path) {
  char mainPath[CFG_PATH_SIZE];
  mainPathOf(mainPath, path);
  resolved[0] = '\0';
  if (realpath(mainPath, resolved) == nullptr && resolved[0] == '\0') copyText(resolved, mainPath);
}

std::uint64_t hashOf(const char* text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (; *text != '\0'; ++text) hash = (hash ^ static_cast<unsigned char>(*text)) * 0x100000001b3;
  return hash;
}

// A program may have closed its standard streams: what it prints then must not end up in a lock file.
int keepFromStreams(int fd) {
  if (fd < 0 || fd > STDERR_FILENO) return fd;
  const int moved = fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  const int error = errno;
  close(fd);
  errno = error;
  return moved;
}

bool setLock(int fd, short type, off_t first, off_t count) {
  struct flock range {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_start = first;
  range.l_len = count;
  return fcntl(fd, F_OFD_SETLK, &range) == 0;
}

}  // namespace

LockFileName::LockFileName(const char* path) {
  char resolved[PATH_MAX];
  resolve(resolved, path);
  hash_ = hashOf(resolved);
  std::snprintf(path_, sizeof path_, "%s/%.64s.%016llx", kLockDirectory,
                std::strrchr(resolved, '/') + 1, static_cast<unsigned long long>(hash_));
}

int openLockFile(const LockFileName& name) {
  int fd = open(name.path(), kFlags);
  if (fd < 0 && errno == ENOENT) fd = open(name.path(), kFlags | O_CREAT, kLockFileMode);
  return keepFromStreams(fd);
}

Attempt tryLock(int fd, Access access, bool queues) {
  if (setLock(fd, access == Access::Read ? F_RDLCK : F_WRLCK, kLock, 2)) {
    setLock(fd, F_UNLCK, kTurnstile, 1);
    return Attempt::Got;
  }
  if (errno != EAGAIN && errno != EACCES) return Attempt::Impossible;
  return queues && setLock(fd, F_WRLCK, kTurnstile, 1) ? Attempt::BusyAsNext : Attempt::Busy;
}

void unlock(int fd) {
  setLock(fd, F_UNLCK, kLock, 2);
}

LockFileState stateOf(int fd) {
  struct stat status {};
  if (fstat(fd, &status) != 0) return {};
  const off_t noted = status.st_size - kNotedSize;
  const bool cut = noted > 0 && noted <= static_cast<off_t>(SaveStep::BackupCopy);
  return {S_ISREG(status.st_mode) && status.st_nlink <= 1,
          (status.st_mode & 0777) == kLockFileMode,
          status.st_nlink == 0,
          cut ? static_cast<SaveStep>(noted) : SaveStep::None,
          status.st_dev,
          status.st_ino};
}

void givePermissions(int fd) {
  static_cast<void>(fchmod(fd, kLockFileMode));
}

void note(int fd, SaveStep step) {
  const off_t size = step == SaveStep::None ? 0 : kNotedSize + static_cast<off_t>(step);
  static_cast<void>(ftruncate(fd, size) == 0);
}

}  // namespace camcfg
