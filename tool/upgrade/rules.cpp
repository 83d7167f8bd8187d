#include "upgrade/rules.h"

#include <algorithm>
#include <cctype>

#include "base/concat.h"
#include "base/json.h"
#include "base/outcome.h"
#include "base/plain_text.h"

namespace camcfg::tool::upgrade {
namespace {

using settings::Node;

struct Named {
  const char* word;
  int value;
};

constexpr Named kActions[] = {{"rename", Rule::Rename}, {"drop", Rule::Drop}, {"map", Rule::Map}};
constexpr Named kSubjects[] = {
    {"section", Rule::Section}, {"parameter", Rule::Parameter}, {"member", Rule::Member}};
constexpr settings::Range kVersions{1, INT32_MAX};
constexpr char kVersionMember[] = "version";
constexpr char kRules[] = "rules";
constexpr char kTo[] = "to";
constexpr char kValues[] = "values";

// The only one of some words that an object has; null, which is a fault, if it has none or several.
template <typename Words>
const Named* onlyOf(const Words& words, const Node& node) {
  const Named* found = nullptr;
  std::vector<std::string> names;
  int count = 0;
  for (const Named& each : words) {
    names.emplace_back(each.word);
    if (!node.value().contains(each.word)) continue;
    found = &each;
    ++count;
  }
  if (count != 1) node.refuse("it must have one of " + joined(names));
  return count == 1 ? found : nullptr;
}

bool hasMember(const Node& node, const char* name) {
  if (!node.value().contains(name)) node.refuseMissing(name);
  return node.value().contains(name);
}

// A name as files have them: whatever else it held would end it, or the file.
bool isName(const std::string& name) {
  const auto isInName = [](unsigned char c) {
    return std::isalnum(c) != 0 || c >= 0x80 || c == '_' || c == ':' || c == '-' || c == '.';
  };
  const auto isFirst = [&](unsigned char c) {
    return isInName(c) && std::isdigit(c) == 0 && c != '-' && c != '.';
  };
  return !name.empty() && isFirst(static_cast<unsigned char>(name.front())) &&
         std::all_of(name.begin(), name.end(), isInName);
}

bool areNames(const std::string& path) {
  std::size_t begin = 0;
  for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', begin)) {
    if (!isName(path.substr(begin, end - begin))) return false;
    begin = end + 1;
  }
  return isName(path.substr(begin));
}

// Names with slashes between them, as many as the subject has at least.
std::string readPath(const Node& node, int subject) {
  std::string path = node.text();
  const auto slashes = std::count(path.begin(), path.end(), '/');
  const bool fits = subject == Rule::Section ? slashes == 0 : slashes > 0;
  if (node.value().is_string() && !(areNames(path) && fits))
    node.refuse(subject == Rule::Section ? "it must be one name"
                                         : "it must be names with slashes between them");
  return path;
}

// A member keeps its element: only its own name is given.
std::string readTarget(const Node& node, int subject) {
  return readPath(node, subject == Rule::Parameter ? Rule::Parameter : Rule::Section);
}

void readValues(const Node& node, Rule& rule) {
  if (!node.value().is_object() || node.value().empty())
    return node.refuse("it must be an object of old and new values");
  for (const std::string& name : node.value().names())
    rule.values.emplace_back(name, node.member(name).text());
}

void readBody(const Node& body, Rule& rule) {
  std::vector<std::string> names = {"section", "parameter", "member"};
  if (rule.action == Rule::Rename) names.emplace_back(kTo);
  if (rule.action == Rule::Map) names.emplace_back(kValues);
  if (!body.isObjectOf(names)) return;
  const Named* subject = onlyOf(kSubjects, body);
  if (subject == nullptr) return;
  rule.subject = static_cast<Rule::Subject>(subject->value);
  rule.from = readPath(body.member(subject->word), subject->value);
  if (rule.action == Rule::Map && rule.subject == Rule::Section)
    body.member(subject->word).refuse("a section has no value");
  if (rule.action == Rule::Rename && hasMember(body, kTo)) {
    rule.to = readTarget(body.member(kTo), rule.subject);
    if (rule.to == rule.from) body.member(kTo).refuse("it is the name that it has");
    if (beginsWith(rule.to, rule.from + "/"))
      body.member(kTo).refuse("it is inside of what gets the name");
  }
  if (rule.action == Rule::Map && hasMember(body, kValues)) readValues(body.member(kValues), rule);
}

Rule readRule(const Node& node) {
  Rule rule{};
  if (!node.isObjectOf({kVersionMember, "rename", "drop", "map"})) return rule;
  if (hasMember(node, kVersionMember)) rule.version = node.member(kVersionMember).number(kVersions);
  const Named* action = onlyOf(kActions, node);
  if (action == nullptr) return rule;
  rule.action = static_cast<Rule::Action>(action->value);
  readBody(node.member(action->word), rule);
  return rule;
}

void readAll(const Node& list, Rules& rules) {
  if (!list.isArray()) return;
  for (std::size_t i = 0; i < list.value().size(); ++i) {
    const Node node = list.element(i);
    Rule rule = readRule(node);
    if (rule.version > rules.version)
      node.refuse("its version is above that of the file, " + std::to_string(rules.version));
    if (!rules.all.empty() && rule.version != 0 && rule.version < rules.all.back().version)
      node.refuse("rules must be in the order of their versions");
    rules.all.push_back(std::move(rule));
  }
}

}  // namespace

std::string Rule::text() const {
  const std::string word = kActions[action].word;
  return concat(word, " ", from, action == Rename ? " to " + to : "");
}

Rules readRules(const std::string& text, settings::Faults& faults) {
  const JsonText read = readJson(text);
  Rules rules;
  if (read.fault != 0) {
    faults.push_back({"", concat("byte ", read.fault, ": ", read.reason)});
    return rules;
  }
  for (const std::string& place : read.repeated) faults.push_back({place, "it occurs here twice"});
  const Node file(read.value, "", faults);
  if (!file.isObjectOf({"$schema", kVersionMember, kRules})) return rules;
  if (hasMember(file, kVersionMember))
    rules.version = file.member(kVersionMember).number(kVersions);
  if (hasMember(file, kRules)) readAll(file.member(kRules), rules);
  return rules;
}

Rules requireRules(const std::string& text, const std::string& name) {
  if (text.empty()) return {};
  settings::Faults faults;
  Rules rules = readRules(text, faults);
  if (!faults.empty())
    throw Refusal(
        concat(name, ": ", faults.front().place.empty() ? "" : faults.front().place + ": ",
               faults.front().reason, "; 'camcfg upgrade --check-rules' lists all faults"));
  return rules;
}

}  // namespace camcfg::tool::upgrade
