#ifndef CAMCFG_TOOL_DEVICE_SCRATCH_H
#define CAMCFG_TOOL_DEVICE_SCRATCH_H

#include <functional>
#include <vector>

#include "base/json.h"
#include "device/save.h"

namespace camcfg::tool::device {

/// Carries out work on a device of its own that has these main copies and nothing else. The library
/// knows its files by their paths only, so the work is done by a child process, whose root is a
/// directory among the temporary files of the system that the tool was started on. What it saves
/// there is not flushed.
/// @param work  is called in the child; what it changes is gone with it
/// @return what the work returned
/// @throws Refusal if there is no such device to be had; or what the work threw
Json onScratchDevice(const std::vector<Contents>& files, const std::function<Json()>& work);

/// Whether nothing is to be flushed, since all that is saved goes with this process.
bool savesForNobody();

}  // namespace camcfg::tool::device

#endif
