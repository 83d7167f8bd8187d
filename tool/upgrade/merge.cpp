#include "upgrade/merge.h"

#include <algorithm>

#include "base/plain_text.h"
#include "document/keyed.h"

namespace camcfg::tool::upgrade {
namespace {

using document::Keyed;
using document::memberOrNothing;

bool areObjects(std::initializer_list<const Json*> sides) {
  return std::all_of(sides.begin(), sides.end(),
                     [](const Json* side) { return side->is_object(); });
}

bool areIds(std::initializer_list<const Json*> sides) {
  return std::all_of(sides.begin(), sides.end(), [](const Json* side) {
    return side->is_array() && std::all_of(side->begin(), side->end(),
                                           [](const Json& id) { return id.is_number_integer(); });
  });
}

// Records without ids or names of their own are one value together.
const char* keyOf(const Json& base, const Json& factory, const Json& user) {
  const char* key = document::keyOf({&base, &factory, &user});
  return key == nullptr || *key == '\0' ? nullptr : key;
}

// The new set's keys in its order, then those that only the device has.
std::vector<Json> keysOf(const Keyed& factory, const Keyed& user) {
  std::vector<Json> keys = factory.keys();
  for (const Json& key : user.keys())
    if (factory.at(key).is_null()) keys.push_back(key);
  return keys;
}

}  // namespace

Json Merge::value(const std::string& place, const Json& base, const Json& factory,
                  const Json& user) {
  if (factory == user) return user;
  if (!ways_.hasBase) return withoutBase(place, factory, user);
  if (factory == base) return user;
  if (areObjects({&base, &factory, &user})) return members(place, base, factory, user);
  if (areIds({&base, &factory, &user})) return ids(place, base, factory, user);
  if (const char* key = keyOf(base, factory, user)) return records(key, place, base, factory, user);
  return user == base ? fromFactory(place, base, factory, user)
                      : conflict(place, base, factory, user);
}

// Nobody knows whether the new set brought a record, or the device had deleted it.
Json Merge::withoutBase(const std::string& place, const Json& factory, const Json& user) {
  if (user.is_null()) return fromFactory(place, {}, factory, user);
  if (const char* key = keyOf(user, factory, user)) {
    const Keyed present(user, key);
    const Keyed offered(factory, key);
    for (const Json& each : offered.keys())
      if (present.at(each).is_null())
        add({kLeftOut,
             document::placeOf(place, each),
             {},
             offered.at(each),
             {},
             {},
             "without an old set it may have been deleted here"});
  }
  return user;
}

void Merge::limit(const std::string& place, const Json& factory, const Json& user,
                  const Json& permitted, const std::string& reason) {
  for (Entry& entry : entries_)
    if (entry.place == place) entry.after = permitted;
  add({kLimit, place, {}, factory, user, permitted, reason});
}

void Merge::hold(const std::string& place, const Json& user, const std::string& reason) {
  entries_.erase(std::remove_if(entries_.begin(), entries_.end(),
                                [&](const Entry& entry) { return beginsWith(entry.place, place); }),
                 entries_.end());
  add({kHeld, place, {}, {}, user, user, reason});
}

Json Merge::fromFactory(const std::string& place, const Json& base, const Json& factory,
                        const Json& user) {
  if (ways_.held.count(place) != 0) return user;
  if (user.is_null())
    add({kAdded, place, base, factory, user, factory, "the new factory set has it"});
  else if (factory.is_null())
    add({kDropped, place, base, factory, user, factory, "the new factory set does not have it"});
  else
    add({kFactoryValue, place, base, factory, user, factory, "it was not changed here"});
  return factory;
}

Json Merge::conflict(const std::string& place, const Json& base, const Json& factory,
                     const Json& user) {
  const bool isFactory = ways_.prefersFactory && ways_.held.count(place) == 0;
  const char* reason = base.is_null()      ? "added here and by the factory set, differently"
                       : user.is_null()    ? "deleted here, changed by the factory set"
                       : factory.is_null() ? "changed here, deleted by the factory set"
                                           : "changed here and by the factory set, differently";
  add({kConflict, place, base, factory, user, isFactory ? factory : user, reason});
  return isFactory ? factory : user;
}

Json Merge::members(const std::string& place, const Json& base, const Json& factory,
                    const Json& user) {
  Json result = Json::object();
  const auto merge = [&](const std::string& name) {
    result[name] = value(memberPlace(place, name), memberOrNothing(base, name),
                         memberOrNothing(factory, name), memberOrNothing(user, name));
  };
  for (const std::string& name : factory.names()) merge(name);
  for (const std::string& name : user.names())
    if (!factory.contains(name)) merge(name);
  return result;
}

Json Merge::records(const char* key, const std::string& place, const Json& base,
                    const Json& factory, const Json& user) {
  const Keyed old(base, key);
  const Keyed offered(factory, key);
  const Keyed present(user, key);
  Json result = Json::array();
  for (const Json& each : keysOf(offered, present)) {
    Json record =
        value(document::placeOf(place, each), old.at(each), offered.at(each), present.at(each));
    if (!record.is_null()) result.push_back(std::move(record));
  }
  return result;
}

// One by one: an id that only one side added or took away.
Json Merge::ids(const std::string& place, const Json& base, const Json& factory, const Json& user) {
  Json result = Json::array();
  for (const Json& id : factory)
    if (isAmong(user, id) || !isAmong(base, id)) result.push_back(id);
  for (const Json& id : user)
    if (!isAmong(factory, id) && !isAmong(base, id)) result.push_back(id);
  if (result == user || ways_.held.count(place) != 0) return user;
  add({kFactoryValue, place, base, factory, user, result, "the changes of both are in it"});
  return result;
}

}  // namespace camcfg::tool::upgrade
