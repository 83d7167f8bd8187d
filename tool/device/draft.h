#ifndef CAMCFG_TOOL_DEVICE_DRAFT_H
#define CAMCFG_TOOL_DEVICE_DRAFT_H

#include <optional>
#include <string>
#include <vector>

#include "device/change.h"
#include "device/journal.h"

namespace camcfg::tool::device {

/// Whether the bytes of a file are replaced, since they are of no use to start from.
bool isReplaced(const std::optional<std::string>& bytes, const Change& change);

/// What a main copy holds, of which a change can be worked out. A program may be saving the file.
/// @throws Refusal if it is unusable
Contents requireContents(const std::string& path);

/// What changes make of the files as they are now, by the library's own calls. Nothing of the device
/// is changed.
/// @param again  the files may have changed since the changes' makers read them
/// @throws Refusal  a main copy is unusable, or the library does not make one of the changes
std::vector<FileChange> draftOf(const std::vector<Change>& changes, bool again = false);

}  // namespace camcfg::tool::device

#endif
