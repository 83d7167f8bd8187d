#ifndef CAMCFG_TOOL_LINT_SECTIONS_H
#define CAMCFG_TOOL_LINT_SECTIONS_H

#include "lint/lint.h"

namespace camcfg::tool::lint {

/// Looks for sections that readers look for, and for those that are twice, misplaced or nearly called so.
/// @param source  of a kind that has sections
void checkSections(const Source& source, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
