#include "lint/allowances.h"

#include <algorithm>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/rules.h"
#include "lint/steering.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLComment;
using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

constexpr std::string_view kMark = "lint:";
constexpr std::string_view kAllow = "allow ";

std::string_view trimmed(std::string_view text) {
  constexpr const char* kSpace = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kSpace);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

// What follows a word at the beginning of a text; null data if the text begins otherwise.
std::string_view after(std::string_view word, std::string_view text) {
  return beginsWith(text, word) ? trimmed(text.substr(word.size())) : std::string_view();
}

const Rule* ruleOf(std::string_view id) {
  for (const Rule* rule : kRules)
    if (rule->id == id) return rule;
  return nullptr;
}

// The last line of an element that has something of it.
int lastLineOf(const XMLElement& element) {
  int last = element.GetLineNum();
  for (const auto* attribute = element.FirstAttribute(); attribute != nullptr;
       attribute = attribute->Next())
    last = std::max(last, attribute->GetLineNum());
  for (const XMLElement* child : childrenOf(element)) last = std::max(last, lastLineOf(*child));
  return last;
}

/// A comment that is meant for lint.
class Allowance {
 public:
  Allowance(const XMLComment& comment, std::string_view text) : comment_(comment) {
    const std::string_view allowed = after(kAllow, text);
    const std::size_t colon = allowed.find(':');
    id_ = std::string(trimmed(allowed.substr(0, colon)));
    hasReason_ = colon != std::string_view::npos && !trimmed(allowed.substr(colon + 1)).empty();
    if (const XMLElement* element = comment.NextSiblingElement()) {
      first_ = element->GetLineNum();
      last_ = lastLineOf(*element);
    }
  }

  bool takes(const Finding& finding) {
    const bool isIt =
        hasReason_ && finding.rule->id == id_ && finding.line >= first_ && finding.line <= last_;
    isUsed_ = isUsed_ || isIt;
    return isIt;
  }

  void addFaults(Findings& findings) const {
    if (id_.empty()) return add(findings, kAllowForm, "it is not \"lint: allow RULE: reason\"");
    const Rule* rule = ruleOf(id_);
    if (rule == nullptr)
      return add(findings, kAllowForm,
                 concat("there is no rule ", quoted(id_), didYouMean(id_, ruleIds())));
    if (!hasReason_)
      return add(findings, kAllowForm, concat("it does not say why ", id_, " is allowed"));
    if (!isUsed_)
      add(findings, kAllowUnused,
          last_ == 0 ? "no element follows it" : id_ + " finds nothing in the next element");
  }

 private:
  void add(Findings& findings, const Rule& rule, const std::string& text) const {
    findings.add(rule, comment_, "this comment allows nothing: " + text);
  }

  const XMLComment& comment_;
  std::string id_;
  bool hasReason_ = false;
  bool isUsed_ = false;
  int first_ = 0;
  int last_ = 0;
};

void collect(const XMLNode& parent, std::vector<Allowance>& allowances) {
  for (const XMLNode* node = parent.FirstChild(); node != nullptr; node = node->NextSibling()) {
    if (const XMLComment* comment = node->ToComment()) {
      const std::string_view text = trimmed(comment->Value());
      if (beginsWith(text, kMark))
        allowances.emplace_back(*comment, trimmed(text.substr(kMark.size())));
    }
    collect(*node, allowances);
  }
}

}  // namespace

void applyAllowances(const Source& source, Findings& findings) {
  if (source.document == nullptr) return;
  std::vector<Allowance> allowances;
  collect(*source.document, allowances);
  if (allowances.empty()) return;
  findings.removeIf([&](const Finding& finding) {
    bool isAllowed = false;
    for (Allowance& allowance : allowances) isAllowed = allowance.takes(finding) || isAllowed;
    return isAllowed;
  });
  for (const Allowance& allowance : allowances) allowance.addFaults(findings);
}

}  // namespace camcfg::tool::lint
