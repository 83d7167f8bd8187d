#ifndef CAMCFG_TOOL_LINT_RULE_H
#define CAMCFG_TOOL_LINT_RULE_H

namespace camcfg::tool::lint {

enum class Severity {
  Error,    ///< a reader fails, or gets something else than the author wrote
  Warning,  ///< works, but a later lookup, save or start will surprise
};

/// One kind of hazard.
struct Rule {
  const char* id;  ///< stable: scripts look for it
  Severity severity;
  const char* explanation;  ///< one line: what readers make of it
  const char* example;      ///< one line that has the hazard
};

/// "error", "warning"
inline const char* wordFor(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

}  // namespace camcfg::tool::lint

#endif
