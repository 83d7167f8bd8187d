#include "store/process_lock.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "base/log.h"
#include "store/cut_save.h"
#include "store/xml_file.h"

namespace camcfg {
namespace {

// Places are used again and never freed: as many as files were locked at one time, and one for each
// file that has been read.
struct Held {
  enum State : char { Waiting, Idle, Locked, Abandoned, Left } state;
  bool exclusive;     // locked for writing
  int fd;             // two owners with one descriptor share a lock; -1: none
  const void* owner;  // null: nobody's
  LockFileState lockFile;
  FileIdentity file;  // what was read under this lock
  Held* next;
};

Held* g_held = nullptr;
pthread_mutex_t g_heldLock = PTHREAD_MUTEX_INITIALIZER;

[[gnu::always_inline]] inline bool nothingHeld() {
  return __atomic_load_n(&g_held, __ATOMIC_ACQUIRE) == nullptr;
}

// Out of line for size: there are many guards.
[[gnu::noinline]] void lockHeld() {
  pthread_mutex_lock(&g_heldLock);
}
[[gnu::noinline]] void unlockHeld() {
  pthread_mutex_unlock(&g_heldLock);
}

class HeldGuard {
 public:
  HeldGuard() { lockHeld(); }
  ~HeldGuard() { unlockHeld(); }
  HeldGuard(const HeldGuard&) = delete;
  HeldGuard& operator=(const HeldGuard&) = delete;
};

// The functions from here to the next such comment are called with g_heldLock locked.

Held* find(const void* owner) {
  Held* held = g_held;
  while (held != nullptr && held->owner != owner) held = held->next;
  return held;
}

void letGo(Held& held) {
  const int fd = held.fd;
  held.fd = -1;
  held.exclusive = false;
  if (fd < 0) return;
  for (const Held* other = g_held; other != nullptr; other = other->next)
    if (other->fd == fd) return;
  // A program that has closed the descriptor may have got it again for something else.
  if (held.state == Held::Waiting || isSame(stateOf(fd), held.lockFile)) close(fd);
}

void settle(Held& held, const LockFileState& lockFile, bool exclusive) {
  held.state = Held::Locked;
  held.exclusive = exclusive;
  held.lockFile = lockFile;
}

void free(Held& held) {
  letGo(held);
  held.owner = nullptr;
}

// Readers come again: opening the lock file would be most of what locking costs them.
void release(Held& held) {
  if (held.exclusive || held.file.inode == 0) return free(held);
  unlock(held.fd);
  held.state = Held::Idle;
}

// Descriptors are inherited, and with them the locks of the parent's work, which goes on there.
void forgetParent() {
  for (Held* held = g_held; held != nullptr; held = held->next) {
    letGo(*held);
    if (held->state == Held::Idle)
      held->owner = nullptr;
    else
      held->state = Held::Left;
  }
  unlockHeld();
}

// A second spelling of a file whose lock this process holds already, for another of its owners.
bool shareOwn(Held& held, const LockFileState& lockFile) {
  for (const Held* other = g_held; other != nullptr; other = other->next) {
    if (!other->exclusive || !isSame(other->lockFile, lockFile)) continue;
    const int fd = other->fd;
    letGo(held);
    settle(held, lockFile, true);
    held.fd = fd;
    return true;
  }
  return false;
}

// Null for an owner that holds nothing yet: what others release is not its lock.
Held* settled(const void* owner) {
  Held* held = owner == nullptr ? nullptr : find(owner);
  return held == nullptr || held->state == Held::Waiting || held->state == Held::Idle ? nullptr
                                                                                      : held;
}

// Up to here.

void watchForks() {
  pthread_atfork(lockHeld, unlockHeld, forgetParent);
}

Held* placeFor(const void* owner) {
  const HeldGuard guard;
  Held* held = find(owner);
  if (held == nullptr) held = find(nullptr);
  if (held == nullptr) {
    held = static_cast<Held*>(std::calloc(1, sizeof(Held)));
    if (held == nullptr) return nullptr;
    if (g_held == nullptr) watchForks();
    held->fd = -1;
    held->next = g_held;
    __atomic_store_n(&g_held, held, __ATOMIC_RELEASE);
  }
  held->owner = owner;
  if (held->state == Held::Idle) letGo(*held);
  if (held->fd < 0) held->state = Held::Waiting;
  held->file = {};
  return held;
}

// The lock of a file that was read before, in one go and by its open lock file.
bool takeKnown(const void* owner) {
  Held* held = nullptr;
  {
    const HeldGuard guard;
    held = find(owner);
  }
  if (held == nullptr || held->state != Held::Idle ||
      tryLock(held->fd, Access::Read, false) != Attempt::Got)
    return false;
  const LockFileState lockFile = stateOf(held->fd);
  const bool isKnown = isSame(lockFile, held->lockFile) && lockFile.usable && !lockFile.deleted &&
                       lockFile.cutSave == SaveStep::None;
  if (!isKnown) unlock(held->fd);
  const HeldGuard guard;
  if (isKnown)
    held->state = Held::Locked;
  else
    free(*held);
  return isKnown;
}

// Files reported as not locked between programs: those of a device, and some more. What comes after
// these is not reported.
std::uint64_t g_reported[32];

// Whether a file was reported before, or has no place; adds it if asked to.
bool isReported(const LockFileName& name, bool add) {
  const HeldGuard guard;
  for (std::uint64_t& reported : g_reported) {
    if (reported == name.hash()) return true;
    if (reported != 0) continue;
    if (add) reported = name.hash();
    return false;
  }
  return true;
}

void reportUnusable(const char* path, const LockFileName& name, const char* reason) {
  if (!isReported(name, true))
    warn("Lock %s keeps no other program out, %s: %s", path, name.path(), reason);
}

// Sleeps a little, longer each time, until a deadline.
class Waiting {
 public:
  explicit Waiting(const timespec& deadline) : deadline_(deadline) {}

