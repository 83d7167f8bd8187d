#include "document/transitions.h"

#include <map>

#include "base/progress.h"
#include "base/refusal.h"
#include "device/former_files.h"
#include "document/differences.h"
#include "document/secrets.h"

namespace camcfg::tool::document {
namespace {

const cli::Table kChanges{"changes",
                          {{"PLACE", "{place}"}, {"BEFORE", "{before-}"}, {"AFTER", "{after+}"}}};

// What was written and what was not, by the names of the steps.
struct Progress {
  std::vector<std::string> written;
  std::vector<std::string> left;
  Status status = Status::Done;
  std::vector<std::string> faults;
};

std::vector<device::Step> stepsOf(const std::vector<Transition>& transitions) {
  std::vector<device::Step> steps;
  for (const auto& [section, before, after] : transitions)
    for (const device::Step& step : section->steps(before, after)) steps.push_back(step);
  return steps;
}

device::FormerFiles formerOf(const std::vector<device::Step>& steps) {
  std::map<std::string, std::size_t> growth;
  for (const device::Step& step : steps) growth[step.path] += step.growth;
  return device::FormerFiles(growth);
}

std::string joined(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list.empty() ? "nothing" : list;
}

void giveUp(Progress& progress, device::FormerFiles& former) {
  const std::vector<std::string> faults = former.putBack();
  if (faults.empty()) {
    progress.left.insert(progress.left.begin(), progress.written.begin(), progress.written.end());
    progress.written.clear();
    progress.faults.emplace_back("all is as it was before");
    return;
  }
  progress.faults.insert(progress.faults.end(), faults.begin(), faults.end());
  progress.faults.push_back("written: " + joined(progress.written) +
                            "; not written: " + joined(progress.left));
}

Progress carryOut(const std::vector<device::Step>& steps) {
  device::FormerFiles former = formerOf(steps);
  Progress progress;
  std::size_t number = 0;
  for (const device::Step& step : steps) try {
      const Stage stage(step.what, ++number, steps.size());
      if (progress.faults.empty()) step.carryOut();
      (progress.faults.empty() ? progress.written : progress.left).push_back(step.what);
    } catch (const Refusal& refusal) {
      progress.status = refusal.status();
      progress.faults.emplace_back(refusal.what());
      progress.left.push_back(step.what);
    }
  if (!progress.faults.empty()) giveUp(progress, former);
  return progress;
}

void carryOut(cli::Answer& answer, const std::vector<Transition>& transitions) {
  const Progress progress = carryOut(stepsOf(transitions));
  answer.value["written"] = progress.written;
  answer.value["notWritten"] = progress.left;
  answer.status = progress.status;
  answer.notes.insert(answer.notes.end(), progress.faults.begin(), progress.faults.end());
  if (progress.status != Status::Done) answer.layout.clear();
}

Json changesOf(const std::vector<Transition>& transitions, bool showSecrets) {
  Json changes = Json::array();
  for (const auto& [section, before, after] : transitions)
    addDifferences(section->name, before, after, changes);
  return showSecrets ? changes : withMaskedSides(changes);
}

}  // namespace

cli::Answer refusedFor(const settings::Faults& faults) {
  cli::Answer answer;
  answer.status = Status::Refused;
  answer.value = {{"faults", Json::array()}};
  for (const auto& [place, reason] : faults) {
    const std::string where = place.empty() ? "document" : place;
    answer.value["faults"].push_back({{"place", where}, {"reason", reason}});
    answer.notes.push_back(std::string(where).append(": ").append(reason));
  }
  answer.notes.emplace_back("nothing was changed");
  return answer;
}

cli::Answer carriedOut(const std::vector<Transition>& transitions, const ImportOptions& options,
                       const char* unchanged) {
  cli::Answer answer;
  answer.value["dryRun"] = options.rehearse;
  answer.value["changes"] = changesOf(transitions, options.showSecrets);
  if (transitions.empty())
    answer.layout = {cli::Line{unchanged}};
  else
    answer.layout = {kChanges};
  if (options.rehearse && !transitions.empty())
    answer.layout.emplace_back(cli::Line{"nothing was written"});
  for (const auto& [section, before, after] : transitions)
    for (const std::string& loss : section->losses()) answer.notes.push_back(loss);
  if (!options.rehearse) carryOut(answer, transitions);
  return answer;
}

}  // namespace camcfg::tool::document
