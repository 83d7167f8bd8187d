#include "document/exchange.h"

#include <algorithm>
#include <optional>

#include "base/concat.h"
#include "base/json_bytes.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "device/change.h"
#include "document/keyed.h"
#include "document/placed.h"
#include "document/section_names.h"
#include "parameters/parameter.h"
#include "settings/network.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

// Which sections are to be exported, and what of them.
class Scope {
 public:
  /// @throws Refusal  a name is that of no section
  explicit Scope(const std::vector<std::string>& names) : isAll_(names.empty()) {
    const std::vector<std::string> known = exportNames();
    for (const std::string& name : names)
      if (isAmong(known, name))
        names_.push_back(name);
      else if (!isAmong(parameters::Parameters().sections(), name))
        throw Refusal(whyNoSection(name));
      else if (name == settings::kNetworkSection)
        names_.emplace_back(kNetwork);
      else
        parameters_.push_back(name);
  }

  bool includes(const device::Section& section) const {
    return isWhole(section) || (section.name == kParameters && !parameters_.empty());
  }

  Json cut(const device::Section& section, Json value) const {
    if (isWhole(section)) return value;
    Json part = Json::object();
    for (const std::string& name : value.names())
      if (isAmong(parameters_, name)) part[name] = value.at(name);
    return part;
  }

 private:
  bool isWhole(const device::Section& section) const {
    return isAll_ || std::any_of(names_.begin(), names_.end(),
                                 [&](const std::string& name) { return isWithin(section, name); });
  }

  bool isAll_;
  std::vector<std::string> names_;
  std::vector<std::string> parameters_;  // sections of them
};

// JSON has no names that are not UTF-8.
Json withoutUnprintable(const Json& value, const std::string& place, Outcome& outcome) {
  if (!value.is_object()) return value;
  Json result = Json::object();
  for (const auto& [name, member] : value.items())
    if (asUtf8(name) == name)
      result[name] = withoutUnprintable(member, memberPlace(place, name), outcome);
    else
      outcome.notes.push_back(
          concat("left out of ", place, ": ", asUtf8(name), ": its name is not UTF-8"));
  return result;
}

// What an import has against a value unless the device holds it.
void noteFaults(const device::Section& section, const Json& value, device::Plan& plan,
                Outcome& outcome) {
  settings::Faults faults;
  const Stated stated(section, value, Json(), Mode::Replace, faults);
  section.read(settings::Node(stated.value(), section.name, faults), value, plan);
  refuseNewBytes(section.name, value, nullptr, faults);
  for (const settings::Fault& fault : faults)
    outcome.notes.push_back(concat("note: ", fault.place, ": ", fault.reason,
                                   "; an import will refuse it on a device that does not have it"));
}

// What of a section can be exported; none if that is nothing, which only a partial export takes.
std::optional<Json> readForExport(const device::Section& section, bool isPartial,
                                  Outcome& outcome) {
  if (!isPartial) return section.load();
  try {
    device::Readable readable = readableOf(section);
    for (const device::Unread& unread : readable.unread)
      outcome.notes.push_back(concat("left out of ", section.name, ": ", unread.fault));
    return std::move(readable.value);
  } catch (const Refusal& refusal) {
    if (refusal.status() != Status::Unusable) throw;
    outcome.notes.push_back(concat("left out: ", section.name, ": ", refusal.what()));
    return std::nullopt;
  }
}

Json changedMembers(const Json& value, const Json& factory) {
  Json changed = Json::object();
  for (const auto& [name, member] : value.items()) {
    const Json& original = memberOrNothing(factory, name);
    if (member == original) continue;
    changed[name] =
        member.is_object() && original.is_object() ? changedMembers(member, original) : member;
  }
  return changed;
}

// What of a section is to be stated so that a device with factory values becomes like this one. A list is
// stated whole, since an import takes it so; the entries that it has lost are there for one that merges.
Json changedFrom(const device::Section& section, const Json& value, const Json& factory) {
  const char* key = keyOf(section);
  if (key == nullptr) return changedMembers(value, factory);
  if (value == factory) return Json::array();
  Json changed = value;
  const Keyed present(value, key);
  const Keyed original(factory, key);
  for (const Json& each : original.keys())
    if (present.at(each).is_null()) changed.push_back({{key, each}, {kAbsent, true}});
  return changed;
}

// Against the factory set, which is read when it is asked for.
class Unchanged {
 public:
  /// What differs; the whole, with a note, if there is nothing to compare it with.
  Json takenFrom(const device::Section& section, Json value, Outcome& outcome) {
    if (factory_.empty()) factory_ = loadFrom(device::Place::Default);
    const CopiedSection& copy = factory_.at(section.name);
    if (copy.fault.empty()) return changedFrom(section, value, copy.value);
    outcome.notes.push_back(concat("note: ", section.name, " is whole: ", copy.fault));
    return value;
  }

 private:
  CopiedSections factory_;
};

std::vector<device::Change> changesOf(const Target& target) {
  std::vector<device::Change> changes;
  for (const auto& [section, before, after, replaced] : target.transitions)
    for (const device::Change& change : replaced.empty()
                                            ? section->changes(before, after, target.force)
                                            : section->replacement(after))
      changes.push_back(change);
  return changes;
}

