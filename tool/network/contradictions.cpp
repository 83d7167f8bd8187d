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

}  // namespace

std::vector<Contradiction> contradictionsIn(const Json& card) {
  std::vector<Contradiction> found;
  const std::string mode = textIn(card, settingAt("IpMode"));
  if (!mode.empty() && mode != kStatic) return found;
  const auto [address, gateway] =
      settings::unreachableIn(textIn(card, settingAt("IpAddr")), textIn(card, settingAt("NetMask")),
                              textIn(card, settingAt("GateWay")));
  if (!address.empty()) found.push_back({settingAt("IpAddr"), address});
  if (!gateway.empty()) found.push_back({settingAt("GateWay"), gateway});
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
