#include "document/keyed.h"

#include <algorithm>

#include "base/concat.h"

namespace camcfg::tool::document {
namespace {

const Json kNothing;

bool isListOfObjects(const Json& value) {
  return value.is_array() && std::all_of(value.begin(), value.end(),
                                         [](const Json& element) { return element.is_object(); });
}

}  // namespace

const Json& memberOrNothing(const Json& object, TextRef name) {
  const auto found = object.find(name);
  return found == object.end() ? kNothing : *found;
}

Keyed::Keyed(const Json& list, const char* name) : list_(list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Json key = *name == '\0' ? Json(i) : memberOrNothing(list[i], name);
    if (!key.is_null() && places_.emplace(key, i).second) keys_.push_back(key);
  }
}

const Json& Keyed::at(const Json& key) const {
  const auto found = places_.find(key);
  return found == places_.end() ? kNothing : list_[found->second];
}

std::vector<Json> Keyed::keysIn(const Keyed& other) const {
  std::vector<Json> common;
  for (const Json& key : keys_)
    if (!other.at(key).is_null()) common.push_back(key);
  return common;
}

const char* keyOf(const std::vector<const Json*>& lists) {
  if (!std::all_of(lists.begin(), lists.end(),
                   [](const Json* list) { return isListOfObjects(*list); }))
    return nullptr;
  for (const char* key : {"id", "name"})
    if (std::all_of(lists.begin(), lists.end(),
                    [&](const Json* list) { return Keyed(*list, key).works(); }))
      return key;
  return "";
}

std::string textOf(const Json& value) {
  return value.is_string() ? value.text() : value.is_null() ? "" : value.dump();
}

std::string placeOf(const std::string& list, const Json& key) {
  return concat(list, "[", key.is_null() ? key.dump() : textOf(key), "]");
}

}  // namespace camcfg::tool::document
