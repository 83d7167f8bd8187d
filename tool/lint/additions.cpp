#include "lint/additions.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "base/host.h"
#include "device/turn.h"
#include "lint/lint.h"
#include "lint/steering.h"

namespace camcfg::tool::lint {
namespace {

bool canBeRead(const std::string& bytes) {
  return !device::parsed(bytes)->Error();
}

// Findings of one rule in one file.
using Counts = std::map<std::pair<std::string, const Rule*>, int>;

Counts countsOf(const std::vector<Finding>& findings) {
  Counts counts;
  for (const Finding& finding : findings) ++counts[{finding.file, finding.rule}];
  return counts;
}

const device::FileChange* changeOf(const std::string& path,
                                   const std::vector<device::FileChange>& changes) {
  const auto change =
      std::find_if(changes.begin(), changes.end(),
                   [&](const device::FileChange& each) { return each.path == path; });
  return change == changes.end() ? nullptr : &*change;
}

// All main copies, before the changes.
std::vector<device::Contents> filesBefore(const std::vector<device::FileChange>& changes) {
  std::vector<device::Contents> files;
  for (const char* path : device::Turn::allFiles())
    if (const device::FileChange* change = changeOf(path, changes))
      files.push_back({path, change->before});
    else if (std::optional<std::string> bytes = readFile(path))
      files.push_back({path, std::move(*bytes)});
  return files;
}

}  // namespace

std::vector<Addition> additionsOf(const std::vector<device::FileChange>& changes) {
  if (!std::all_of(changes.begin(), changes.end(),
                   [](const device::FileChange& change) { return canBeRead(change.before); }))
    return {};
  std::vector<device::Contents> files = filesBefore(changes);
  const std::vector<Finding> before = lint(sourcesOf(files));
  for (device::Contents& file : files)
    if (const device::FileChange* change = changeOf(file.path, changes)) file.bytes = change->after;
  const std::vector<Finding> after = lint(sourcesOf(files));
  std::map<std::string, int> known;
  for (const Finding& finding : before) ++known[identityOf(finding)];
  Counts previous = countsOf(before);
  Counts counts = countsOf(after);
  std::vector<Addition> additions;
  for (const Finding& finding : after) {
    const std::pair<std::string, const Rule*> kind(finding.file, finding.rule);
    if (--known[identityOf(finding)] < 0)
      additions.push_back({finding, counts[kind] > previous[kind]});
  }
  return additions;
}

}  // namespace camcfg::tool::lint
