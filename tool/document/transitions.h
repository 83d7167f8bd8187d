#ifndef CAMCFG_TOOL_DOCUMENT_TRANSITIONS_H
#define CAMCFG_TOOL_DOCUMENT_TRANSITIONS_H

#include <string>
#include <vector>

#include "document/document.h"
#include "document/exchange.h"

namespace camcfg::tool::document {

/// The answer over a document that cannot be carried out: its faults, and that nothing was changed.
cli::Answer refusedFor(const settings::Faults& faults);

/// Brings sections from one state to another, all of them or none: a step that fails has those
/// before it put back.
/// @param unchanged  what is told when there is no transition
/// @return the changes; with a status of its own, why they were not made
cli::Answer carriedOut(const std::vector<Transition>& transitions, const ImportOptions& options,
                       const char* unchanged);

}  // namespace camcfg::tool::document

#endif
