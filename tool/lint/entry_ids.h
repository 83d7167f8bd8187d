#ifndef CAMCFG_TOOL_LINT_ENTRY_IDS_H
#define CAMCFG_TOOL_LINT_ENTRY_IDS_H

#include <string>

#include "lint/elements.h"
#include "lint/findings.h"
#include "lint/rule.h"

namespace camcfg::tool::lint {

/// Looks at entries that are told apart by their "Id", in document order: one without takes the id
/// of the one before it in searches by id, and of equal ids only the first is found.
/// @param owner  how findings call an entry: "preset"
void checkEntryIds(const Elements& entries, const std::string& owner, Findings& findings);

/// Finds ids that an earlier one of the entries has. Entries without a readable "Id" are passed by.
void checkEqualIds(const Elements& entries, const std::string& owner, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
