#ifndef CAMCFG_STORE_FILE_LOCK_H
#define CAMCFG_STORE_FILE_LOCK_H

#include <cstring>

#include "camcfg/store.h"
#include "store/lock_file.h"
#include "store/process_lock.h"

namespace camcfg {

/// The lock record of a path; null for a path that was never named.
/// Locks: the caller holds g_lockMapFileLock.
// A device has few files. A linear search allocates no memory, unlike a key to look up,
// so a lock once taken can always be released.
inline tag_CFG_FILE_LOCK* searchRecord(const char* path) {
  for (auto& [key, record] : g_mapFileLock)
    if (std::strcmp(key.c_str(), path) == 0) return &record;
  return nullptr;
}

/// Takes a file's lock as cfgLockFile does.
/// @param access  what the lock between processes is taken for; inside the process only one holds it
/// @return its record; null when it could not be had, which has been reported
tag_CFG_FILE_LOCK* takeLock(const char* path, Access access);

/// Releases a file's lock as cfgUnlockFile does, without looking for its record again.
/// @param record  the path's; null when there is none
void releaseLock(tag_CFG_FILE_LOCK* record, const char* path);

/// Releases a file's lock for this process, as cfgUnlockFile does, by a caller who never had it:
/// what another holder has between processes stays.
void releaseInsideProcess(const char* path);

/// Leaves a file locked for this process and releases it for others.
void leaveLockedInsideProcess(const char* path);

/// The lock between processes that a piece of work on a file is done under: that of the path's holder
/// in this process, or one of its own where nobody has locked the path.
class WorkLock {
 public:
  explicit WorkLock(const char* path) : WorkLock(path, nullptr) {}
  /// @param asked  whether the device asks for such locks; null: not known yet
  WorkLock(const char* path, const bool* asked);
  ~WorkLock();
  WorkLock(const WorkLock&) = delete;
  WorkLock& operator=(const WorkLock&) = delete;

  /// False when it could not be had, which has been reported.
  explicit operator bool() const { return had_; }

  /// Notes how far a save has got, for others in case that this process dies.
  void note(SaveStep step) const { noteStep(owner_, step); }

 private:
  const void* owner_;  // null: no lock
  bool had_ = true;
};

}  // namespace camcfg

#endif
