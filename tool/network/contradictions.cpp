#include "network/contradictions.h"

#include <algorithm>

#include "network/network.h"
#include "settings/subnet.h"
#include "settings/value.h"

namespace camcfg::tool::network {
namespace {

using settings::Setting;

constexpr char kStatic[] = "StaticIp";

const Setting& settingAt(const char* element) {
  return *settings::cardSettingOf(element);
}

std::string textIn(const Json& card, const Setting& setting) {
  const Json* value = card.find_path(setting.member);
  return value == nullptr ? "" : settings::inFile(setting, *value);
}

std::string whyNotThrough(std::uint32_t gateway, const std::string& text,
                          const settings::Subnet& subnet, const std::string& address) {
  if (!subnet.has(gateway))
    return text + " is not in " + subnet.text() + ", the subnet of " + address;
  if (text == address) return text + " is the card's own address";
  return subnet.whyNotAHost(gateway);
}

}  // namespace

std::vector<Contradiction> contradictionsIn(const Json& card) {
  std::vector<Contradiction> found;
  const std::string mode = textIn(card, settingAt("IpMode"));
  if (!mode.empty() && mode != kStatic) return found;
  const std::string address = textIn(card, settingAt("IpAddr"));
  const auto subnet = settings::Subnet::of(address, textIn(card, settingAt("NetMask")));
  if (!subnet) return found;
  const std::string why = subnet->whyNotAHost();
  if (!why.empty()) found.push_back({settingAt("IpAddr"), why});
  const std::string gateway = textIn(card, settingAt("GateWay"));
  const std::optional<std::uint32_t> through = settings::ipv4Of(gateway);
  if (!through) return found;
  const std::string whyNot = whyNotThrough(*through, gateway, *subnet, address);
  if (!whyNot.empty()) found.push_back({settingAt("GateWay"), whyNot});
  return found;
}

std::vector<std::string> remarksOn(const Json& before, const Json& after) {
  std::vector<std::string> remarks;
  for (const auto& [name, card] : after.at(kCards).items()) {
    const Json* former = before.at(kCards).find_path(name);
    const std::vector<Contradiction> old =
        former == nullptr ? std::vector<Contradiction>() : contradictionsIn(*former);
    for (const auto& [setting, why] : contradictionsIn(card))
      if (std::none_of(old.begin(), old.end(),
                       [&why = why](const Contradiction& other) { return other.why == why; }))
        remarks.push_back(std::string("note: ")
                              .append(name)
                              .append("/")
                              .append(settings::elementOf(setting))
                              .append(": ")
                              .append(why)
                              .append("; 'camcfg network set ")
                              .append(name)
                              .append(" address=ADDRESS/PREFIX gateway=ADDRESS' sets both"));
  }
  return remarks;
}

}  // namespace camcfg::tool::network
