#include "settings/address.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <sstream>

#include "base/plain_text.h"

namespace camcfg::tool::settings {
namespace {

constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestHostname = 253;

// Four decimal numbers, the first one highest.
std::optional<std::uint32_t> ipv4Of(const std::string& text) {
  in_addr address{};
  if (text.find('\0') != std::string::npos || inet_pton(AF_INET, text.c_str(), &address) != 1)
    return std::nullopt;
  return ntohl(address.s_addr);
}

std::string notDotted(const std::string& text) {
  return quoted(text) + " is not of the form 192.0.2.1";
}

std::string whyNotAHost(const std::string& text, bool loopback) {
  const std::optional<std::uint32_t> address = ipv4Of(text);
  if (!address) return notDotted(text);
  const std::uint32_t first = *address >> 24;
  if (first == 0) return quoted(text) + " is no host's address: it begins with 0";
  if (first == 127 && !loopback) return quoted(text) + " is the device itself, not its network";
  if (first >= 240) return quoted(text) + " is a reserved or the broadcast address";
  if (first >= 224) return quoted(text) + " is a multicast address";
  return "";
}

bool isLabelCharacter(char c) {
  return c == '-' ||
         (static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c)) != 0);
}

std::string whyNotALabel(const std::string& label) {
  if (label.empty()) return "has an empty label";
  if (label.size() > kLongestLabel)
    return "has a label of " + std::to_string(label.size()) + " characters, the limit is " +
           std::to_string(kLongestLabel);
  for (const char c : label)
    if (!isLabelCharacter(c)) return "has a character that is no letter, digit or hyphen";
  if (label.front() == '-' || label.back() == '-')
    return "has a label that begins or ends with a hyphen";
  return "";
}

}  // namespace

std::string whyNotAnAddress(const std::string& text) {
  return whyNotAHost(text, false);
}

std::string whyNotAnOptionalAddress(const std::string& text) {
  return text.empty() ? "" : whyNotAHost(text, false);
}

std::string whyNotAServer(const std::string& text) {
  return text.empty() ? "" : whyNotAHost(text, true);
}

std::string whyNotAMask(const std::string& text) {
  const std::optional<std::uint32_t> mask = ipv4Of(text);
  if (!mask) return notDotted(text);
  if (*mask == 0) return quoted(text) + " has no set bit";
  const std::uint32_t hosts = ~*mask;
  return (hosts & (hosts + 1)) == 0
             ? ""
             : quoted(text) + " is no netmask: its set bits are not all at the beginning";
}

std::string whyNotDomains(const std::string& text) {
  std::istringstream domains(text);
  for (std::string domain; std::getline(domains, domain, ' ');) {
    std::string fault = whyNotAHostname(domain);
    if (!fault.empty()) return fault;
  }
  return "";
}

std::string whyNotAHostname(const std::string& text) {
  if (text.size() > kLongestHostname)
    return "it has " + std::to_string(text.size()) + " characters, the limit is " +
           std::to_string(kLongestHostname);
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('.', start), text.size());
    const std::string fault = whyNotALabel(text.substr(start, end - start));
    if (!fault.empty()) return quoted(text) + " " + fault;
    start = end + 1;
  }
  return "";
}

}  // namespace camcfg::tool::settings
