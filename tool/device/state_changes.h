#ifndef CAMCFG_TOOL_DEVICE_STATE_CHANGES_H
#define CAMCFG_TOOL_DEVICE_STATE_CHANGES_H

#include <string>
#include <vector>

#include "device/state_folder.h"

namespace camcfg::tool::device {

// Complete changes are kept in "/cfg1/.camcfg/changes", each under its number. The file of the latest
// stays, without its text if need be, so that numbers are never used twice.

inline constexpr char kChanges[] = "changes";

/// The names of what may be in the tool's own directory.
inline constexpr char kJournal[] = "journal";         ///< the change in force
inline constexpr char kNewJournal[] = "journal.new";  ///< the same, once it is complete
inline constexpr char kRollback[] = "rollback";       ///< a change that is to be taken back
inline constexpr char kTrial[] = "trial";             ///< the change on trial, once it is complete
inline constexpr char kKeep[] = "keep";               ///< how many complete changes are kept

/// The numbers of all changes in the history, the latest last.
std::vector<int> numbersOf(const StateFolder& changes);

/// Puts a complete change into the history, under its number. False, with nothing moved, if it is not
/// whole or cannot be moved.
bool moveToHistory(const StateFolder& state, const char* name);

/// The number of the next change.
int nextNumber(const StateFolder& state);

/// How many changes are kept.
int keptChanges(const StateFolder& state);

/// Drops what goes beyond the limits, and the contents that nothing has to do with any more.
/// Failures are passed over: what is left is dropped the next time.
void prune(const StateFolder& state);

/// Drops the oldest change to make room; failing that, the oldest that was put aside. False if there
/// is nothing to drop.
bool dropOldest(const StateFolder& state);

/// Puts a file that is of no use aside. Only a few are kept.
/// @return its new path
/// @throws Refusal  that failed
std::string putAside(const StateFolder& state, const std::string& name);

}  // namespace camcfg::tool::device

#endif
