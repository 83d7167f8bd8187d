#include "report/anonymous.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "base/plain_text.h"
#include "document/keyed.h"
#include "report/sources.h"

namespace camcfg::tool::report {
namespace {

constexpr char kAddress[] = "address";
constexpr char kName[] = "name";
constexpr char kUrl[] = "url";

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || (c & 0x80) != 0;
}

bool isIpv4(const std::string& text) {
  in_addr address{};
  return inet_pton(AF_INET, text.c_str(), &address) == 1;
}

bool isIpv6(const std::string& text) {
  in6_addr address{};
  return text.size() > 2 && inet_pton(AF_INET6, text.c_str(), &address) == 1;
}

// Netmasks, and addresses that every device has.
bool isCommon(const std::string& address) {
  return beginsWith(address, "255.") || beginsWith(address, "127.") || address == "0.0.0.0" ||
         address == "::1";
}

// Whether a setting is the name of a machine, of somebody's network or of a thing in it.
bool isNaming(const std::string& setting) {
  const std::string name = inLowerCase(setting);
  constexpr std::array kParts = {"host",   "devicename", "server", "domain", "search",
                                 "serial", "ssid",       "mac",    "url",    "location"};
  return std::any_of(kParts.begin(), kParts.end(),
                     [&](const char* part) { return name.find(part) != std::string::npos; });
}

// What a word of an address may have in it.
bool isOfAddress(char c) {
  return std::isxdigit(static_cast<unsigned char>(c)) != 0 || c == '.' || c == ':';
}

bool endsUrl(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0 || c == '"' || c == '\'' || c == '<' ||
         c == '>' || c == ',' || c == ';';
}

std::size_t beginOfScheme(const std::string& text, std::size_t at) {
  while (at > 0 && std::isalnum(static_cast<unsigned char>(text[at - 1])) != 0) --at;
  return at;
}

}  // namespace

Anonymizer::Anonymizer(const Json& facts) {
  const Json& system = facts.at("system");
  addName(kName, document::memberOrNothing(system, "name"));
  for (const Json& section : facts.at("sections")) addNamesIn(section);
  for (const auto& [original, placeholder] : placeholders_)
    if (!isIpv4(original) && !isIpv6(original)) names_.push_back(original);
  std::sort(names_.begin(), names_.end(), [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() > b.size() : a < b;
  });
}

Json Anonymizer::hidden(const Json& value) {
  if (value.is_string()) return hidden(value.text());
  Json result = value;
  if (value.is_array())
    for (Json& element : result) element = hidden(element);
  if (value.is_object()) {
    result = Json::object();
    for (const auto& [name, member] : value.items()) result[name] = hidden(member);
  }
  return result;
}

// Urls as a whole, then names, then what looks like an address.
std::string Anonymizer::hidden(const std::string& text) {
  std::string rest = text;
  std::string result;
  for (std::size_t at = rest.find("://"); at != std::string::npos; at = rest.find("://")) {
    const std::size_t begin = beginOfScheme(rest, at);
    const auto end = static_cast<std::size_t>(
        std::find_if(rest.begin() + static_cast<std::ptrdiff_t>(at), rest.end(), endsUrl) -
        rest.begin());
    result += hidden(rest.substr(0, begin)) + placeholder(kUrl, rest.substr(begin, end - begin));
    rest.erase(0, end);
  }
  rest = withoutNames(rest);
  for (std::size_t at = 0; at < rest.size();) {
    const auto end = static_cast<std::size_t>(
        std::find_if_not(rest.begin() + static_cast<std::ptrdiff_t>(at), rest.end(), isOfAddress) -
        rest.begin());
    std::string word = rest.substr(at, end - at);
    const std::size_t last = word.find_last_not_of(".:");
    const std::string address = word.substr(0, last == std::string::npos ? 0 : last + 1);
    const std::string host = address.substr(0, address.find(':'));  // a port may follow
    const bool startsWord = at == 0 || !isWordCharacter(rest[at - 1]);
    if (startsWord && isIpv4(host) && !isCommon(host))
      word.replace(0, host.size(), placeholder(kAddress, host));
    else if (startsWord && isIpv6(address) && !isCommon(address))
      word.replace(0, address.size(), placeholder(kAddress, address));
    result += word;
    at = end;
    if (at < rest.size()) result += rest[at++];
  }
  return result;
}

Json Anonymizer::key() const {
  Json key = Json::object();
  for (const std::string& original : order_) key[placeholders_.at(original)] = original;
  return key;
}

void Anonymizer::addName(const char* kind, const Json& value) {
  if (!value.is_string() || value.text().size() < 2) return;
  const std::string& text = value.text();
  if (text.find_first_not_of('*') == std::string::npos) return;
  if (isIpv4(text) || isIpv6(text)) {
    if (!isCommon(text)) placeholder(kAddress, text);
  } else if (text.find("://") != std::string::npos) {
    placeholder(kUrl, text);
  } else {
    placeholder(kind, text);
  }
}

void Anonymizer::addNamesIn(const Json& section) {
  if (section.contains("hostname")) addName(kName, section.at("hostname"));
  if (section.contains("cards"))
    for (const Json& card : section.at("cards"))
      for (const auto& [name, value] : card.items())
        if (isNaming(name)) addName(kName, value);
  if (section.contains("rows"))
    for (const Json& row : section.at("rows"))
      if (isNaming(row.at("name").text()))
        for (const char* member : {"value", "factory"}) addName(kName, row.at(member));
  for (const char* list : {"entries", "factory"})
    if (section.contains(list))
      for (const Json& entry : section.at(list))
        if (entry.is_object())
          for (const auto& [name, value] : entry.items())
            if (isNaming(name)) addName(kName, value);
}

std::string Anonymizer::placeholder(const char* kind, const std::string& original) {
  std::string& placeholder = placeholders_[original];
  if (!placeholder.empty()) return placeholder;
  order_.push_back(original);
  placeholder = std::string("[") + kind + " " + std::to_string(++counts_[kind]) + "]";
  return placeholder;
}

std::string Anonymizer::withoutNames(const std::string& text) const {
  std::string result = text;
  for (const std::string& name : names_) {
    const std::string& placeholder = placeholders_.at(name);
    for (std::size_t at = result.find(name); at != std::string::npos; at = result.find(name, at)) {
      const std::size_t end = at + name.size();
      const bool isWhole = (at == 0 || !isWordCharacter(result[at - 1])) &&
                           (end == result.size() || !isWordCharacter(result[end]));
      if (isWhole) result.replace(at, name.size(), placeholder);
      at += isWhole ? placeholder.size() : name.size();
    }
  }
  return result;
}

Json anonymous(const Json& facts, Json& key) {
  Anonymizer anonymizer(facts);
  Json without = facts;
  without["services"] = nullptr;
  Json hidden = anonymizer.hidden(without);
  hidden["services"] = servicesOf(hidden);
  hidden["made"]["anonymous"] = true;
  key = anonymizer.key();
  return hidden;
}

}  // namespace camcfg::tool::report
