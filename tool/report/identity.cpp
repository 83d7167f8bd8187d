#include "report/identity.h"

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cctype>

#include "base/plain_text.h"

namespace camcfg::tool::report {
namespace {

constexpr std::size_t kMac = 17;  // characters of 02:00:5e:10:00:01

bool isDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

bool isHex(char c) {
  return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// Four numbers, also those that are too large: they are addresses with a slip in them.
std::size_t lengthOfIpv4(const std::string& text, std::size_t at) {
  const bool isWithin =
      at > 0 && (isDigit(text[at - 1]) || (at > 1 && text[at - 1] == '.' && isDigit(text[at - 2])));
  std::size_t end = at;
  for (int group = 0; group < 4 && !isWithin; ++group) {
    if (group > 0 && text[end++] != '.') return 0;
    const std::size_t begin = end;
    while (isDigit(text[end])) ++end;
    if (end == begin || end - begin > 3) return 0;
  }
  return text[end] == '.' && isDigit(text[end + 1]) ? 0 : end - at;
}

std::size_t lengthOfIpv6(const std::string& text, std::size_t at) {
  if (!startsWord(text, at) || (at > 0 && text[at - 1] == ':')) return 0;
  std::size_t end = at;
  while (isHex(text[end]) || text[end] == ':' || text[end] == '.') ++end;
  in6_addr address{};
  for (; end > at + 2; --end) {
    if (inet_pton(AF_INET6, text.substr(at, end - at).c_str(), &address) == 1) return end - at;
    if (text[end - 1] != ':' && text[end - 1] != '.') return 0;
  }
  return 0;
}

std::size_t lengthOfMac(const std::string& text, std::size_t at) {
  if (text.size() < at + kMac || !startsWord(text, at)) return 0;
  for (std::size_t i = 0; i < kMac; ++i) {
    const char c = text[at + i];
    if (i % 3 == 2 ? (c != ':' && c != '-') || c != text[at + 2] : !isHex(c)) return 0;
  }
  return isWordCharacter(text[at + kMac]) ? 0 : kMac;
}

bool endsUrl(char c) {
  return std::isspace(static_cast<unsigned char>(c)) != 0 || c == '"' || c == '\'' || c == '<' ||
         c == '>' || c == ',' || c == ';';
}

}  // namespace

bool isWordCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || (c & 0x80) != 0;
}

bool startsWord(const std::string& text, std::size_t at) {
  return at == 0 || !isWordCharacter(text[at - 1]);
}

bool isCommon(const std::string& address) {
  return beginsWith(address, "255.") || beginsWith(address, "127.") || address == "0.0.0.0" ||
         address == "::1";
}

bool isNaming(const std::string& setting, const std::string& text) {
  const std::string name = inLowerCase(setting);
  if (name.find(' ') != std::string::npos) return false;  // it is what a remark is on
  const auto has = [&](const char* part) { return name.find(part) != std::string::npos; };
  constexpr std::array kParts = {"host", "devicename", "server", "domain",   "search", "serial",
                                 "ssid", "url",        "user",   "location", "contact"};
  // "Time/TimeNtp" is On, or the name of a server.
  constexpr std::array kOften = {"ntp", "mail", "mac"};
  return std::any_of(kParts.begin(), kParts.end(), has) ||
         (std::any_of(kOften.begin(), kOften.end(), has) &&
          !std::all_of(text.begin(), text.end(), isWordCharacter));
}

std::size_t lengthOfAddress(const std::string& text, std::size_t at) {
  std::size_t length = lengthOfMac(text, at);
  if (length == 0) length = lengthOfIpv6(text, at);
  if (length == 0) length = lengthOfIpv4(text, at);
  return isCommon(text.substr(at, length)) ? 0 : length;
}

std::size_t lengthOfUrl(const std::string& text, std::size_t at) {
  std::size_t end = at;
  while (std::isalnum(static_cast<unsigned char>(text[end])) != 0) ++end;
  if (end == at || text.compare(end, 3, "://") != 0) return 0;
  while (end < text.size() && !endsUrl(text[end])) ++end;
  return end - at;
}

}  // namespace camcfg::tool::report