void carryOut(const std::vector<device::Change>& changes, bool rehearse, Outcome& outcome) {
  std::vector<std::string> names;
  names.reserve(changes.size());
  for (const device::Change& change : changes) names.push_back(change.what);
  bool areMade = false;
  try {
    device::makeChanges(changes, rehearse);
    areMade = true;
  } catch (const Refusal& refusal) {
    outcome.status = refusal.status();
    outcome.notes.emplace_back(refusal.what());
  }
  if (rehearse) return;
  outcome.value["written"] = areMade ? names : std::vector<std::string>();
  outcome.value["notWritten"] = areMade ? std::vector<std::string>() : names;
}

// Of a document that is faulty all over, the first faults say enough.
constexpr std::size_t kMostFaults = 100;

Outcome refusedFor(const settings::Faults& faults) {
  Outcome outcome;
  outcome.status = Status::Refused;
  outcome.value = {{"faults", Json::array()}};
  const std::size_t shown = std::min(faults.size(), kMostFaults);
  for (std::size_t i = 0; i < shown; ++i) {
    const auto& [place, reason] = faults[i];
    const std::string where = place.empty() ? "document" : place;
    outcome.value["faults"].push_back({{"place", where}, {"reason", reason}});
    outcome.notes.push_back(std::string(where).append(": ").append(reason));
  }
  if (const std::size_t more = faults.size() - shown; more != 0) {
    outcome.value["moreFaults"] = more;
    outcome.notes.push_back(concat("there are ", more, " more faults"));
  }
  outcome.notes.emplace_back("nothing was changed");
  return outcome;
}

std::vector<Deletion> deletionsOf(const Target& target) {
  std::vector<Deletion> deletions;
  for (const Transition& transition : target.transitions)
    if (const std::size_t entries = deletionsIn(transition); entries != 0)
      deletions.push_back({transition.section->name, entries});
  return deletions;
}

// All members of a shape, with the values that there are.
Json shaped(Json shape, const Json& value) {
  for (const auto& [name, member] : value.items()) shape[name] = member;
  return shape;
}

}  // namespace

Outcome exportSettings(const std::vector<std::string>& names, const ExportOptions& options) {
  const Scope scope(names);
  Outcome outcome;
  outcome.value = {{kVersionMember, kVersion}};
  device::Plan plan{allSections()};
  Unchanged unchanged;
  std::size_t number = 0;
  for (const device::Section& section : allSections()) {
    const Stage stage(section.name, ++number, allSections().size());
    if (!scope.includes(section)) continue;
    std::optional<Json> read = readForExport(section, options.isPartial, outcome);
    if (!read) continue;
    Json part = scope.cut(section, std::move(*read));
    if (options.isChanged) part = unchanged.takenFrom(section, std::move(part), outcome);
    if (options.isChanged && part.empty()) continue;
    const Json value = withoutUnprintable(part, section.name, outcome);
    noteFaults(section, value, plan, outcome);
    const Json open =
        section.table == nullptr ? value : settings::withoutSecrets(value, section.table->settings);
    outcome.value.at_path(pathTo(section)) = withBytes(options.withSecrets ? value : open);
    if (options.withSecrets && open != value)
      outcome.notes.push_back(concat("note: ", section.name,
                                     " holds passwords in clear; '--no-secrets' leaves them out"));
  }
  return outcome;
}

Outcome carriedOut(const Target& target, const ImportOptions& options) {
  if (!target.faults.empty()) return refusedFor(target.faults);
  Outcome outcome;
  outcome.notes = target.notes;
  outcome.value["dryRun"] = options.rehearse;
  outcome.value["changes"] = differencesOf(target.transitions, options.showSecrets);
  for (const Transition& transition : target.transitions) {
    for (const device::Unread& unread : transition.replaced)
      outcome.notes.push_back(
          concat("note: ", transition.section->name, " is replaced, since ", unread.fault));
    if (!transition.replaced.empty() || !transition.section->losses) continue;
    for (const std::string& loss : transition.section->losses()) outcome.notes.push_back(loss);
  }
  carryOut(changesOf(target), options.rehearse, outcome);
  return outcome;
}

Outcome importSettings(const std::string& text, Mode mode, const ImportOptions& options,
                       const std::function<void(const std::vector<Deletion>&)>& beforeDeleting) {
  const Target target = readDocument(text, mode, options.force);
  std::vector<Deletion> deletions = deletionsOf(target);
  const device::Reviewed reviewed([&](const auto& /*files*/) {
    if (!deletions.empty()) beforeDeleting(deletions);
    deletions.clear();  // a change may be made again
  });
  Outcome outcome = carriedOut(target, options);
  const bool isDone = outcome.status == Status::Done && !target.transitions.empty();
  outcome.value = shaped({{"changed", isDone},
                          {"mode", kModes[static_cast<std::size_t>(mode)]},
                          {"dryRun", options.rehearse},
                          {"changes", Json::array()},
                          {"faults", Json::array()},
                          {"findings", Json::array()}},
                         outcome.value);
  return outcome;
}

}  // namespace camcfg::tool::document
