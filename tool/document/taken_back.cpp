#include "document/taken_back.h"

#include "base/plain_text.h"
#include "document/keyed.h"

namespace camcfg::tool::document {

Json TakenBack::from(const std::string& place, const Json& now, const Json& before,
                     const Json& after) {
  if (before == after || now == before) return now;
  if (now == after) return before;
  if (now.is_object() && before.is_object() && after.is_object())
    return fromObjects(place, now, before, after);
  if (const char* key = keyOf({&now, &before, &after}))
    return fromLists(key, place, now, before, after);
  conflicts_.push_back(place);
  return force_ ? before : now;
}

Json TakenBack::fromObjects(const std::string& place, const Json& now, const Json& before,
                            const Json& after) {
  Json result = now;
  for (const auto& [name, value] : now.items())
    result[name] = from(memberPlace(place, name), value, memberOrNothing(before, name),
                        memberOrNothing(after, name));
  return result;
}

// In the order of before; what has been added since comes last.
Json TakenBack::fromLists(const char* key, const std::string& place, const Json& now,
                          const Json& before, const Json& after) {
  const Keyed present(now, key);
  const Keyed former(before, key);
  const Keyed latter(after, key);
  std::vector<Json> keys = former.keys();
  for (const Json& other : present.keys())
    if (former.at(other).is_null()) keys.push_back(other);
  Json result = Json::array();
  for (const Json& each : keys) {
    Json record = from(placeOf(place, each), present.at(each), former.at(each), latter.at(each));
    if (!record.is_null()) result.push_back(std::move(record));
  }
  return result;
}

}  // namespace camcfg::tool::document
