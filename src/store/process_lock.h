#ifndef CAMCFG_STORE_PROCESS_LOCK_H
#define CAMCFG_STORE_PROCESS_LOCK_H

#include <ctime>

#include "store/lock_file.h"
#include "store/xml_file.h"

namespace camcfg {

/// Locks between processes. A process that holds a file's lock does not keep itself out: inside it
/// the registry's locks count. Whoever dies holds nothing any more; a child after fork(2) holds
/// nothing of its parent's.
///
/// An owner is an address that stands for one holder: a record of the registry, or an object of the
/// piece of work.

/// Whether this device asks for locks between processes; one system call.
/// @param path  a file that is to be locked; named in the record when the directory is none
bool locksAreAskedFor(const char* path);

/// Takes the lock of a path or name, if the device asks for it, and repairs the file if whoever had it died in a save.
/// Where no lock can be had on this device, one level 4 record says so, once in a process for each
/// file, and the result is true.
/// @param deadline  on the realtime clock
/// @return false when the lock was not free in time, or memory or descriptors ran out
bool takeBetweenProcesses(const void* owner, const char* path, Access access,
                          const timespec& deadline);

enum class Change : char {
  Release,
  LeaveToOthers,    ///< released, and remembered: a save takes the lock again
  Abandon,          ///< still held; a waiter has cleared the flag of the record that holds it
  ReleaseAbandoned  ///< for the unlock of a record whose flag is clear: not held unless abandoned
};

/// Changes what an owner holds; does nothing for an owner that holds nothing.
void changeHolding(const void* owner, Change change);

enum class Holding : char {
  Nothing,
  Exclusive,
  Other  ///< a reader's lock, or one that was left to others: not enough for a save
};
/// Nothing for null.
Holding holdingOf(const void* owner);

/// Checks what was read under a reader's lock. Its lock file stays open for the next time, as long as
/// the path leads to the same file then.
/// @return false when the path leads elsewhere now, as after chroot(2): release, lock and read again
bool confirmFile(const void* owner, const FileIdentity& file);

/// Notes how far the owner's save has got, if it holds the file's lock.
void noteStep(const void* owner, SaveStep step);

/// Logs a warning about a lock: a format with three texts.
void warn(const char* format, const char* first, const char* second, const char* third);

}  // namespace camcfg

#endif