  // False when the deadline has passed.
  bool sleep(bool isNext) {
    timespec now{};
    timespec_get(&now, TIME_UTC);
    if (now.tv_sec > deadline_.tv_sec ||
        (now.tv_sec == deadline_.tv_sec && now.tv_nsec >= deadline_.tv_nsec))
      return false;
    nanosleep(&pause_, nullptr);
    pause_.tv_nsec = std::min(2 * pause_.tv_nsec, isNext ? kNext : kLongest);
    return true;
  }

 private:
  static constexpr long kLongest = 2'000'000;
  static constexpr long kNext = 200'000;  // while one waits for the next, the file is idle
  const timespec& deadline_;
  timespec pause_{0, 50'000};
};

// One owner's way to a lock.
class Approach {
 public:
  enum Step : char { Got, Busy, Unusable, Shortage };

  Approach(Held& held, const char* path, Access access)
      : held_(held), path_(path), name_(path), access_(access) {}

  Step step() {
    const bool opened = held_.fd >= 0 || open();
    const bool queues = ++attempts_ > kHurried;
    const Attempt attempt = opened ? tryLock(held_.fd, access_, queues) : Attempt::Impossible;
    if (attempt == Attempt::Impossible) return refused(errno);
    const LockFileState state = stateOf(held_.fd);
    if (!state.usable) return unusable("no file of ours");
    if (!state.permits) givePermissions(held_.fd);
    isNext_ = attempt == Attempt::BusyAsNext;
    return attempt == Attempt::Got ? use(state) : share(state);
  }

  bool isNext() const { return isNext_; }

 private:
  bool open() {
    const HeldGuard guard;
    const int fd = openLockFile(name_);
    // Whoever seemed to have this descriptor had it closed by the program.
    for (Held* other = g_held; other != nullptr; other = other->next)
      if (other->fd == fd) other->fd = -1;
    held_.fd = fd;
    return fd >= 0;
  }

  Step refused(int error) {
    if (isShortage(error)) return Shortage;
    // Another user's program may just be making the file.
    if (error == EACCES && ++refusals_ < kRefusals && !isReported(name_, false)) return Busy;
    return unusable(std::strerror(error));
  }

