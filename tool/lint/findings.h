#ifndef CAMCFG_TOOL_LINT_FINDINGS_H
#define CAMCFG_TOOL_LINT_FINDINGS_H

#include <tinyxml2.h>

#include <algorithm>
#include <string>
#include <vector>

namespace camcfg::tool::lint {

enum class Severity {
  Error,    ///< a reader fails, or reads something other than the author wrote
  Warning,  ///< works, but a later lookup, save or start will surprise
};

/// "error", "warning"
inline const char* wordFor(Severity severity) {
  return severity == Severity::Error ? "error" : "warning";
}

/// One kind of hazard. Each is a constant of lint/rules.h, made from rules.txt.
struct Rule {
  const char* id;  ///< stable: scripts look for it
  Severity severity;
  const char* subject;
  const char* explanation;  ///< one line: what readers make of it
  const char* example;      ///< one line that has the hazard
  const char* why;          ///< one line: what its users meet on a device
  const char* fix;          ///< one line: what to do about it
};

/// A hazard at its place.
struct Finding {
  std::string file;
  int line;  ///< 1 where it concerns the whole file
  const Rule* rule;
  std::string text;
  Severity severity;  ///< the rule's, unless its user has set another one
};

/// What is found in one file.
class Findings {
 public:
  explicit Findings(std::string file) : file_(std::move(file)) {}

  void add(const Rule& rule, int line, const std::string& text) {
    all_.push_back({file_, std::max(line, 1), &rule, text, rule.severity});
  }
  void add(const Rule& rule, const tinyxml2::XMLNode& node, const std::string& text) {
    add(rule, node.GetLineNum(), text);
  }

  /// Adds one about another file that belongs to this one.
  void addTo(const std::string& file, const Rule& rule, const std::string& text) {
    all_.push_back({file, 1, &rule, text, rule.severity});
  }

  template <typename Condition>
  void removeIf(const Condition& condition) {
    all_.erase(std::remove_if(all_.begin(), all_.end(), condition), all_.end());
  }

  /// All of them by their lines; those of one line as they were added.
  std::vector<Finding> sorted() && {
    std::stable_sort(all_.begin(), all_.end(),
                     [](const Finding& a, const Finding& b) { return a.line < b.line; });
    return std::move(all_);
  }

 private:
  std::string file_;
  std::vector<Finding> all_;
};

}  // namespace camcfg::tool::lint

#endif
