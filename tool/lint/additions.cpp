#include "lint/additions.h"

#include <map>

#include "lint/lint.h"
#include "lint/steering.h"

namespace camcfg::tool::lint {
namespace {

std::vector<Finding> findingsIn(const std::string& path, const std::string& bytes) {
  return lint(sourcesOf({HostFile{path, bytes, ""}}));
}

bool canBeRead(const std::string& bytes) {
  return !device::parsed(bytes)->Error();
}

std::string identityOf(const Finding& finding) {
  return lint::identityOf(finding.file, finding.rule->id, finding.text);
}

std::map<const Rule*, int> countsOf(const std::vector<Finding>& findings) {
  std::map<const Rule*, int> counts;
  for (const Finding& finding : findings) ++counts[finding.rule];
  return counts;
}

void addAdditions(const device::FileChange& change, std::vector<Addition>& additions) {
  if (change.before == change.after || !canBeRead(change.before)) return;
  const std::vector<Finding> before = findingsIn(change.path, change.before);
  const std::vector<Finding> after = findingsIn(change.path, change.after);
  std::map<std::string, int> known;
  for (const Finding& finding : before) ++known[identityOf(finding)];
  std::map<const Rule*, int> former = countsOf(before);
  std::map<const Rule*, int> counts = countsOf(after);
  for (const Finding& finding : after)
    if (--known[identityOf(finding)] < 0)
      additions.push_back({finding, counts[finding.rule] > former[finding.rule]});
}

}  // namespace

std::vector<Addition> additionsOf(const std::vector<device::FileChange>& changes) {
  std::vector<Addition> additions;
  for (const device::FileChange& change : changes) addAdditions(change, additions);
  return additions;
}

}  // namespace camcfg::tool::lint