  Step unusable(const char* reason) const {
    reportUnusable(path_, name_, reason);
    return Unusable;
  }

  Step share(const LockFileState& state) {
    const HeldGuard guard;
    return shareOwn(held_, state) ? Got : Busy;
  }

  Step use(const LockFileState& state) {
    if (state.deleted) {
      const HeldGuard guard;
      letGo(held_);
      return Busy;
    }
    if (state.cutSave != SaveStep::None && access_ == Access::Read) {
      access_ = Access::Write;  // another reader may see it too: each has to let go first
      unlock(held_.fd);
      return step();
    }
    if (state.cutSave != SaveStep::None && repairCutSave(path_, state.cutSave))
      note(held_.fd, SaveStep::None);
    const HeldGuard guard;
    settle(held_, state, access_ == Access::Write);
    return Got;
  }

  static constexpr int kRefusals = 6;
  static constexpr int kHurried = 10;  // some 11 ms: until then whoever comes first gets it
  int refusals_ = 0;
  int attempts_ = 0;
  bool isNext_ = false;
  Held& held_;
  const char* path_;
  const LockFileName name_;
  Access access_;
};

}  // namespace

bool locksAreAskedFor(const char* path) {
  struct stat status;  // not cleared: this is on every reader's way
  if (fstatat(AT_FDCWD, kLockDirectory, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
  if (S_ISDIR(status.st_mode)) return true;
  reportUnusable(path, LockFileName(path), "no directory");
  return false;
}

bool takeBetweenProcesses(const void* owner, const char* path, Access access,
                          const timespec& deadline) {
  if (access == Access::Read && !nothingHeld() && takeKnown(owner)) return true;
  if (!locksAreAskedFor(path)) return true;
  Held* held = placeFor(owner);
  if (held == nullptr) return false;
  if (held->state != Held::Waiting) return true;
  Approach approach(*held, path, access);
  Waiting waiting(deadline);
  Approach::Step step = approach.step();
  while (step == Approach::Busy && waiting.sleep(approach.isNext())) step = approach.step();
  if (step != Approach::Got) {
    const HeldGuard guard;
    free(*held);
  }
  return step == Approach::Got || step == Approach::Unusable;
}

void changeHolding(const void* owner, Change change) {
  if (nothingHeld()) return;
  const HeldGuard guard;
  Held* held = settled(owner);
  if (held == nullptr) return;
  const bool abandoned = held->state == Held::Abandoned;
  if (change == Change::Abandon) {
    if (held->state == Held::Locked) held->state = Held::Abandoned;
  } else if (change != Change::ReleaseAbandoned || abandoned) {
    if (change != Change::LeaveToOthers) return release(*held);
    letGo(*held);
    held->state = Held::Left;
  }
}

Holding holdingOf(const void* owner) {
  if (nothingHeld()) return Holding::Nothing;
  const HeldGuard guard;
  const Held* held = settled(owner);
  if (held == nullptr) return Holding::Nothing;
  return held->exclusive ? Holding::Exclusive : Holding::Other;
}

bool confirmFile(const void* owner, const FileIdentity& file) {
  if (nothingHeld()) return true;
  const HeldGuard guard;
  Held* held = settled(owner);
  if (held == nullptr) return true;
  const FileIdentity before = held->file;
  const bool confirmed =
      before.inode == 0 || (before.inode == file.inode && before.device == file.device);
  held->file = confirmed ? file : FileIdentity{};
  return confirmed;
}

void noteStep(const void* owner, SaveStep step) {
  if (nothingHeld()) return;
  const HeldGuard guard;
  const Held* held = settled(owner);
  if (held != nullptr && isSame(stateOf(held->fd), held->lockFile)) note(held->fd, step);
}

void warn(const char* format, const char* first, const char* second, const char* third) {
  log(Level::Warning, here("cfgLockFile"), format, first, second, third);
}

}  // namespace camcfg
