#ifndef CAMCFG_TOOL_DEVICE_REPAIR_H
#define CAMCFG_TOOL_DEVICE_REPAIR_H

#include <functional>
#include <string>
#include <vector>

#include "base/host.h"
#include "base/outcome.h"
#include "device/files.h"
#include "device/planned_repairs.h"

namespace camcfg::tool::device {

/// Looks at every copy of every file, sorted by name, and changes nothing. A file that the library
/// works on is reported even if it exists nowhere.
/// @return the device's "health"; "files"; "copies" and what the next start and `boot` do to them;
///         "findings": what is wrong and what becomes of it, and "advice": the same, to be read by
///         programs. The status is done, degraded (a main copy can be used, or start-up brings it
///         back) or unusable.
Outcome checkHealth();

/// Why `verify` and `boot` would refuse to verify anything: a main copy that has to be restored cannot
/// be written. Empty if they would not.
std::string whyNotVerified(const FileSet& set);

/// Lets the library do what it does when the device starts, and reports what became of the files.
/// @param keepIn  where damaged copies are kept before they are replaced, "cfg0-NAME" for a main copy
///                and "cfg1-NAME" for a backup; null: nowhere
/// @param resync  whether to do what start-up verification leaves undone, so that each file has two
///                good copies: make directories that are missing, replace main copies that it passes
///                by from their backups or the factory set, and then backups from their main copies
/// @return "files": states found and now, and from where copies were replaced; "kept". The status is
///         done, refused where a backup was not replaced, or unusable where a main copy is.
/// @throws Refusal  before anything was changed
Outcome verify(HostDirectory* keepIn, bool resync);

/// All that a start should do: what an interrupted run has left is brought to its end, directories
/// that are missing are made, what is left of
/// files of which no copy loads is salvaged, and then files are verified and brought in sync as with
/// verify(nullptr, true).
/// @param salvages  false: such files become factory copies
/// @param last  what is done then; it returns what that was, a line each
/// @return "done": what was done, a line each; "health" as of checkHealth, with its status; notes on
///         what could not be done
/// @throws Refusal  nothing can be done
Outcome boot(bool salvages, const std::function<std::vector<std::string>()>& last);

}  // namespace camcfg::tool::device

#endif
