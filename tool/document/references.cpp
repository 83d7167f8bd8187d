#include "document/references.h"

#include <algorithm>

#include "base/plain_text.h"
#include "document/keyed.h"
#include "settings/media.h"

namespace camcfg::tool::document {
namespace {

using settings::Kind;
using settings::Setting;
using settings::Settings;
using settings::Table;

bool hasEntry(const Entries& all, const Table& table, const Json& key) {
  return std::any_of(all.begin(), all.end(), [&](const auto& section) {
    return section.first == &table &&
           std::any_of(section.second.begin(), section.second.end(),
                       [&](const Json& entry) { return entry.at(table.key) == key; });
  });
}

void addDangling(const Settings& settings, const std::string& place, const Json& record,
                 const Entries& all, std::vector<std::string>& faults) {
  const auto require = [&](const std::string& where, const Table& table, const Json& key) {
    if (!key.is_null() && !hasEntry(all, table, key))
      faults.push_back(std::string(where).append(": there is no ").append(nameOf(table, key)));
  };
  for (const Setting& setting : settings) {
    const Json& value = memberOrNothing(record, setting.member);
    const std::string own = place.empty() ? setting.member : memberPlace(place, setting.member);
    const Table* table = referredBy(setting);
    if (setting.kind == Kind::List) {
      for (std::size_t i = 0; i < value.size(); ++i)
        addDangling(setting.inner->settings, own + "[" + std::to_string(i) + "]", value.at(i), all,
                    faults);
    } else if (table != nullptr && value.is_array()) {
      for (const Json& key : value) require(own, *table, key);
    } else if (table != nullptr) {
      require(own, *table, value);
    }
  }
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
  Cleaning(const Table& table, const Json& key) : table_(table), key_(key) {}

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
  return std::string(table.entry) + " " + (key.is_string() ? quoted(key.text()) : key.dump());
}

Json& entriesOf(const Table& table, Entries& all) {
  return std::find_if(all.begin(), all.end(),
                      [&](const auto& section) { return section.first == &table; })
      ->second;
}

std::vector<std::string> danglingIn(const Table& table, const Json& entry, const Entries& all) {
  std::vector<std::string> faults;
  addDangling(table.settings, "", entry, all, faults);
  return faults;
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
