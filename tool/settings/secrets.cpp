#include "settings/secrets.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

#include "base/secret_address.h"
#include "settings/media.h"

namespace camcfg::tool::settings {
namespace {

constexpr char kMasked[] = "********";

// What is shown of a secret; none for a value that is none.
std::optional<std::string> maskOf(const Setting* setting, const Json& value) {
  if (setting == nullptr || setting->masked == nullptr || !value.is_string()) return std::nullopt;
  std::string masked = setting->masked(value.text());
  if (masked == value.text()) return std::nullopt;
  return masked;
}

Json replaced(Json value, const Settings& settings, bool isMasked) {
  if (value.is_array())
    for (Json& element : value) element = replaced(element, settings, isMasked);
  if (!value.is_object()) return value;
  Json result = Json::object();
  for (const auto& [name, member] : value.items()) {
    const Setting* setting = settingOf(settings, name);
    if (setting != nullptr && setting->inner != nullptr)
      result[name] = replaced(member, setting->inner->settings, isMasked);
    else if (const std::optional<std::string> mask = maskOf(setting, member); !mask)
      result[name] = member;
    else if (isMasked)
      result[name] = *mask;
  }
  return result;
}

// The section that a place is in: "live.rtsp[0].name" is not in "live.rts".
const Table* tableAt(const std::string& place) {
  for (const Table* table : mediaTables()) {
    const std::size_t length = std::strlen(table->place);
    if (beginsWith(place, table->place) &&
        (place.size() == length || place[length] == '[' || place[length] == '.'))
      return table;
  }
  return nullptr;
}

// The setting of a place, or the settings of the records that are there.
struct SettingAt {
  const Setting* setting = nullptr;
  const Settings* settings = nullptr;  // null: nothing is known of the place
};

SettingAt settingAt(const std::string& place) {
  const Table* table = tableAt(place);
  if (table == nullptr) return {};
  SettingAt found{nullptr, &table->settings};
  // The members of "live.srt[0].streams[1].id", from the outermost on.
  for (std::size_t dot = place.find('.', std::strlen(table->place)); dot != std::string::npos;) {
    const std::size_t next = place.find('.', dot + 1);
    const std::string member =
        place.substr(dot + 1, std::min(next, place.find('[', dot)) - dot - 1);
    found.setting = settingOf(*found.settings, member);
    if (found.setting == nullptr) return {};
    if (found.setting->inner != nullptr) found.settings = &found.setting->inner->settings;
    dot = next;
  }
  return found;
}

}  // namespace

std::string maskedPassword(const std::string& password) {
  return password.empty() ? password : kMasked;
}

std::string maskedUrl(const std::string& url) {
  return withMaskedAddress(url, kMasked, true);
}

bool hasSecrets(const Table& table) {
  return std::any_of(table.settings.begin(), table.settings.end(),
                     [](const Setting& setting) { return setting.masked != nullptr; });
}

Json withMaskedSecrets(const Json& value, const Settings& settings) {
  return replaced(value, settings, true);
}

bool isSecretAt(const std::string& place) {
  const SettingAt found = settingAt(place);
  return found.setting != nullptr && found.setting->masked != nullptr;
}

Json maskedAt(const std::string& place, const Json& value) {
  const auto [setting, settings] = settingAt(place);
  if (settings == nullptr) return value;
  if (!value.is_string()) return withMaskedSecrets(value, *settings);
  const std::optional<std::string> mask = maskOf(setting, value);
  return mask ? Json(*mask) : value;
}

Json withoutSecrets(const Json& value, const Settings& settings) {
  return replaced(value, settings, false);
}

Json withKeptSecrets(Json entries, const Table& table, const Json& before) {
  if (!entries.is_array() || !before.is_array()) return entries;
  std::map<Json, const Json*> former;
  for (const Json& entry : before)
    if (entry.is_object() && entry.contains(table.key)) former.emplace(entry.at(table.key), &entry);
  for (Json& entry : entries) {
    if (!entry.is_object() || !entry.contains(table.key)) continue;
    const auto own = former.find(entry.at(table.key));
    for (const Setting& setting : table.settings)
      if (setting.masked != nullptr && own != former.end() && !entry.contains(setting.member))
        entry[setting.member] = own->second->at(setting.member);
  }
  return entries;
}

}  // namespace camcfg::tool::settings
