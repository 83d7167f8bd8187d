#include "settings/subnet.h"

#include <arpa/inet.h>

#include <array>

#include "base/concat.h"
#include "base/plain_text.h"
#include "settings/network.h"

namespace camcfg::tool::settings {
namespace {

constexpr int kBits = 32;
constexpr std::uint32_t kAllBits = ~std::uint32_t{0};

std::string dotted(std::uint32_t address) {
  const in_addr bytes{htonl(address)};
  std::array<char, INET_ADDRSTRLEN> text{};
  return inet_ntop(AF_INET, &bytes, text.data(), text.size());
}

int bitsIn(std::uint32_t mask) {
  int bits = 0;
  for (; mask != 0; mask <<= 1) ++bits;
  return bits;
}

std::string whyNotThrough(std::uint32_t gateway, const std::string& text, const Subnet& subnet,
                          const std::string& address) {
  if (!subnet.has(gateway))
    return concat(text, " is not in ", subnet.text(), ", the subnet of ", address);
  if (text == address) return text + " is the card's own address";
  return subnet.whyNotAHost(gateway);
}

}  // namespace

std::optional<std::uint32_t> ipv4Of(const std::string& text) {
  in_addr address{};
  if (text.find('\0') != std::string::npos || inet_pton(AF_INET, text.c_str(), &address) != 1)
    return std::nullopt;
  return ntohl(address.s_addr);
}

std::optional<std::string> maskOfPrefix(const std::string& length) {
  const std::optional<long long> bits = decimal(length);
  if (!bits || *bits < 1 || *bits > kBits) return std::nullopt;
  return dotted(kAllBits << (kBits - *bits));
}

std::optional<Subnet> Subnet::of(const std::string& address, const std::string& mask) {
  const std::optional<std::uint32_t> host = ipv4Of(address);
  if (!host || !whyNotAMask(mask).empty()) return std::nullopt;
  return Subnet(*host, *ipv4Of(mask));
}

std::string Subnet::text() const {
  return concat(dotted(address_ & mask_), "/", bitsIn(mask_));
}

// A subnet of one or two addresses has no others than those of hosts.
std::string Subnet::whyNotAHost(std::uint32_t address) const {
  const std::uint32_t hosts = ~mask_;
  if (hosts <= 1) return "";
  if ((address & hosts) == 0) return concat(dotted(address), " is the subnet ", text(), " itself");
  if ((address & hosts) == hosts)
    return concat(dotted(address), " is the broadcast address of the subnet ", text());
  return "";
}

Unreachable unreachableIn(const std::string& address, const std::string& mask,
                          const std::string& gateway) {
  const std::optional<Subnet> subnet = Subnet::of(address, mask);
  if (!subnet) return {};
  const std::optional<std::uint32_t> through = ipv4Of(gateway);
  return {subnet->whyNotAHost(),
          through ? whyNotThrough(*through, gateway, *subnet, address) : std::string()};
}

}  // namespace camcfg::tool::settings
