#include "document/references.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "base/concat.h"
#include "base/plain_text.h"
#include "document/keyed.h"
#include "settings/media.h"

namespace camcfg::tool::document {
namespace {

using settings::Kind;
using settings::Setting;
using settings::Settings;
using settings::Table;

const Json& entriesIn(const Entries& all, const Table& table) {
  return std::find_if(all.begin(), all.end(),
                      [&](const auto& section) { return section.first == &table; })
      ->second;
}

void addDangling(const Settings& settings, const std::string& place, const Json& record,
                 const Entries& all, settings::Faults& faults) {
  const auto require = [&](const std::string& where, const Table& table, const Json& key) {
    const Json& entries = entriesIn(all, table);
    const bool exists = std::any_of(entries.begin(), entries.end(),
                                    [&](const Json& entry) { return entry.at(table.key) == key; });
    if (!key.is_null() && !exists)
      faults.push_back(
          {where, concat("there is no ", nameOf(table, key), nearestEntry(table, key, entries))});
  };
  for (const Setting& setting : settings) {
    const Json& value = memberOrNothing(record, setting.member);
    const std::string own = memberPlace(place, setting.member);
    const Table* table = referredBy(setting);
    if (setting.kind == Kind::List) {
      for (std::size_t i = 0; i < value.size(); ++i)
        addDangling(setting.inner->settings, elementPlace(own, i), value.at(i), all, faults);
    } else if (table != nullptr && value.is_array()) {
      for (std::size_t i = 0; i < value.size(); ++i)
        require(elementPlace(own, i), *table, value.at(i));
    } else if (table != nullptr) {
      require(own, *table, value);
    }
  }
}

// The entry whose number is nearest; null if there is none.
const Json* nearestByNumber(const Table& table, std::int64_t sought, const Json& entries) {
  const Json* nearest = nullptr;
  std::int64_t least = INT64_MAX;
  for (const Json& entry : entries) {
    if (!entry.at(table.key).is_number_integer()) continue;
    const std::int64_t distance = std::abs(entry.at(table.key).get<std::int64_t>() - sought);
    if (distance < least) nearest = &entry;
    least = std::min(least, distance);
  }
  return nearest;
}

// The one whose key or label is spelt most like it.
const Json* nearestByText(const Table& table, const std::string& sought, const Json& entries) {
  std::vector<std::string> known;
  std::vector<const Json*> owners;
  for (const Json& entry : entries)
    for (const char* member : {table.key, table.label})
      if (member != nullptr && !entry.at(member).is_null()) {
        known.push_back(textOf(entry.at(member)));
        owners.push_back(&entry);
      }
  const auto found = std::find(known.begin(), known.end(), nearestWord(sought, known));
  return found == known.end() ? nullptr : owners[static_cast<std::size_t>(found - known.begin())];
}

template <typename Condition>
bool erase(Json& list, const Condition& condition) {
  Json left = Json::array();
  for (const Json& each : list)
    if (!condition(each)) left.push_back(each);
  const bool isShorter = left.size() < list.size();
  list = std::move(left);
  return isShorter;
}

// Takes the references to an entry out of a record.
class Cleaning {
 public:
  Cleaning(const Table& table, Json key) : table_(table), key_(std::move(key)) {}

  // Whether the record cannot be without what it referred to.
  bool clean(const Settings& settings, Json& record) {
    bool goes = false;
    for (const Setting& setting : settings)
      if (record.contains(setting.member)) goes = cleanMember(settings, setting, record) || goes;
    return goes;
  }

  bool hasFound() const { return hasFound_; }

 private:
  bool cleanMember(const Settings& settings, const Setting& setting, Json& record) {
    Json& value = record.at(setting.member);
    if (setting.kind == Kind::List) return cleanList(setting.inner->settings, value);
    if (referredBy(setting) != &table_) return false;
    if (setting.kind == Kind::Ids) {
      const bool isFound = erase(value, [&](const Json& each) { return each == key_; });
      hasFound_ = hasFound_ || isFound;
      return isFound && value.empty();
    }
    if (value != key_) return false;
    hasFound_ = true;
    if (setting.channelType != nullptr) {
      value = nullptr;
      return false;
    }
    const Json* other = otherFor(settings, record);
    if (other == nullptr) return true;
    value = Json(*other);
    return false;
  }

