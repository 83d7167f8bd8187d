#ifndef CAMCFG_STORE_FILE_LOCK_H
#define CAMCFG_STORE_FILE_LOCK_H

#include "camcfg/store.h"

namespace camcfg {

/// Takes a file's lock as cfgLockFile does.
/// @return its record; null when it could not be had, which has been reported
tag_CFG_FILE_LOCK* takeLock(const char* path);

/// Releases a file's lock as cfgUnlockFile does, without looking for its record again.
/// @param record  the path's; null when there is none
void releaseLock(tag_CFG_FILE_LOCK* record, const char* path);

}  // namespace camcfg

#endif
