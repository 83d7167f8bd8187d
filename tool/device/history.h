#ifndef CAMCFG_TOOL_DEVICE_HISTORY_H
#define CAMCFG_TOOL_DEVICE_HISTORY_H

#include <optional>
#include <vector>

#include "device/journal.h"

namespace camcfg::tool::device {

// The last changes that the tool made, at most a megabyte of them, and fewer when room is short.
// Their numbers go on rising, whatever is forgotten.

/// The changes that are kept, without contents, the latest last.
/// @throws Refusal  the tool's own directory cannot be used
std::vector<RecordedChange> history();

/// A change with its contents; none if it is not kept, or damaged.
/// @throws Refusal  the tool's own directory cannot be used
std::optional<RecordedChange> changeOfNumber(int number);

/// How many changes are kept: 8 unless something else was set.
/// @throws Refusal  the tool's own directory cannot be used
int historyLimit();

/// Sets how many changes are kept; 0: none. Those beyond are forgotten at once.
/// @throws Refusal  it cannot be written; all is as it was
void setHistoryLimit(int keep);

/// Forgets the oldest change to make room on the device. False if there is none left.
bool forgetOldest();

}  // namespace camcfg::tool::device

#endif
