#include "document/secrets.h"

#include <algorithm>

#include "settings/media.h"
#include "settings/secrets.h"

namespace camcfg::tool::document {
namespace {

using settings::Setting;
using settings::Table;

const Table* tableAt(const std::string& place) {
  for (const Table* table : settings::mediaTables())
    if (place.find(table->place) == 0) return table;
  return nullptr;
}

// The member that a place ends with: "password" of "live.srt[1].password"; empty if it ends with an
// element.
std::string lastMember(const std::string& place) {
  if (place.empty() || place.back() == ']') return "";
  return place.substr(place.rfind('.') + 1);
}

Json masked(const Table& table, const std::string& place, const Json& value) {
  if (!value.is_string()) return settings::withMaskedSecrets(value, table.settings);
  const Setting* setting = table.find(lastMember(place));
  return setting == nullptr || setting->masked == nullptr ? value
                                                          : Json(setting->masked(value.text()));
}

const Json* entryWithKey(const Json& entries, const char* key, const Json& sought) {
  for (const Json& entry : entries)
    if (entry.is_object() && entry.contains(key) && entry.at(key) == sought) return &entry;
  return nullptr;
}

}  // namespace

bool holdsSecrets(const device::Section& section, const Json& value) {
  return section.table != nullptr &&
         settings::withMaskedSecrets(value, section.table->settings) != value;
}

Json withoutSecrets(const device::Section& section, const Json& value) {
  return section.table == nullptr ? value
                                  : settings::withoutSecrets(value, section.table->settings);
}

Json withKeptSecrets(const device::Section& section, const Json& value, const Json& before) {
  const Table* table = section.table;
  if (table == nullptr || table->key == nullptr || !value.is_array() || !before.is_array())
    return value;
  Json result = value;
  for (Json& entry : result) {
    if (!entry.is_object() || !entry.contains(table->key)) continue;
    const Json* former = entryWithKey(before, table->key, entry.at(table->key));
    for (const Setting& setting : table->settings)
      if (setting.masked != nullptr && former != nullptr && !entry.contains(setting.member))
        entry[setting.member] = former->at(setting.member);
  }
  return result;
}

Json withMaskedSides(Json differences) {
  for (Json& difference : differences) {
    const std::string place = difference.at("place").text();
    const Table* table = tableAt(place);
    for (const char* side : {"before", "after"})
      if (table != nullptr) difference[side] = masked(*table, place, difference.at(side));
  }
  return differences;
}

}  // namespace camcfg::tool::document
