#ifndef CAMCFG_TOOL_DOCUMENT_TRIAL_H
#define CAMCFG_TOOL_DOCUMENT_TRIAL_H

#include <string>
#include <vector>

#include "base/outcome.h"

namespace camcfg::tool::document {

// One change may be on trial: it is in force, and is rolled back unless somebody confirms it in time.
// Settings then become what they were before it, but those that were set to something else since
// stay. That is announced, and in the system's log.

/// The change on trial: "number", "caller", "command", "until" and "secondsLeft"; null if there is
/// none, or nothing can be known of it.
Json pendingChange();

/// Confirms the change on trial: it stays in force, and that is on the medium when this returns.
/// @return the change, as in listChanges
/// @throws Refusal  nothing is on trial; or its time is over, and it was rolled back
Outcome confirmChange();

/// Rolls back the change on trial.
/// @param why  "it was cancelled"
/// @return the change, as in listChanges, and "conflicts": the places of settings that stay
/// @throws Refusal  nothing is on trial; or see makeChanges, and it still is
Outcome rollBack(const std::string& why);

/// Rolls back a change on trial whose time is over. If that fails, it is announced, and the next
/// command tries again.
void rollBackWhatIsOver();

/// The same when the device starts, and even before its time is over if nobody waits for that any
/// more.
/// @return what was done, a line each
/// @throws Refusal  see makeChanges
std::vector<std::string> rollBackAtStart();

}  // namespace camcfg::tool::document

#endif
