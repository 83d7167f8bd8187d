#ifndef CAMCFG_TOOL_LINT_ALLOWANCES_H
#define CAMCFG_TOOL_LINT_ALLOWANCES_H

#include "lint/lint.h"

namespace camcfg::tool::lint {

/// Takes out of the findings of a file those that its comments allow: "<!-- lint: allow RULE: reason -->"
/// does so for the next element and what is in it. Adds a finding for each such comment that allows
/// nothing, or does not say why.
void applyAllowances(const Source& source, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
