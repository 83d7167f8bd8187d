#ifndef CAMCFG_TOOL_LINT_FINDINGS_H
#define CAMCFG_TOOL_LINT_FINDINGS_H

#include <tinyxml2.h>

#include <algorithm>
#include <string>
#include <vector>

#include "lint/rule.h"

namespace camcfg::tool::lint {

/// A hazard at its place.
struct Finding {
  std::string file;
  int line;  ///< 1 where it concerns the whole file
  const Rule* rule;
  std::string text;
};

/// What is found in one file.
class Findings {
 public:
  explicit Findings(std::string file) : file_(std::move(file)) {}

  void add(const Rule& rule, int line, const std::string& text) {
    all_.push_back({file_, std::max(line, 1), &rule, text});
  }
  void add(const Rule& rule, const tinyxml2::XMLNode& node, const std::string& text) {
    add(rule, node.GetLineNum(), text);
  }
  /// At the line of an attribute, which may be below its element's; at the element's where it
  /// has no such attribute.
  void add(const Rule& rule, const tinyxml2::XMLElement& element, const char* attribute,
           const std::string& text) {
    const tinyxml2::XMLAttribute* found = element.FindAttribute(attribute);
    add(rule, found == nullptr ? element.GetLineNum() : found->GetLineNum(), text);
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