  bool cleanList(const Settings& settings, Json& list) {
    Json left = Json::array();
    for (Json& record : list)
      if (!clean(settings, record)) left.push_back(std::move(record));
    const bool isShorter = left.size() < list.size();
    list = std::move(left);
    return isShorter && list.empty();
  }

  // A cache that carried the source carries another one that it allows.
  const Json* otherFor(const Settings& settings, const Json& record) const {
    for (const Setting& setting : settings)
      if (setting.kind == Kind::Ids && referredBy(setting) == &table_)
        for (const Json& each : record.at(setting.member))
          if (each != key_) return &each;
    return nullptr;
  }

  const Table& table_;
  const Json key_;
  bool hasFound_ = false;
};

}  // namespace

const Table* referredBy(const Setting& setting) {
  return setting.isChannel ? &settings::streamCaches() : setting.refersTo;
}

std::string nameOf(const Table& table, const Json& key) {
  return concat(table.entry, " ", key.is_string() ? quoted(key.text()) : key.dump());
}

Json& entriesOf(const Table& table, Entries& all) {
  return std::find_if(all.begin(), all.end(),
                      [&](const auto& section) { return section.first == &table; })
      ->second;
}

void resolveNames(const Settings& settings, const Entries& all, Json& record) {
  const auto resolve = [&](const Table& table, Json& reference) {
    if (!reference.is_string() || table.label == nullptr) return;
    const Json& entries = entriesIn(all, table);
    const auto isMeant = [&](const Json& entry) { return entry.at(table.label) == reference; };
    const auto found = std::find_if(entries.begin(), entries.end(), isMeant);
    if (std::count_if(entries.begin(), entries.end(), isMeant) == 1)
      reference = Json(found->at(table.key));
  };
  for (const Setting& setting : settings) {
    if (!record.contains(setting.member)) continue;
    Json& value = record.at(setting.member);
    const Table* table = referredBy(setting);
    if (setting.kind == Kind::List && value.is_array()) {
      for (Json& inner : value) resolveNames(setting.inner->settings, all, inner);
    } else if (table != nullptr && value.is_array()) {
      for (Json& each : value) resolve(*table, each);
    } else if (table != nullptr) {
      resolve(*table, value);
    }
  }
}

settings::Faults danglingIn(const Table& table, const std::string& place, const Json& entry,
                            const Entries& all) {
  settings::Faults faults;
  addDangling(table.settings, place, entry, all, faults);
  return faults;
}

settings::Faults allDanglingIn(const Table& table, const Entries& all) {
  settings::Faults faults;
  for (const Json& entry : entriesIn(all, table))
    addDangling(table.settings, placeOf(table.place, entry.at(table.key)), entry, all, faults);
  return faults;
}

std::string nearestEntry(const Table& table, const Json& sought, const Json& entries) {
  const Json* nearest = sought.is_number_integer()
                            ? nearestByNumber(table, sought.get<std::int64_t>(), entries)
                            : nearestByText(table, textOf(sought), entries);
  if (nearest == nullptr) return "";
  const Json& key = nearest->at(table.key);
  const Json label = table.label == nullptr ? Json() : nearest->at(table.label);
  const std::string name = key.is_string() ? quoted(key.text()) : key.dump();
  return concat("; did you mean ", name, label.is_string() ? concat(" (", label.text(), ")") : "",
                "?");
}

std::vector<std::string> takeAway(const Table& table, const Json& key, Entries& all) {
  erase(entriesOf(table, all), [&](const Json& entry) { return entry.at(table.key) == key; });
  std::vector<std::string> touched;
  for (auto& [other, entries] : all) {
    std::vector<Json> gone;
    for (Json& entry : entries) {
      Cleaning cleaning(table, key);
      const bool goes = cleaning.clean(other->settings, entry);
      if (goes) gone.push_back(entry.at(other->key));
      if (cleaning.hasFound()) touched.push_back(nameOf(*other, entry.at(other->key)));
    }
    for (const Json& each : gone)
      for (const std::string& name : takeAway(*other, each, all))
        if (!isAmong(touched, name)) touched.push_back(name);
  }
  return touched;
}

}  // namespace camcfg::tool::document
