#ifndef CAMCFG_TOOL_LINT_FORMS_H
#define CAMCFG_TOOL_LINT_FORMS_H

#include <string>
#include <vector>

#include "base/json.h"
#include "lint/findings.h"

namespace camcfg::tool::lint {

// Findings as other programs take them, which show them at their lines.

/// A log in SARIF 2.1.0, with the rules that are in it.
Json sarifOf(const std::vector<Finding>& findings);

/// A report of code quality as GitLab takes it.
Json gitlabOf(const std::vector<Finding>& findings);

/// Commands of a workflow of GitHub, a line each.
std::string githubOf(const std::vector<Finding>& findings);

/// An answer's list of findings.
Json jsonOf(const std::vector<Finding>& findings);

}  // namespace camcfg::tool::lint

#endif
