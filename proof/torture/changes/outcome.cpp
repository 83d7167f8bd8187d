#include "torture/changes/outcome.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace camcfg::torture {
namespace {

constexpr char kState[] = "/cfg1/.camcfg";

bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.rfind(beginning, 0) == 0;
}

bool isSettings(const std::string& name) {
  return std::find(kSampleFiles.begin(), kSampleFiles.end(), name) != kSampleFiles.end();
}

// A path of the tool's own directory that may be there for good.
bool isState(const std::string& path) {
  if (path == kState) return true;
  const std::string name = path.substr(sizeof kState);
  constexpr const char* kKept[] = {"keep", "contents", "changes", "factory"};
  return std::any_of(std::begin(kKept), std::end(kKept),
                     [&](const char* kept) { return beginsWith(name, kept); });
}

std::string faultOf(const std::string& path) {
  const std::string name = path.substr(path.find('/', 1) + 1);
  if (beginsWith(path, kState)) return isState(path) ? "" : path + " is left";
  return isSettings(name) ? "" : path + " belongs to nobody";
}

}  // namespace

const char* wordFor(Whole whole) {
  constexpr const char* kWords[] = {"old", "new", "mixed", "lost"};
  return kWords[static_cast<int>(whole)];
}

Whole judge(const Tree& mains, const Tree& before, const Tree& after) {
  if (mains == before) return Whole::Old;
  if (mains == after) return Whole::New;
  const bool isKnown = mains.size() == before.size() &&
                       std::all_of(mains.begin(), mains.end(), [&](const auto& file) {
                         const auto old = before.find(file.first);
                         const auto fresh = after.find(file.first);
                         return (old != before.end() && old->second == file.second) ||
                                (fresh != after.end() && fresh->second == file.second);
                       });
  return isKnown ? Whole::Mixed : Whole::Lost;
}

std::vector<std::string> faultsOf(const Tree& tree) {
  std::vector<std::string> faults;
  for (const auto& [path, bytes] : tree) {
    const bool isPlace = path == "/cfg0" || path == "/cfg1" || beginsWith(path, "/run");
    const std::string fault = isPlace ? "" : faultOf(path);
    if (!fault.empty()) faults.push_back(fault);
  }
  for (const char* name : kSampleFiles) {
    const auto main = tree.find(mainPath(name));
    const auto backup = tree.find(backupPath(name));
    if (main == tree.end() || backup == tree.end() || main->second != backup->second)
      faults.push_back(std::string(name) + " is out of sync");
  }
  return faults;
}

void Tally::add(const Tally& other) {
  cuts += other.cuts;
  for (int i = 0; i < 4; ++i) found[i] += other.found[i];
  failed += other.failed;
  untrue += other.untrue;
  temporaries += other.temporaries;
  completed += other.completed;
  finished += other.finished;
}

void report(const std::string& where, const std::string& what) {
  std::fprintf(stderr, "WRONG: %s: %s\n", where.c_str(), what.c_str());
}

}  // namespace camcfg::torture
