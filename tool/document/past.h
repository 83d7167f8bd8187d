#ifndef CAMCFG_TOOL_DOCUMENT_PAST_H
#define CAMCFG_TOOL_DOCUMENT_PAST_H

#include <optional>
#include <string>
#include <vector>

#include "device/journal.h"
#include "document/exchange.h"

namespace camcfg::tool::document {

/// The changes that are kept: "keep", how many at most, and "changes", the latest last, each with
/// "number", "time", "caller", "command" and "files".
/// @throws Refusal  the tool's own directory cannot be used
Outcome listChanges();

/// What a change changed: the members of listChanges, and "changes" as of an import.
/// @throws Refusal  it is not kept
Outcome showChange(int number, bool showSecrets);

/// Brings settings back to what they were before a change: takes back that change and all later ones,
/// all or nothing. A file that has not been saved by any program since is restored byte for byte. In
/// others, only what the changes did is taken back; settings that were set to something else since are
/// conflicts.
/// @param number  none: the latest change
/// @param force   conflicts are taken back as well
/// @return "undone": numbers; "changes"; "conflicts": places, with which nothing is changed unless
///         forced
/// @throws Refusal  the change is not kept, or see makeChanges
Outcome undoChanges(std::optional<int> number, bool force, const ImportOptions& options);

/// Takes a single change back, as far as its settings were not set to something else since.
/// @return the places of those that were, which stay
/// @throws Refusal  see makeChanges
std::vector<std::string> takeBack(const device::RecordedChange& change);

/// "number", "time", "caller", "command" and "files" of a change.
Json recordOf(const device::RecordedChange& change);

}  // namespace camcfg::tool::document

#endif
