#ifndef CAMCFG_STORE_LOCK_FILE_H
#define CAMCFG_STORE_LOCK_FILE_H

#include <sys/types.h>

#include <cstdint>

namespace camcfg {

/// Where the device asks for locks between programs: they are taken when this directory exists.
inline constexpr char kLockDirectory[] = "/run/camcfg";

enum class Access : char { Read, Write };

/// How far a save has got. It is noted in the lock file before each step, as the file's size, so
/// that it outlives a program that dies in between.
enum class SaveStep : char {
  None,
  MainCopy,   ///< the main copy may be incomplete, the backup is whole
  BackupCopy  ///< the main copy is whole, the backup may be incomplete
};

/// Path of a configuration file's lock file. All spellings of the file's path lead to one.
class LockFileName {
 public:
  /// @param path  path or name, as callers of the library pass it
  explicit LockFileName(const char* path);
  const char* path() const { return path_; }
  std::uint64_t hash() const { return hash_; }

 private:
  char path_[128];
  std::uint64_t hash_;
};

/// Opens a lock file, making it where it does not exist. Waits for nothing, follows no link.
/// @return the descriptor; -1 with errno set
int openLockFile(const LockFileName& name);

enum class Attempt : char {
  Got,
  Busy,
  BusyAsNext,  ///< nobody else gets it until this descriptor has had it or is closed
  Impossible
};

/// Tries once to lock an open lock file. Closing releases.
/// @param queues  after a failure, asks to be next
/// @return Impossible with errno set where the system has no such locks
Attempt tryLock(int fd, Access access, bool queues);

/// Releases the lock and keeps the descriptor.
void unlock(int fd);

/// What is known about an open lock file.
struct LockFileState {
  bool usable;       ///< a regular file of one name, or of none
  bool permits;      ///< has the permissions that lock files have
  bool deleted;      ///< of none: whoever opens the name now gets another one
  SaveStep cutSave;  ///< how far a save got whose program died
  dev_t device;
  ino_t inode;
};

inline bool isSame(const LockFileState& one, const LockFileState& other) {
  return one.inode == other.inode && one.device == other.device;
}

/// @return of a descriptor that is not open, one that is the same as no other's
LockFileState stateOf(int fd);

/// Gives a lock file its permissions, if it is ours, whatever the umask was when it was made.
void givePermissions(int fd);

/// Notes how far a save has got. Needs no room in the file system.
void note(int fd, SaveStep step);

}  // namespace camcfg

#endif
