#ifndef CAMCFG_STORE_CUT_SAVE_H
#define CAMCFG_STORE_CUT_SAVE_H

#include "store/lock_file.h"

namespace camcfg {

/// Repairs what a program left that died while it saved: restores the main copy from its backup, or
/// brings the backup up to date, and syncs. Called with the file's lock held for writing.
/// @param path  path or name of the file
/// @param step  how far the save had got
/// @return whether it is done with; false when somebody else has to try, with other rights or memory
/// Prints: one level 4 record.
bool repairCutSave(const char* path, SaveStep step);

}  // namespace camcfg

#endif
