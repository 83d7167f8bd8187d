#include "document/single.h"

#include <algorithm>
#include <map>
#include <optional>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "document/members.h"
#include "document/placed.h"
#include "document/references.h"
#include "parameters/parameter.h"
#include "settings/media.h"
#include "settings/network.h"
#include "settings/secrets.h"
#include "settings/value.h"

namespace camcfg::tool::document {
namespace {

// Sections as they are to be.
class ValuesEdit {
 public:
  void set(const std::string& place, const std::string& text) {
    if (!isInDocument(place)) return setParameter(place, text);
    requireNew(place);
    const device::Section& section = requireSection(place);
    at(section, valueOf(section), place,
       [&](const Placed& placed) { placed.value = valueFromWord(placed.setting, text); });
  }

  // To what the factory set has there.
  void reset(const std::string& place) {
    const device::Section& section = requireSection(place);
    CopiedSection factory = loadFrom(device::Place::Default).at(section.name);
    if (!factory.fault.empty())
      throw Refusal(concat(place, ": it has no factory value: ", factory.fault));
    at(section, valueOf(section), place, [&](const Placed& placed) {
      const bool isThere = forOne(section, factory.value, place,
                                  [&](const Placed& original) { placed.value = original.value; });
      if (!isThere) throw Refusal(place + ": it has no factory value; the factory set lacks it");
    });
  }

  Outcome carryOut(const ImportOptions& options) {
    Target target;
    target.force = options.force;
    const Entries before = entriesBefore();
    resolveAllNames(before);
    for (const device::Section& section : allSections()) {
      const auto value = values_.find(&section);
      if (value == values_.end()) continue;
      target.read(section, value->second, {held_.at(&section), {}});
      nameByKeys(section, value->second, target.faults);
    }
    addDangling(before, target.faults);
    return carriedOut(target, options);
  }

 private:
  void setParameter(const std::string& place, const std::string& text) {
    if (!parameters_) parameters_.emplace();
    const parameters::Parameter parameter = parameters_->requireAt(place);
    requireNew(parameter.path());
    if (!parameter.isSettable())
      throw Refusal(parameter.path() + ": the library sets no parameter inside another one");
    valueOf(sectionOf(kParameters))[parameter.section][parameter.name] =
        parameter.shown(text.c_str());
  }

  void requireNew(const std::string& place) {
    if (isAmong(given_, place)) throw Refusal(place + ": it is given twice");
    given_.push_back(place);
  }

  Json& valueOf(const device::Section& section) {
    const auto found = values_.find(&section);
    if (found != values_.end()) return found->second;
    return values_[&section] = held_[&section] = section.load();
  }

  // None if no entry is set, and nothing refers to anything else.
  Entries entriesBefore() const {
    Entries before;
    if (std::none_of(held_.begin(), held_.end(),
                     [](const auto& held) { return held.first->table != nullptr; }))
      return before;
    for (const device::Section& section : allSections()) {
      if (section.table == nullptr) continue;
      const auto held = held_.find(&section);
      before.emplace_back(section.table, held == held_.end() ? section.load() : held->second);
    }
    return before;
  }

  Entries entriesAfter(Entries entries) {
    for (const auto& [section, value] : values_)
      if (section->table != nullptr) entriesOf(*section->table, entries) = value;
    return entries;
  }

  void resolveAllNames(const Entries& before) {
    const Entries after = entriesAfter(before);
    for (auto& [section, value] : values_)
      if (section->table != nullptr)
        for (Json& entry : value) resolveNames(section->table->settings, after, entry);
  }

  // References that this change would leave without what they refer to.
  void addDangling(const Entries& before, settings::Faults& faults) {
    const Entries after = entriesAfter(before);
    if (before == after) return;
    for (std::size_t i = 0; i < after.size(); ++i) {
      const settings::Table& table = *after[i].first;
      const settings::Faults old = allDanglingIn(table, before);
      for (const settings::Fault& fault : allDanglingIn(table, after))
        if (!isAmong(old, fault)) faults.push_back(fault);
    }
  }

  std::optional<parameters::Parameters> parameters_;  // once one is set
  std::map<const device::Section*, Json> held_;
  std::map<const device::Section*, Json> values_;
  std::vector<std::string> given_;
};

}  // namespace

std::string placeInDocument(const std::string& word) {
  const std::string parameters = std::string(kParameters) + ".";
  if (beginsWith(word, parameters)) {
    std::string path = word.substr(parameters.size());
    std::replace(path.begin(), path.end(), '.', '/');
    return path;
  }
  const std::size_t field = word.rfind('/');
  const std::string section = std::string(settings::kNetworkSection) + "/";
  if (!beginsWith(word, section) || field < section.size()) return word;
  const settings::Setting* setting = settings::cardSettingOf(word.substr(field + 1));
  const std::string card = word.substr(section.size(), field - section.size());
  return setting == nullptr ? word : placeOfCard(card, *setting);
}

Outcome getSingle(const std::string& place) {
  const device::Section& section = requireSection(place);
  Json value = section.load();
  Outcome outcome;
  const auto answer = [&](const Placed& placed) {
    const settings::Setting& setting = placed.setting;
    const std::string permitted = settings::permittedFor(setting);
    outcome.value = {{"place", place},
                     {"value", settings::maskedAt(place, placed.value)},
                     {"unit", setting.unit == nullptr ? Json() : Json(setting.unit)},
                     {"permitted", permitted.empty() ? Json() : Json(permitted)},
                     {"help", setting.help}};
  };
  if (forOne(section, value, place, answer)) return outcome;
  if (const Json* part = partAt(section.name, value, place))
    outcome.value = {{"place", place},
                     {"value", settings::maskedAt(place, *part)},
                     {"unit", nullptr},
                     {"permitted", nullptr},
                     {"help", nullptr}};
  else
    at(section, value, place, answer);
  return outcome;
}

Outcome setSingles(const std::vector<std::pair<std::string, std::string>>& assignments,
                   const ImportOptions& options) {
  ValuesEdit edit;
  std::vector<std::string> faults;
  for (const auto& [place, text] : assignments) try {
      edit.set(place, text);
    } catch (const Refusal& refusal) {
      if (refusal.status() != Status::Refused) throw;
      faults.emplace_back(refusal.what());
    }
  if (!faults.empty()) throw Refusal(joined(faults, "; "));
  return edit.carryOut(options);
}

Outcome resetSingle(const std::string& place, const ImportOptions& options) {
  ValuesEdit edit;
  edit.reset(place);
  return edit.carryOut(options);
}

}  // namespace camcfg::tool::document
