#include "document/exchange.h"

#include <algorithm>
#include <map>

#include "base/outcome.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "device/change.h"
#include "settings/secrets.h"

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

void carryOut(const std::vector<device::Step>& steps, Outcome& outcome) {
  device::FormerFiles former = formerOf(steps);
  std::vector<std::string> written;
  std::vector<std::string> left;
  for (const device::Step& step : steps) try {
      const Stage stage(step.what, written.size() + left.size() + 1, steps.size());
      if (left.empty()) step.carryOut();
      (left.empty() ? written : left).push_back(step.what);
    } catch (const Refusal& refusal) {
      outcome.status = refusal.status();
      outcome.notes.emplace_back(refusal.what());
      left.push_back(step.what);
    }
  if (!left.empty()) {
    const std::vector<std::string> faults = former.putBack();
    outcome.notes.insert(outcome.notes.end(), faults.begin(), faults.end());
    if (faults.empty()) left.insert(left.begin(), written.begin(), written.end());
    if (faults.empty()) written.clear();
    outcome.notes.push_back(faults.empty()
                                ? "the previous contents were restored"
                                : "written: " + listed(written) + "; not written: " + listed(left));
  }
  outcome.value["written"] = written;
  outcome.value["notWritten"] = left;
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
    const Json open =
        section.table == nullptr ? value : settings::withoutSecrets(value, section.table->settings);
    outcome.value.at_path(pathTo(section)) = withSecrets ? value : open;
    if (withSecrets && open != value)
      outcome.notes.push_back("note: " + section.name +
                              " holds passwords in clear; '--no-secrets' leaves them out");
  }
  return outcome;
}

Outcome carriedOut(const Target& target, const ImportOptions& options) {
  if (!target.faults.empty()) return refusedFor(target.faults);
  Outcome outcome;
  outcome.value["dryRun"] = options.rehearse;
  outcome.value["changes"] = differencesOf(target.transitions, options.showSecrets);
  for (const Transition& transition : target.transitions)
    for (const std::string& loss : transition.section->losses()) outcome.notes.push_back(loss);
  if (!options.rehearse) carryOut(stepsOf(target.transitions), outcome);
  return outcome;
}

Outcome importSettings(const std::string& text, const ImportOptions& options) {
  return carriedOut(readDocument(text), options);
}

}  // namespace camcfg::tool::document
