#ifndef CAMCFG_TOOL_LINT_STEERING_H
#define CAMCFG_TOOL_LINT_STEERING_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lint/findings.h"

namespace camcfg::tool::lint {

/// The ids of all rules, for completion and for suggestions.
std::vector<std::string> ruleIds();

/// What is made of findings besides showing them.
class Steering {
 public:
  /// Sets the severity of a rule, or switches it off.
  /// @param word  "RULE=off", "RULE=warning" or "RULE=error"
  /// @throws Refusal (usage) if it is not of this form
  void set(const std::string& word);

  /// Findings that are known, and are left out: as often as they are in the list.
  /// @param text  an answer of lint in JSON
  /// @throws Refusal if it is none
  void setBaseline(const std::string& text);

  void apply(std::vector<Finding>& findings);

  /// How many findings were known, and how many of the known ones are there no longer.
  std::size_t known() const { return known_; }
  std::size_t gone() const;

 private:
  std::map<const Rule*, std::optional<Severity>> severities_;
  std::map<std::string, int> baseline_;
  std::size_t known_ = 0;
};

/// What a finding is known by wherever it moves in its file: its file, rule and text, without lines.
std::string identityOf(const std::string& file, const std::string& rule, const std::string& text);
std::string identityOf(const Finding& finding);

}  // namespace camcfg::tool::lint

#endif
