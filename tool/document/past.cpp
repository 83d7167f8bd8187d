#include "document/past.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/change.h"
#include "device/history.h"
#include "document/taken_back.h"

namespace camcfg::tool::document {
namespace {

[[noreturn]] void refuseUnknown(int number) {
  const std::vector<device::RecordedChange> changes = device::history();
  std::vector<int> kept;
  kept.reserve(changes.size());
  for (const device::RecordedChange& change : changes) kept.push_back(change.number);
  throw Refusal(concat("change ", number, " is not kept",
                       kept.empty() ? "; no change is" : "; there are " + joined(kept)));
}

device::RecordedChange requireChange(int number) {
  std::optional<device::RecordedChange> change = device::changeOfNumber(number);
  if (!change) refuseUnknown(number);
  return *change;
}

using Side = std::string device::FileChange::*;

CopiedSections sectionsOf(const std::vector<device::FileChange>& files, Side side) {
  std::vector<device::Contents> contents;
  contents.reserve(files.size());
  for (const device::FileChange& file : files) contents.push_back({file.path, file.*side});
  return loadFrom(contents);
}

// What files hold on both sides, section by section.
std::vector<Transition> transitionsOf(const std::vector<device::FileChange>& files,
                                      std::vector<std::string>& notes) {
  const CopiedSections before = sectionsOf(files, &device::FileChange::before);
  const CopiedSections after = sectionsOf(files, &device::FileChange::after);
  std::vector<Transition> transitions;
  for (const device::Section& section : allSections()) {
    const auto former = before.find(section.name);
    if (former == before.end()) continue;
    const CopiedSection& latter = after.at(section.name);
    const std::string& fault = latter.fault.empty() ? former->second.fault : latter.fault;
    if (!fault.empty())
      notes.push_back(concat("note: ", section.name, " cannot be compared: ", fault));
    else if (former->second.value != latter.value)
      transitions.push_back({&section, former->second.value, latter.value});
  }
  return transitions;
}

// What becomes of the device when changes are taken back.
class Undoing {
 public:
  /// @param undone  the latest first
  Undoing(const std::vector<device::RecordedChange>& undone, bool force) : takenBack_(force) {
    for (const device::RecordedChange& change : undone)
      for (const device::FileChange& file : change.files) takeBack(file, undone);
  }

  const std::vector<std::string>& conflicts() const { return takenBack_.conflicts(); }
  const std::vector<std::string>& notes() const { return notes_; }

  std::vector<Transition> transitions() {
    std::vector<Transition> all = transitionsOf(restored_, notes_);
    all.insert(all.end(), merged_.begin(), merged_.end());
    return all;
  }

  std::vector<device::Change> changes() const {
    std::vector<device::Change> all;
    for (const device::FileChange& file : restored_)
      all.push_back(device::changeTo({file.path, file.after}));
    for (const Transition& merged : merged_)
      for (const device::Change& change :
           merged.section->changes(merged.before, merged.after, false))
        all.push_back(change);
    return all;
  }

 private:
  void takeBack(const device::FileChange& touched,
                const std::vector<device::RecordedChange>& undone) {
    if (isAmong(paths_, touched.path)) return;
    paths_.push_back(touched.path);
    device::requireDocument(touched.path);
    std::vector<device::FileChange> steps;
    for (const device::RecordedChange& change : undone)
      for (const device::FileChange& file : change.files)
        if (file.path == touched.path) steps.push_back(file);
    const std::string now = device::bytesOf(touched.path);
    std::string former = now;
    const bool isOurs = std::all_of(steps.begin(), steps.end(), [&](const auto& step) {
      return std::exchange(former, step.before) == step.after;
    });
    if (isOurs)
      restored_.push_back({touched.path, now, former});
    else
      merge(touched.path, steps);
  }

  // A program has saved the file since: only what the changes did is taken back.
  void merge(const std::string& path, const std::vector<device::FileChange>& steps) {
    std::map<const device::Section*, Json> sections;
    for (const device::Section& section : allSections())
      if (section.path == path) sections[&section] = section.load();
    std::map<const device::Section*, Json> former = sections;
    for (const device::FileChange& step : steps)
      for (const Transition& transition : transitionsOf({step}, notes_)) {
        Json& value = former.at(transition.section);
        value =
            takenBack_.from(transition.section->name, value, transition.before, transition.after);
      }
    for (const auto& [section, value] : sections)
      if (former.at(section) != value) merged_.push_back({section, value, former.at(section)});
  }

  TakenBack takenBack_;
  std::vector<std::string> paths_;
  std::vector<device::FileChange> restored_;
  std::vector<Transition> merged_;
  std::vector<std::string> notes_;
};

// The changes that are to be taken back, the latest first.
std::vector<device::RecordedChange> changesSince(std::optional<int> number) {
  const std::vector<device::RecordedChange> kept = device::history();
  if (kept.empty()) throw Refusal("there is nothing to undo: no change is kept");
  const int first = number.value_or(kept.back().number);
  requireChange(first);
  std::vector<device::RecordedChange> undone;
  for (auto change = kept.rbegin(); change != kept.rend() && change->number >= first; ++change)
    undone.push_back(requireChange(change->number));
  return undone;
}

}  // namespace

Json recordOf(const device::RecordedChange& change) {
  Json files = Json::array();
  for (const device::FileChange& file : change.files) files.push_back(file.path);
  return {{"number", change.number},
          {"time", utcText(change.time)},
          {"caller", change.caller},
          {"command", change.command},
          {"files", files}};
}

Outcome listChanges() {
  Outcome outcome;
  outcome.value = {{"keep", device::historyLimit()}, {"changes", Json::array()}};
  for (const device::RecordedChange& change : device::history())
    outcome.value["changes"].push_back(recordOf(change));
  return outcome;
}

Outcome showChange(int number, bool showSecrets) {
  const device::RecordedChange change = requireChange(number);
  Outcome outcome;
  outcome.value = recordOf(change);
  outcome.value["changes"] = differencesOf(transitionsOf(change.files, outcome.notes), showSecrets);
  return outcome;
}

Outcome undoChanges(std::optional<int> number, bool force, const ImportOptions& options) {
  const std::vector<device::RecordedChange> undone = changesSince(number);
  Undoing undoing(undone, force);
  Outcome outcome;
  outcome.value = {{"dryRun", options.rehearse}, {"undone", Json::array()}};
  for (const device::RecordedChange& change : undone)
    outcome.value["undone"].push_back(change.number);
  outcome.value["changes"] = differencesOf(undoing.transitions(), options.showSecrets);
  outcome.value["conflicts"] = undoing.conflicts();
  outcome.notes = undoing.notes();
  if (!undoing.conflicts().empty() && !force) {
    outcome.status = Status::Refused;
    outcome.notes.push_back(concat("set to something else since: ", joined(undoing.conflicts()),
                                   "; nothing was changed; '--force' takes them back as well"));
    return outcome;
  }
  if (!options.rehearse) device::makeChanges(undoing.changes());
  return outcome;
}

std::vector<std::string> takeBack(const device::RecordedChange& change) {
  const Undoing undoing({change}, false);
  device::makeChanges(undoing.changes());
  return undoing.conflicts();
}

}  // namespace camcfg::tool::document
