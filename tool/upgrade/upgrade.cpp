#include "upgrade/upgrade.h"

#include <camcfg/types.h>

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "device/change.h"
#include "device/signals.h"
#include "device/turn.h"
#include "settings/secrets.h"
#include "upgrade/file_merge.h"
#include "upgrade/rules.h"

namespace camcfg::tool::upgrade {
namespace {

using device::Contents;

// All that an upgrade is going to do.
struct Plan {
  FactorySet installed;
  FactorySet next;  ///< the set that is going to be kept
  std::optional<FactorySet> base;
  std::vector<MergedFile> files{};
  std::vector<std::string> notes{};
  bool isMergedBefore = false;

  bool changesAnything() const {
    return std::any_of(files.begin(), files.end(),
                       [](const MergedFile& file) { return file.before != file.after; });
  }
  Entries conflicts() const {
    Entries all;
    for (const MergedFile& file : files)
      std::copy_if(file.entries.begin(), file.entries.end(), std::back_inserter(all),
                   [](const Entry& entry) { return entry.what == kConflict; });
    return all;
  }
};

// The rules of the old set. Those of a kept set that are faulty are passed by, with a note: nobody
// can correct them, and they are only needed on the way back.
Rules oldRulesOf(Plan& plan, bool isKept) {
  constexpr char kName[] = "the rules of the old set";
  if (!isKept) return requireRules(plan.base->rules, kName);
  Rules old;
  try {
    old = requireRules(plan.base->rules, kName);
  } catch (const Refusal& refusal) {
    plan.notes.push_back(std::string("note: not used: ") + refusal.what());
    settings::Faults ignored;
    old.version = std::max(0, readRules(plan.base->rules, ignored).version);
  }
  old.version = std::max(old.version, plan.base->applied);
  return old;
}

// The rules that lead from the old set to the new one. Those that lead back are the old set's.
std::vector<Rule> rulesFor(Plan& plan, const UpgradeOptions& options) {
  const Rules now = requireRules(options.rules.value_or(plan.installed.rules),
                                 options.rules ? "--rules" : kRulesFile);
  if (options.rules) plan.next.applied = std::max(plan.next.applied, now.version);
  if (!plan.base) return rulesBetween(0, now.version, now.all);
  const Rules old = oldRulesOf(plan, !options.from);
  return rulesBetween(old.version, now.version, old.version > now.version ? old.all : now.all);
}

Plan planOf(const UpgradeOptions& options, bool withRules) {
  const std::optional<FactorySet> kept = keptSet();
  Plan plan{installedSet(options.rehearse), {}, options.from ? options.from : kept};
  plan.next = completed(plan.installed, kept);
  const bool isKept = kept == plan.next;
  if (isKept) plan.next.applied = kept->applied;
  plan.isMergedBefore = isKept && !options.from;
  if (plan.installed.files.empty())
    throw Refusal(Status::Unusable, "there is no factory set in /app/resource/defcfg");
  const std::vector<Rule> rules = withRules ? rulesFor(plan, options) : std::vector<Rule>();
  for (const Contents& file : plan.installed.files) {
    const std::string now = readMain(file.path, options.rehearse);
    if (isKept && plan.base && isMergedFrom(*plan.base, {file.path, now})) {
      plan.files.push_back({file.path, now, now, {}, {}});
      continue;
    }
    const Sides sides{plan.base ? plan.base->of(file.path) : std::nullopt, file.bytes, now};
    plan.files.push_back(
        mergeFile(file.path, sides, rules, options.onConflict == OnConflict::Factory));
  }
  return plan;
}

// Without an old set nobody knows which rules were applied. A device that has the new structure
// needs none.
Plan planOf(const UpgradeOptions& options) {
  Plan plan = planOf(options, false);
  const bool isDone = !plan.base && !plan.changesAnything();
  return isDone ? std::move(plan) : planOf(options, true);
}

Json masked(const std::string& place, const Json& value, bool showSecrets) {
  return showSecrets ? value : settings::maskedAt(place, value);
}

Json jsonOf(const Entry& entry, bool showSecrets) {
  return {{"what", entry.what},
          {"place", entry.place},
          {"base", masked(entry.place, entry.base, showSecrets)},
          {"factory", masked(entry.place, entry.factory, showSecrets)},
          {"before", masked(entry.place, entry.before, showSecrets)},
          {"after", masked(entry.place, entry.after, showSecrets)},
          {"reason", entry.reason}};
}

// The settings are in force already, and the set is staged: the next start keeps it.
void keep(std::vector<std::string>& notes) try { keepStaged(); } catch (const Refusal& refusal) {
  notes.push_back(concat("note: the settings are in force, but the factory set is not kept: ",
                         refusal.what(), "; the next start tries again"));
}

// What stopped the upgrade may stop this as well; the next start then does it.
void settleIfPossible() try { settle(); } catch (const Refusal&) {
}

// The set is kept last, so that whatever ends the tool, the upgrade is either made or made again.
void carryOut(const Plan& plan, std::vector<std::string>& notes) {
  std::vector<Contents> merged;
  std::vector<device::Change> changes;
  for (const MergedFile& file : plan.files) {
    merged.push_back({file.path, file.after});
    if (file.before != file.after) changes.push_back(device::changeTo(merged.back()));
  }
  const std::optional<FactorySet> kept = keptSet();
  if (changes.empty() && kept == plan.next && kept->applied == plan.next.applied) return;
  const device::HeldSignals signals;
  stage(plan.next, plan.base ? &*plan.base : nullptr, merged);
  try {
    device::makeChanges(changes);
  } catch (const Refusal&) {
    settleIfPossible();
    throw;
  }
  keep(notes);
  signals.ignore();
}

Outcome outcomeOf(const Plan& plan, const UpgradeOptions& options) {
  Outcome outcome;
  outcome.value = {{"dryRun", options.rehearse},
                   {"mergedBefore", plan.isMergedBefore},
                   {"base", !plan.base     ? Json()
                            : options.from ? Json(options.fromName)
                                           : Json("/cfg1/.camcfg/factory")},
                   {"files", Json::array()},
                   {"changes", Json::array()},
                   {"conflicts", Json::array()},
                   {"findings", Json::array()}};
  for (const MergedFile& file : plan.files) {
    if (file.before != file.after) outcome.value["files"].push_back(file.path);
    for (const Entry& entry : file.entries)
      outcome.value["changes"].push_back(jsonOf(entry, options.showSecrets));
    for (const std::string& finding : file.findings) outcome.value["findings"].push_back(finding);
  }
  for (const Entry& entry : plan.conflicts()) outcome.value["conflicts"].push_back(entry.place);
  outcome.notes = plan.notes;
  if (!plan.base)
    outcome.notes.emplace_back(
        "note: there is no old factory set to compare with: every value that is permitted stays");
  for (const Contents& file : plan.installed.files)
    if (plan.base && !plan.base->of(file.path))
      outcome.notes.push_back(
          concat("note: the old factory set has no ", device::nameOf(file.path),
                 " to compare with: every value in it that is permitted stays"));
  return outcome;
}

// "; conflicts: 1, dropped: 2": how much there is that somebody should look at.
std::string countsOf(const Json& answer) {
  constexpr std::pair<const char*, const char*> kCounted[] = {{kConflict, "conflicts"},
                                                              {kLimit, "limited"},
                                                              {kDropped, "dropped"},
                                                              {kHeld, "held"},
                                                              {kUnmerged, "not merged"}};
  std::vector<std::string> counts;
  const auto add = [&](const char* word, std::size_t count) {
    if (count != 0) counts.push_back(concat(word, ": ", count));
  };
  const Json& changes = answer.at("changes");
  for (const auto& [what, word] : kCounted)
    add(word, static_cast<std::size_t>(std::count_if(
                  changes.begin(), changes.end(),
                  [&, &is = what](const Json& entry) { return entry.at("what") == is; })));
  add("found now", answer.at("findings").size());
  return counts.empty() ? "" : "; " + joined(counts);
}

}  // namespace

Outcome upgrade(const UpgradeOptions& options) {
  if (!options.rehearse) settle();
  const Plan plan = planOf(options);
  Outcome outcome = outcomeOf(plan, options);
  const Entries conflicts = plan.conflicts();
  if (options.onConflict == OnConflict::Stop && !conflicts.empty()) {
    std::vector<std::string> places;
    for (const Entry& conflict : conflicts) places.push_back(conflict.place);
    outcome.status = Status::Refused;
    outcome.notes.push_back(concat("changed here and by the new factory set: ", joined(places),
                                   "; nothing was changed"));
    return outcome;
  }
  if (!options.rehearse) carryOut(plan, outcome.notes);
  return outcome;
}

Outcome upgradeAtStart(Outcome booted) try {
  if (booted.status == Status::Unusable) return booted;
  const device::Turn turn(device::Turn::allFiles());
  settle();
  const FactorySet installed = installedSet();
  const std::optional<FactorySet> kept = keptSet();
  if (installed.files.empty() || kept == completed(installed, kept)) return booted;
  const Outcome outcome = upgrade({});
  // A device that only keeps its first set has nothing to compare with, and nothing to say about it.
  if (kept || !outcome.value.at("files").empty())
    booted.notes.insert(booted.notes.end(), outcome.notes.begin(), outcome.notes.end());
  if (outcome.value.at("files").empty()) return booted;
  booted.value["done"].push_back("the settings were merged with the new factory set" +
                                 countsOf(outcome.value));
  return booted;
} catch (const Refusal& refusal) {
  booted.notes.push_back(std::string("note: the factory set was not merged: ") + refusal.what());
  booted.status = std::max(booted.status, Status::Degraded);
  return booted;
}

Outcome checkRules(const std::optional<std::string>& text) {
  const FactorySet installed = installedSet();
  if (!text && installed.rules.empty())
    throw Refusal(std::string(kRulesFile) + " does not exist or is empty; name rules by '--rules'");
  settings::Faults faults;
  const Rules rules = readRules(text.value_or(installed.rules), faults);
  if (faults.empty() && !installed.files.empty()) {
    std::vector<device::Document> documents;
    std::vector<const tinyxml2::XMLDocument*> all;
    for (const Contents& file : installed.files)
      all.push_back(documents.emplace_back(device::parsed(file.bytes)).get());
    faults = faultsOf(rules, all);
  }
  Outcome outcome;
  outcome.value = {{"version", rules.version}, {"rules", rules.all.size()}};
  outcome.value["faults"] = Json::array();
  for (const auto& [place, reason] : faults)
    outcome.value["faults"].push_back(
        {{"place", place.empty() ? "document" : place}, {"reason", reason}});
  if (!faults.empty()) outcome.status = Status::Refused;
  return outcome;
}

}  // namespace camcfg::tool::upgrade
