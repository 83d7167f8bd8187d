#include "document/secrets.h"

#include "media/json.h"

namespace camcfg::tool::document {
namespace {

constexpr const char* kPassword = "password";
constexpr const char* kUrl = "url";

// As the list of targets shows it.
std::string maskedUrl(const std::string& url) {
  tag_CFG_RTMP_SESSION_T target;
  target.strUrl = url;
  return media::jsonOf({target}, media::Secrets::Masked).front().at(kUrl).text();
}

// What a member becomes for the eyes of others.
Json masked(const std::string& name, const Json& member) {
  if (!member.is_string() || member.text().empty()) return member;
  if (name == kPassword) return media::kMaskedPassword;
  return name == kUrl ? Json(maskedUrl(member.text())) : member;
}

enum class Secrets { Masked, LeftOut };

Json withSecrets(const Json& value, Secrets secrets) {
  if (!value.is_object()) {
    Json result = value;
    for (Json& element : result) element = withSecrets(element, secrets);
    return result;
  }
  Json result = Json::object();
  for (const auto& [name, member] : value.items()) {
    const Json shown = masked(name, member);
    if (shown == member)
      result[name] = withSecrets(member, secrets);
    else if (secrets == Secrets::Masked)
      result[name] = shown;
  }
  return result;
}

const Json* elementWithId(const Json& array, const Json& id) {
  for (const Json& element : array)
    if (element.is_object() && element.contains("id") && element.at("id") == id) return &element;
  return nullptr;
}

}  // namespace

Json withMaskedSecrets(const Json& value, const std::string& place) {
  if (value.is_string()) return masked(place.substr(place.rfind('.') + 1), value);
  return withSecrets(value, Secrets::Masked);
}

Json withMaskedSides(Json differences) {
  for (Json& difference : differences)
    for (const char* side : {"before", "after"})
      difference[side] =
          withMaskedSecrets(difference[side], difference["place"].text());
  return differences;
}

Json withoutSecrets(const Json& value) {
  return withSecrets(value, Secrets::LeftOut);
}

bool holdsSecrets(const Json& value) {
  return withMaskedSecrets(value) != value;
}

Json withKeptSecrets(const Json& value, const Json& before) {
  if (!value.is_array() || !before.is_array()) return value;
  Json result = value;
  for (Json& element : result) {
    if (!element.is_object() || !element.contains("id")) continue;
    const Json* former = elementWithId(before, element.at("id"));
    for (const char* name : {kPassword, kUrl})
      if (former != nullptr && former->contains(name) && !element.contains(name))
        element[name] = former->at(name);
  }
  return result;
}

}  // namespace camcfg::tool::document
