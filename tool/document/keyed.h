#ifndef CAMCFG_TOOL_DOCUMENT_KEYED_H
#define CAMCFG_TOOL_DOCUMENT_KEYED_H

#include <map>
#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool::document {

/// A member of an object; null if it has none of this name.
const Json& memberOrNothing(const Json& object, TextRef name);

/// A list whose elements are found by a member, or by their position. The list must outlive it.
class Keyed {
 public:
  /// @param name  of the member; empty: the position
  Keyed(const Json& list, const char* name);

  /// Whether every element has a key of its own.
  bool works() const { return keys_.size() == list_.size(); }
  const std::vector<Json>& keys() const { return keys_; }
  /// The element with a key; null if there is none.
  const Json& at(const Json& key) const;
  /// The keys that another list has as well.
  std::vector<Json> keysIn(const Keyed& other) const;

 private:
  const Json& list_;
  std::vector<Json> keys_;
  std::map<Json, std::size_t> places_;
};

/// What distinguishes the records of lists: their "id", else their "name", else their position; null
/// if one of the values is no list of records.
const char* keyOf(const std::vector<const Json*>& lists);

/// A text as it is, other values as JSON, nothing for null.
std::string textOf(const Json& value);

/// "live.srt[1]" of the record with the key 1.
std::string placeOf(const std::string& list, const Json& key);

}  // namespace camcfg::tool::document

#endif
