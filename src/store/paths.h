#ifndef CAMCFG_STORE_PATHS_H
#define CAMCFG_STORE_PATHS_H

#include <cstring>

#include "base/text.h"
#include "camcfg/types.h"

namespace camcfg {

/// The main copy that a path or name is saved to.
inline void mainPathOf(char (&mainPath)[CFG_PATH_SIZE], const char* path) {
  if (path[0] == '/')
    copyText(mainPath, path);
  else
    joinPath(mainPath, CFG_DIR_MAIN, path);
}

/// The backup of a main copy.
// Deliberate: the first five characters are overwritten whatever they are, so a path outside
// "/cfg0" gets a backup path that makes little sense. Files outside "/cfg0" are not saved by anyone
// who wants a backup of them. [backup-path]
inline void backupPathOf(char (&backupPath)[CFG_PATH_SIZE], const char (&mainPath)[CFG_PATH_SIZE]) {
  std::memset(backupPath, 0, sizeof CFG_DIR_BACKUP);  // a shorter path ends after the directory
  copyText(backupPath, mainPath);
  std::memcpy(backupPath, CFG_DIR_BACKUP, std::strlen(CFG_DIR_BACKUP));
}

}  // namespace camcfg

#endif
