#include "network/contradictions.h"

#include "settings/network.h"
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

}  // namespace camcfg::tool::network
