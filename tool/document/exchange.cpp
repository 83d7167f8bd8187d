#include "document/exchange.h"

#include <algorithm>
#include <map>

#include "base/plain_text.h"
#include "base/progress.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "device/change.h"
#include "document/differences.h"
#include "document/secrets.h"

namespace camcfg::tool::document {
namespace {

void requireKnown(const std::vector<std::string>& names) {
  const std::vector<std::string> known = exportNames();
  for (const std::string& name : names)
    if (!isAmong(known, name))
      throw Refusal(Status::Usage, "there is no section '" + name + "'; there are " +
                                       joined(known) + didYouMean(name, known));
}

// What a later import would have against the document once the section is to be changed.
void noteFaults(const device::Section& section, const Json& value, device::Plan& plan,
                Outcome& outcome) {
  settings::Faults faults;
  section.read(settings::Node(value, section.name, faults), value, plan);
  for (const settings::Fault& fault : faults)
    outcome.notes.push_back("note: " + fault.place + ": " + fault.reason +
                            "; an import that changes " + section.name + " will refuse it");
}

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

std::string listed(const std::vector<std::string>& names) {
  return names.empty() ? "nothing" : joined(names);
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
  progress.faults.push_back("written: " + listed(progress.written) +
                            "; not written: " + listed(progress.left));
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

Json changesOf(const std::vector<Transition>& transitions, bool showSecrets) {
  Json changes = Json::array();
  for (const auto& [section, before, after] : transitions)
    addDifferences(section->name, before, after, changes);
  return showSecrets ? changes : withMaskedSides(changes);
}

}  // namespace

std::vector<std::string> exportNames() {
  std::vector<std::string> names;
  for (const device::Section& section : allSections()) {
    const std::string group = section.name.substr(0, section.name.find('.'));
    if (!isAmong(names, group)) names.push_back(group);
    if (group != section.name) names.push_back(section.name);
  }
  return names;
}

Outcome exportSettings(const std::vector<std::string>& names, bool withSecrets) {
  requireKnown(names);
  Outcome outcome;
  outcome.value = {{kVersionMember, kVersion}};
  device::Plan plan{allSections()};
  std::size_t number = 0;
  for (const device::Section& section : allSections()) {
    const Stage stage(section.name, ++number, allSections().size());
    const bool wanted = std::any_of(names.begin(), names.end(), [&](const std::string& name) {
      return isWithin(section, name);
    });
    if (!wanted && !names.empty()) continue;
    const Json value = section.load();
    noteFaults(section, value, plan, outcome);
    outcome.value.at_path(pathTo(section)) = withSecrets ? value : withoutSecrets(section, value);
    if (withSecrets && holdsSecrets(section, value))
      outcome.notes.push_back("note: " + section.name +
                              " holds passwords in clear; '--no-secrets' leaves them out");
  }
  return outcome;
}

Outcome refusedFor(const settings::Faults& faults) {
  Outcome outcome;
  outcome.status = Status::Refused;
  outcome.value = {{"faults", Json::array()}};
  for (const auto& [place, reason] : faults) {
    const std::string where = place.empty() ? "document" : place;
    outcome.value["faults"].push_back({{"place", where}, {"reason", reason}});
    outcome.notes.push_back(std::string(where).append(": ").append(reason));
  }
  outcome.notes.emplace_back("nothing was changed");
  return outcome;
}

Outcome carriedOut(const std::vector<Transition>& transitions, const ImportOptions& options) {
  Outcome outcome;
  outcome.value["dryRun"] = options.rehearse;
  outcome.value["changes"] = changesOf(transitions, options.showSecrets);
  for (const auto& [section, before, after] : transitions)
    for (const std::string& loss : section->losses()) outcome.notes.push_back(loss);
  if (options.rehearse) return outcome;
  const Progress progress = carryOut(stepsOf(transitions));
  outcome.value["written"] = progress.written;
  outcome.value["notWritten"] = progress.left;
  outcome.status = progress.status;
  outcome.notes.insert(outcome.notes.end(), progress.faults.begin(), progress.faults.end());
  return outcome;
}

Outcome importSettings(const std::string& text, const ImportOptions& options) {
  settings::Faults faults;
  const std::vector<Transition> transitions = readDocument(text, faults);
  return faults.empty() ? carriedOut(transitions, options) : refusedFor(faults);
}

}  // namespace camcfg::tool::document
