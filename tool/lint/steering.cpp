#include "lint/steering.h"

#include <algorithm>
#include <cctype>

#include "base/concat.h"
#include "base/json.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "lint/rules.h"

namespace camcfg::tool::lint {
namespace {

constexpr char kLine[] = " line ";

const Rule& requireRule(const std::string& id) {
  for (const Rule* rule : kRules)
    if (rule->id == id) return *rule;
  throw Refusal(Status::Usage, concat("there is no rule ", quoted(id), didYouMean(id, ruleIds())));
}

std::string textIn(const Json& finding, const char* member) {
  const Json* value = finding.find_path(member);
  if (value == nullptr || !value->is_string())
    throw Refusal(std::string("the baseline is no answer of 'lint --json': a finding has no ") +
                  member);
  return value->text();
}

}  // namespace

std::vector<std::string> ruleIds() {
  std::vector<std::string> ids;
  for (const Rule* rule : kRules) ids.emplace_back(rule->id);
  return ids;
}

std::string identityOf(const std::string& file, const std::string& rule, const std::string& text) {
  std::string plain = text;
  for (std::size_t at = plain.find(kLine); at != std::string::npos;
       at = plain.find(kLine, at + 1)) {
    const std::size_t number = at + std::size(kLine) - 1;
    std::size_t end = number;
    while (end < plain.size() && std::isdigit(static_cast<unsigned char>(plain[end])) != 0) ++end;
    plain.erase(number, end - number);
  }
  return concat(file, '\n', rule, '\n', plain);
}

std::string identityOf(const Finding& finding) {
  return identityOf(finding.file, finding.rule->id, finding.text);
}

void Steering::set(const std::string& word) {
  const std::size_t sign = word.find('=');
  const std::string level = sign == std::string::npos ? "" : word.substr(sign + 1);
  const Rule& rule = requireRule(word.substr(0, sign));
  std::optional<Severity>& severity = severities_[&rule];
  if (level == "off")
    severity.reset();
  else if (level == wordFor(Severity::Warning))
    severity = Severity::Warning;
  else if (level == wordFor(Severity::Error))
    severity = Severity::Error;
  else
    throw Refusal(Status::Usage, quoted(word) + " is not RULE=off, RULE=warning or RULE=error");
}

void Steering::setBaseline(const std::string& text) {
  const JsonText read = readJson(text);
  const Json* findings = read.fault == 0 ? read.value.find_path("findings") : nullptr;
  if (findings == nullptr || !findings->is_array())
    throw Refusal("the baseline is no answer of 'lint --json'");
  for (const Json& finding : *findings)
    ++baseline_[identityOf(textIn(finding, "file"), textIn(finding, "rule"),
                           textIn(finding, "text"))];
}

void Steering::apply(std::vector<Finding>& findings) {
  const auto isOut = [&](Finding& finding) {
    const auto severity = severities_.find(finding.rule);
    if (severity != severities_.end()) {
      if (!severity->second) return true;
      finding.severity = *severity->second;
    }
    const auto known = baseline_.find(identityOf(finding));
    if (known == baseline_.end() || known->second == 0) return false;
    --known->second;
    ++known_;
    return true;
  };
  findings.erase(std::remove_if(findings.begin(), findings.end(), isOut), findings.end());
}

std::size_t Steering::gone() const {
  std::size_t count = 0;
  for (const auto& [identity, left] : baseline_) count += static_cast<std::size_t>(left);
  return count;
}

}  // namespace camcfg::tool::lint
