#include "lint/forms.h"

#include <iterator>
#include <map>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/state_contents.h"
#include "lint/steering.h"

namespace camcfg::tool::lint {
namespace {

// A path in a URI, RFC 3986.
std::string uriOf(const std::string& path) {
  return (beginsWith(path, "/") ? "file://" : "") + inUrl(path, "-._~/!$&'()*+,;=@");
}

// What tells findings apart wherever they move in their files.
class Fingerprints {
 public:
  std::string next(const Finding& finding) {
    const std::string identity = identityOf(finding);
    return device::hashOf(concat(identity, '\n', ++counts_[identity]));
  }

 private:
  std::map<std::string, int> counts_;
};

// Text that Markdown shows as it is: an element in it would be taken for HTML.
std::string inMarkdown(const char* text) {
  std::string result;
  for (const char* c = text; *c != '\0'; ++c) result += *c == '<' ? "&lt;" : std::string(1, *c);
  return result;
}

Json helpOf(const Rule& rule) {
  return {{"text", concat(rule.why, "\nFix: ", rule.fix, "\nExample: ", rule.example)},
          {"markdown", concat(inMarkdown(rule.why), "\n\n**Fix:** ", inMarkdown(rule.fix),
                              "\n\n**Example:** `", rule.example, "`")}};
}

// Some readers require both descriptions.
Json ruleOf(const Rule& rule) {
  return {{"id", rule.id},
          {"shortDescription", {{"text", rule.explanation}}},
          {"fullDescription", {{"text", rule.explanation}}},
          {"help", helpOf(rule)},
          {"defaultConfiguration", {{"level", wordFor(rule.severity)}}},
          {"properties", {{"subject", rule.subject}}}};
}

// Rules by their numbers in a log.
class RuleNumbers {
 public:
  std::size_t of(const Rule& rule) {
    const auto [entry, isNew] = numbers_.emplace(&rule, rules_.size());
    if (isNew) rules_.push_back(ruleOf(rule));
    return entry->second;
  }
  const Json& rules() const { return rules_; }

 private:
  std::map<const Rule*, std::size_t> numbers_;
  Json rules_ = Json::array();
};

// @param reserved  characters that end what a text is in
std::string escaped(const std::string& text, std::string_view reserved) {
  std::string result;
  for (const char c : printable(text))
    result += reserved.find(c) == std::string_view::npos ? std::string(1, c)
                                                         : inUrl(std::string_view(&c, 1), "");
  return result;
}

}  // namespace

Json sarifOf(const std::vector<Finding>& findings) {
  RuleNumbers rules;
  Fingerprints fingerprints;
  Json results = Json::array();
  for (const Finding& finding : findings) {
    const Json place = {{"artifactLocation", {{"uri", uriOf(finding.file)}}},
                        {"region", {{"startLine", finding.line}}}};
    Json locations = Json::array();
    locations.push_back({{"physicalLocation", place}});
    results.push_back({{"ruleId", finding.rule->id},
                       {"ruleIndex", rules.of(*finding.rule)},
                       {"level", wordFor(finding.severity)},
                       {"message", {{"text", finding.text}}},
                       {"locations", locations},
                       {"partialFingerprints", {{"finding/v1", fingerprints.next(finding)}}}});
  }
  Json runs = Json::array();
  runs.push_back(
      {{"tool",
        {{"driver", {{"name", "camcfg"}, {"version", CAMCFG_VERSION}, {"rules", rules.rules()}}}}},
       {"columnKind", "unicodeCodePoints"},
       {"results", results}});
  return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
          {"version", "2.1.0"},
          {"runs", runs}};
}

Json gitlabOf(const std::vector<Finding>& findings) {
  Fingerprints fingerprints;
  Json report = Json::array();
  for (const Finding& finding : findings)
    report.push_back(
        {{"description", finding.text},
         {"check_name", finding.rule->id},
         {"fingerprint", fingerprints.next(finding)},
         {"severity", finding.severity == Severity::Error ? "major" : "minor"},
         {"location", {{"path", finding.file}, {"lines", {{"begin", finding.line}}}}}});
  return report;
}

std::string githubOf(const std::vector<Finding>& findings) {
  std::string lines;
  for (const Finding& finding : findings)
    lines += concat("::", wordFor(finding.severity), " file=", escaped(finding.file, "%\r\n:,"),
                    ",line=", finding.line, ",title=", finding.rule->id,
                    "::", escaped(finding.text, "%\r\n"), "\n");
  return lines;
}

Json jsonOf(const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings)
    list.push_back({{"file", finding.file},
                    {"line", finding.line},
                    {"severity", wordFor(finding.severity)},
                    {"rule", finding.rule->id},
                    {"text", finding.text}});
  return list;
}

}  // namespace camcfg::tool::lint
