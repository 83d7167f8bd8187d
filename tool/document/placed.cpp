#include "document/placed.h"

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "document/document.h"
#include "document/keyed.h"
#include "settings/network.h"
#include "settings/presets.h"

namespace camcfg::tool::document {
namespace {

using settings::Setting;
using settings::Settings;

constexpr char kInterface[] = "intf";

// "Lan0 (Eth0)"
std::string withOther(const std::string& name, const std::string& other) {
  return other.empty() ? name : concat(name, " (", other, ")");
}

// Whether a place is inside what is at another one.
bool isBelow(const std::string& above, const std::string& lower) {
  return lower.size() > above.size() && beginsWith(lower, above) &&
         (lower[above.size()] == '[' || lower[above.size()] == '.');
}

// The section that a place is in; null if it is in none.
const device::Section* sectionAt(const std::string& place) {
  for (const device::Section& section : allSections())
    if (isBelow(section.name, place)) return &section;
  return nullptr;
}

class Walk {
 public:
  explicit Walk(const std::function<void(const Placed&)>& visit) : visit_(visit) {}

  void inRecord(const std::string& place, const Settings& settings, Json& record,
                const std::string& of) {
    for (const Setting& setting : settings) {
      if (!record.contains(setting.member)) continue;
      Json& value = record.at(setting.member);
      const std::string own = memberPlace(place, setting.member);
      if (setting.kind == settings::Kind::List)
        inList(own, setting.inner->settings, setting.inner->key, setting.inner->label, value);
      else
        visit_({own, setting, value, of});
    }
  }

  // @param key, label  members; a record without a key goes by its position
  void inList(const std::string& place, const Settings& settings, const char* key,
              const char* label, Json& list, std::string (*sessionName)(const Json&) = nullptr) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      Json& record = list.at(i);
      const Json own = key == nullptr ? Json(i) : memberOrNothing(record, key);
      const std::string called = label == nullptr ? "" : textOf(memberOrNothing(record, label));
      const std::string of =
          sessionName == nullptr ? called : withOther(sessionName(record), called);
      inRecord(placeOf(place, own), settings, record, of);
    }
  }

  void inNetwork(const std::string& place, Json& network) {
    const Setting& hostname = settings::hostnameSetting();
    if (network.contains(hostname.member))
      visit_({memberPlace(place, hostname.member), hostname, network.at(hostname.member), ""});
    if (!network.contains(kCards)) return;
    Json& cards = network.at(kCards);
    for (const std::string& name : std::vector<std::string>(cards.names())) {
      inRecord(memberPlace(memberPlace(place, kCards), name), settings::cardSettings(),
               cards.at(name),
               withOther(name, textOf(memberOrNothing(cards.at(name), kInterface))));
    }
  }

 private:
  const std::function<void(const Placed&)>& visit_;
};

}  // namespace

const char* keyOf(const device::Section& section) {
  if (section.table != nullptr) return section.table->key;
  return section.name == kPresets ? settings::kPresetId : nullptr;
}

void forEachSetting(const device::Section& section, Json& value,
                    const std::function<void(const Placed&)>& visit) {
  Walk walk(visit);
  if (section.table != nullptr)
    walk.inList(section.name, section.table->settings, section.table->key, section.table->label,
                value, section.table->sessionName);
  else if (section.name == kPresets)
    walk.inList(section.name, settings::presetSettings(), settings::kPresetId,
                settings::kPresetDescription, value);
  else if (section.name == kNetwork)
    walk.inNetwork(section.name, value);
}

bool forOne(const device::Section& section, Json& value, const std::string& place,
            const std::function<void(const Placed&)>& use) {
  bool isFound = false;
  forEachSetting(section, value, [&](const Placed& placed) {
    if (placed.place != place || isFound) return;
    isFound = true;
    use(placed);
  });
  return isFound;
}

void at(const device::Section& section, Json& value, const std::string& place,
        const std::function<void(const Placed&)>& use) {
  if (forOne(section, value, place, use)) return;
  std::vector<std::string> known;
  forEachSetting(section, value, [&](const Placed& placed) {
    if (isBelow(placed.place, place))
      throw Refusal(concat(place, " is a part of ", placed.place, "; give that one as a whole"));
    known.push_back(placed.place);
  });
  if (partAt(section.name, value, place) != nullptr)
    throw Refusal(concat(
        place, " is more than one setting; give one, such as ",
        quoted(*std::find_if(known.begin(), known.end(),
                             [&](const std::string& each) { return isBelow(place, each); }))));
  throw Refusal(concat("there is no setting ", quoted(place), didYouMean(place, known)));
}

const Json* partAt(const std::string& own, const Json& value, const std::string& place) {
  if (place == own) return &value;
  const auto search = [&](const std::string& inner, const Json& part) -> const Json* {
    return place == inner || isBelow(inner, place) ? partAt(inner, part, place) : nullptr;
  };
  if (value.is_object())
    for (const auto& [name, member] : value.items())
      if (const Json* found = search(memberPlace(own, name), member)) return found;
  if (!value.is_array()) return nullptr;
  const char* key = keyOf({&value});
  for (std::size_t i = 0; i < value.size(); ++i)
    if (const Json* found = search(
            key == nullptr || *key == '\0' ? elementPlace(own, i) : placeOf(own, value[i].at(key)),
            value[i]))
      return found;
  return nullptr;
}

bool isInDocument(const std::string& word) {
  const device::Section* section = sectionAt(word);
  return section != nullptr && section->name != kParameters;
}

const device::Section& requireSection(const std::string& place) {
  if (const device::Section* section = sectionAt(place)) return *section;
  throw Refusal("there is no setting " + quoted(place));
}

std::string placeOfCard(const std::string& card, const Setting& setting) {
  return memberPlace(memberPlace(memberPlace(kNetwork, kCards), card), setting.member);
}

void nameByKeys(const device::Section& section, const Json& value, settings::Faults& faults) {
  const char* key = keyOf(section);
  if (key == nullptr || !value.is_array()) return;
  for (settings::Fault& fault : faults)
    for (std::size_t i = 0; i < value.size(); ++i) {
      const std::string counted = elementPlace(section.name, i);
      if (!beginsWith(fault.place, counted)) continue;
      fault.place.replace(0, counted.size(),
                          placeOf(section.name, memberOrNothing(value.at(i), key)));
      break;
    }
}

}  // namespace camcfg::tool::document
