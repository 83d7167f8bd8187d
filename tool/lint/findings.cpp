#include "lint/findings.h"

#include <algorithm>

namespace camcfg::tool::lint {

void Findings::add(const Rule& rule, int line, const std::string& text) {
  all_.push_back({file_, std::max(line, 1), &rule, text});
}

void Findings::add(const Rule& rule, const tinyxml2::XMLNode& node, const std::string& text) {
  add(rule, node.GetLineNum(), text);
}

void Findings::add(const Rule& rule, const tinyxml2::XMLElement& element, const char* attribute,
                   const std::string& text) {
  const tinyxml2::XMLAttribute* found = element.FindAttribute(attribute);
  add(rule, found == nullptr ? element.GetLineNum() : found->GetLineNum(), text);
}

std::vector<Finding> Findings::sorted() && {
  std::stable_sort(all_.begin(), all_.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  return std::move(all_);
}

}  // namespace camcfg::tool::lint
