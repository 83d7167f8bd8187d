#include "document/differences.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "settings/node.h"

namespace camcfg::tool::document {
namespace {

const Json kNothing;

bool isListOfObjects(const Json& value) {
  return value.is_array() && std::all_of(value.begin(), value.end(),
                                         [](const Json& element) { return element.is_object(); });
}

const Json& memberOrNothing(const Json& object, const std::string& name) {
  const auto found = object.find(name);
  return found == object.end() ? kNothing : *found;
}

// The values of a member by which the elements can be told apart; none if they cannot.
std::vector<Json> keysBy(const char* name, const Json& list) {
  std::vector<Json> keys;
  std::set<Json> seen;
  for (const Json& element : list) {
    const Json& key = memberOrNothing(element, name);
    if (key.is_null() || !seen.insert(key).second) return {};
    keys.push_back(key);
  }
  return keys;
}

// A list whose elements are found by a key, or by their position.
class Keyed {
 public:
  Keyed(const Json& list, const char* key) : list_(list), keys_(keysBy(key, list)) {
    for (std::size_t i = 0; *key == '\0' && i < list.size(); ++i) keys_.emplace_back(i);
    for (std::size_t i = 0; i < keys_.size(); ++i) places_.emplace(keys_[i], i);
  }

  bool works() const { return keys_.size() == list_.size(); }
  const std::vector<Json>& keys() const { return keys_; }
  const Json& at(const Json& key) const {
    const auto found = places_.find(key);
    return found == places_.end() ? kNothing : list_[found->second];
  }

 private:
  const Json& list_;
  std::vector<Json> keys_;
  std::map<Json, std::size_t> places_;
};

std::vector<Json> commonKeys(const Keyed& of, const Keyed& with) {
  std::vector<Json> common;
  for (const Json& key : of.keys())
    if (!with.at(key).is_null()) common.push_back(key);
  return common;
}

void add(const std::string& place, const Json& before, const Json& after, Json& found) {
  found.push_back({{"place", place}, {"before", before}, {"after", after}});
}

void addElements(const std::string& place, const Keyed& before, const Keyed& after, Json& found) {
  const auto compare = [&](const Json& key) {
    const std::string name = key.is_string() ? key.get<std::string>() : key.dump();
    addDifferences(place + "[" + name + "]", before.at(key), after.at(key), found);
  };
  for (const Json& key : before.keys()) compare(key);
  for (const Json& key : after.keys())
    if (before.at(key).is_null()) compare(key);
  const std::vector<Json> former = commonKeys(before, after);
  const std::vector<Json> latter = commonKeys(after, before);
  if (former != latter) add(place + " (order)", former, latter, found);
}

void addMembers(const std::string& place, const Json& before, const Json& after, Json& found) {
  for (const auto& [name, member] : before.items())
    addDifferences(memberPlace(place, name), member, memberOrNothing(after, name), found);
  for (const auto& [name, member] : after.items())
    if (!before.contains(name)) addDifferences(memberPlace(place, name), kNothing, member, found);
}

}  // namespace

void addDifferences(const std::string& place, const Json& before, const Json& after, Json& found) {
  if (before == after) return;
  if (before.is_object() && after.is_object()) return addMembers(place, before, after, found);
  const bool lists = isListOfObjects(before) && isListOfObjects(after);
  for (const char* key : {"id", "name", ""}) {
    const Keyed former(before, key);
    const Keyed latter(after, key);
    if (lists && former.works() && latter.works()) return addElements(place, former, latter, found);
  }
  add(place, before, after, found);
}

}  // namespace camcfg::tool::document
