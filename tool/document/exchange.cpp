#include "document/exchange.h"

#include <algorithm>
#include <optional>

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

// What of a section can be exported; none if that is nothing, which only a partial export takes.
std::optional<Json> readForExport(const device::Section& section, bool isPartial,
                                  Outcome& outcome) {
  if (!isPartial) return section.load();
  try {
    device::Readable readable = readableOf(section);
    for (const device::Unread& unread : readable.unread)
      outcome.notes.push_back("left out of " + section.name + ": " + unread.fault);
    return std::move(readable.value);
  } catch (const Refusal& refusal) {
    if (refusal.status() != Status::Unusable) throw;
    outcome.notes.push_back("left out: " + section.name + ": " + refusal.what());
    return std::nullopt;
  }
}

std::vector<device::Change> changesOf(const std::vector<Transition>& transitions) {
  std::vector<device::Change> changes;
  for (const auto& [section, before, after, replaced] : transitions)
    for (const device::Change& change :
         replaced.empty() ? section->changes(before, after) : section->replacement(after))
      changes.push_back(change);
  return changes;
}

void carryOut(const std::vector<device::Change>& changes, Outcome& outcome) {
  std::vector<std::string> names;
  names.reserve(changes.size());
  for (const device::Change& change : changes) names.push_back(change.what);
  bool areMade = false;
  try {
    device::makeChanges(changes);
    areMade = true;
  } catch (const Refusal& refusal) {
    outcome.status = refusal.status();
    outcome.notes.emplace_back(refusal.what());
  }
  outcome.value["written"] = areMade ? names : std::vector<std::string>();
  outcome.value["notWritten"] = areMade ? std::vector<std::string>() : names;
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

Outcome exportSettings(const std::vector<std::string>& names, const ExportOptions& options) {
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
    const std::optional<Json> read = readForExport(section, options.isPartial, outcome);
    if (!read) continue;
    const Json& value = *read;
    noteFaults(section, value, plan, outcome);
    const Json open =
        section.table == nullptr ? value : settings::withoutSecrets(value, section.table->settings);
    outcome.value.at_path(pathTo(section)) = options.withSecrets ? value : open;
    if (options.withSecrets && open != value)
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
  for (const Transition& transition : target.transitions) {
    for (const device::Unread& unread : transition.replaced)
      outcome.notes.push_back("note: " + transition.section->name + " is replaced, since " +
                              unread.fault);
    if (!transition.replaced.empty() || !transition.section->losses) continue;
    for (const std::string& loss : transition.section->losses()) outcome.notes.push_back(loss);
  }
  if (!options.rehearse) carryOut(changesOf(target.transitions), outcome);
  return outcome;
}

Outcome importSettings(const std::string& text, const ImportOptions& options) {
  return carriedOut(readDocument(text), options);
}

}  // namespace camcfg::tool::document
