#ifndef CAMCFG_TOOL_SETTINGS_SUBNET_H
#define CAMCFG_TOOL_SETTINGS_SUBNET_H

#include <cstdint>
#include <optional>
#include <string>

namespace camcfg::tool::settings {

/// The netmask of all multicast addresses, 224.0.0.0/4.
inline constexpr std::uint32_t kAllMulticast = 0xf0000000;

/// Four decimal numbers, the first one highest; none if the text is not of the form 192.0.2.1.
std::optional<std::uint32_t> ipv4Of(const std::string& text);

/// The netmask of a prefix length, 1..32: "255.255.255.0" of "24"; none if it is no such number.
std::optional<std::string> maskOfPrefix(const std::string& length);

/// The subnet that an address is in.
class Subnet {
 public:
  /// @return none if one of them is not of the form, or the mask is no netmask
  static std::optional<Subnet> of(const std::string& address, const std::string& mask);

  bool has(std::uint32_t address) const { return (address & mask_) == (address_ & mask_); }
  /// "192.0.2.0/24"
  std::string text() const;
  /// Why an address in it is not that of a host; empty if it is.
  std::string whyNotAHost(std::uint32_t address) const;
  /// The same of the address that it is the subnet of.
  std::string whyNotAHost() const { return whyNotAHost(address_); }

 private:
  Subnet(std::uint32_t address, std::uint32_t mask) : address_(address), mask_(mask) {}

  std::uint32_t address_;
  std::uint32_t mask_;
};

/// What keeps a card with an address of its own from its network; empty where nothing does.
struct Unreachable {
  std::string address;  ///< why its address is not that of a host
  std::string gateway;  ///< why its gateway is not another host of the same subnet
};

/// Texts that are no addresses, or no netmask, are passed by.
Unreachable unreachableIn(const std::string& address, const std::string& mask,
                          const std::string& gateway);

}  // namespace camcfg::tool::settings

#endif
