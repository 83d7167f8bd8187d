#include "document/stated.h"

#include <algorithm>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "document/keyed.h"
#include "settings/presets.h"
#include "settings/table.h"

namespace camcfg::tool::document {
namespace {

using settings::Setting;
using settings::Settings;

constexpr std::size_t kNowhere = std::string::npos;

bool isGiven(const Json& entry, const char* member) {
  return member != nullptr && !memberOrNothing(entry, member).is_null();
}

}  // namespace

const std::vector<std::string> kModes = {"merge", "replace", "override"};

Stated::Stated(const device::Section& section, const Json& stated, const Json& held, Mode mode,
               settings::Faults& faults)
    : mode_(mode), faults_(faults) {
  const Places places{section.name, section.name};
  if (section.table != nullptr)
    value_ = list({section.table->key, section.table->label, section.table->settings}, stated, held,
                  places);
  else if (section.name == kPresets)
    value_ = list({settings::kPresetId, nullptr, settings::presetSettings()}, stated, held, places);
  else
    value_ = stated;
  if (mode != Mode::Merge || section.table == nullptr || !value_.is_array()) return;
  for (Json& entry : value_)
    if (entry.is_object()) entry = settings::withAssumed(*section.table, entry);
}

void Stated::locate(settings::Faults& faults, std::size_t from) const {
  for (; from < faults.size(); ++from) {
    std::string& place = faults[from].place;
    for (std::size_t end = place.size(); end != kNowhere && end != 0;
         end = place.find_last_of(".[", end - 1)) {
      const auto found = places_.find(place.substr(0, end));
      if (found == places_.end()) continue;
      place.replace(0, end, found->second);
      break;
    }
  }
}

Json Stated::list(const List& form, const Json& stated, const Json& held, const Places& places) {
  if (!stated.is_array()) return stated;
  Json result = Json::array();
  for (const Slot& slot : slots(form, stated, held, places.stated)) {
    if (slot.isAbsent) continue;
    const std::string read = elementPlace(places.read, result.size());
    const std::string own = slot.stated != nullptr
                                ? elementPlace(places.stated, slot.position)
                                : placeOf(places.stated, slot.held->at(form.key));
    if (own != read) places_[read] = own;
    result.push_back(record(form.settings, slot, {read, own}));
  }
  return result;
}

std::vector<Stated::Slot> Stated::slots(const List& form, const Json& stated, const Json& held,
                                        const std::string& place) {
  std::vector<Slot> slots;
  const Json none;
  const Json& kept = mode_ == Mode::Merge ? held : none;
  for (const Json& entry : kept) slots.push_back({&entry});
  const Keyed byKey(kept, form.key);
  for (std::size_t i = 0; i < stated.size(); ++i) {
    const std::string own = elementPlace(place, i);
    const Json* entry = find(form, stated[i], byKey, kept, own);
    const bool isAbsent = isToBeAbsent(form, stated[i], own);
    if (entry == nullptr) {
      if (!isAbsent) slots.push_back({nullptr, &stated[i], i});
      continue;
    }
    Slot& slot = slots[static_cast<std::size_t>(entry - &kept.front())];
    if (slot.stated != nullptr)
      faults_.push_back(
          {memberPlace(own, form.key), "there is another one with this " + std::string(form.key)});
    slot = {slot.held, &stated[i], i, isAbsent};
  }
  return slots;
}

Json Stated::record(const Settings& settings, const Slot& slot, const Places& places) {
  if (slot.stated == nullptr) return *slot.held;
  if (!slot.stated->is_object()) return *slot.stated;
  Json result = slot.held == nullptr ? Json::object() : *slot.held;
  for (const auto& [name, member] : slot.stated->items()) {
    const Setting* setting = settingOf(settings, name);
    const bool isList = setting != nullptr && setting->kind == settings::Kind::List &&
                        setting->inner->key != nullptr;
    if (isList)
      result[name] = list({setting->inner->key, setting->inner->label, setting->inner->settings},
                          member, slot.held == nullptr ? Json() : memberOrNothing(*slot.held, name),
                          {memberPlace(places.read, name), memberPlace(places.stated, name)});
    else
      result[name] = member;
  }
  return result;
}

// What the device has of the entry that is meant; null if it has none.
const Json* Stated::find(const List& form, const Json& entry, const Keyed& byKey, const Json& held,
                         const std::string& place) {
  if (isGiven(entry, form.key)) {
    const Json& found = byKey.at(entry.at(form.key));
    return found.is_null() ? nullptr : &found;
  }
  if (!isGiven(entry, form.label)) return nullptr;
  const Json* found = nullptr;
  for (const Json& other : held) {
    if (memberOrNothing(other, form.label) != entry.at(form.label)) continue;
    if (found != nullptr) {
      faults_.push_back({place, concat("there is more than one with this ", form.label,
                                       "; give its ", form.key)});
      return nullptr;
    }
    found = &other;
  }
  return found;
}

bool Stated::isToBeAbsent(const List& form, const Json& entry, const std::string& place) {
  const Json& absent = memberOrNothing(entry, kAbsent);
  if (!entry.is_object() || !entry.contains(kAbsent)) return false;
  if (absent != true) {
    faults_.push_back({memberPlace(place, kAbsent),
                       "it must be true; leave it out of an entry that is to be there"});
    return true;
  }
  if (!isGiven(entry, form.key) && !isGiven(entry, form.label))
    faults_.push_back({place, std::string("which one is to be absent? give its ") + form.key});
  for (const std::string& name : entry.names())
    if (name != kAbsent && name != form.key && (form.label == nullptr || name != form.label))
      faults_.push_back(
          {memberPlace(place, name), "an entry that is to be absent has nothing else"});
  return true;
}

}  // namespace camcfg::tool::document
