#include "network/field.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <type_traits>

#include "base/decimal.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "network/check.h"
#include "settings/nearest.h"

namespace camcfg::tool::network {
namespace {

using Record = tagNETWORK_CFG_S;

struct Word {
  std::int32_t value;
  const char* text;
};
constexpr Word kSwitch[] = {{BU_FALSE, "Off"}, {BU_TRUE, "On"}};
constexpr Word kDuplex[] = {{LINK_DUPLEX_HALF, "Half"}, {LINK_DUPLEX_FULL, "Full"}};
constexpr Word kSpeed[] = {
    {LINK_SPEED_10M, "10M"}, {LINK_SPEED_100M, "100M"}, {LINK_SPEED_1000M, "1000M"}};
constexpr Word kIpMode[] = {{IP_MODE_DHCP, "DhcpIp"}, {IP_MODE_STATIC, "StaticIp"}};
constexpr Word kDnsMode[] = {{DNS_MODE_AUTO, "AutoMode"}, {DNS_MODE_MANUAL, "ManualMode"}};
constexpr const char* kInterfaces[] = {"Eth0", "Eth1", "Wlan0"};

template <auto Member, const auto& Words>
NetworkField wordField(const char* name) {
  NetworkField field{name, {}, nullptr, nullptr, nullptr};
  for (const Word& word : Words) field.words.emplace_back(word.text);
  field.put = [](Record& record, const std::string& text) {
    for (const Word& word : Words) {
      if (text != word.text) continue;
      record.*Member = static_cast<std::decay_t<decltype(record.*Member)>>(word.value);
      return true;
    }
    return false;
  };
  field.take = [](const Record& record) {
    for (const Word& word : Words)
      if (word.value == record.*Member) return std::string(word.text);
    return std::string();
  };
  return field;
}

template <std::size_t Size>
bool putText(char (&field)[Size], const std::string& text) {
  if (text.size() >= Size || text.find('\0') != std::string::npos) return false;
  std::memset(field, 0, Size);
  std::memcpy(field, text.data(), text.size());
  return true;
}

template <auto Member>
NetworkField textField(const char* name, std::string (*whyNotUsable)(const std::string&)) {
  return {name,
          {},
          [](Record& record, const std::string& text) { return putText(record.*Member, text); },
          [](const Record& record) { return std::string(record.*Member); },
          whyNotUsable};
}

NetworkField interfaceField(const char* name) {
  return {name,
          {std::begin(kInterfaces), std::end(kInterfaces)},
          [](Record& record, const std::string& text) {
            const std::string system = CFG_NETWORK_IntfXmlStr2EthName(text.c_str());
            return !system.empty() && putText(record.acIntf, system);
          },
          [](const Record& record) {
            return std::string(CFG_NETWORK_IntfEthName2XmlStr(record.acIntf));
          },
          nullptr};
}

NetworkField mtuField(const char* name) {
  using Limits = std::numeric_limits<std::int32_t>;
  return {name,
          {},
          [](Record& record, const std::string& text) {
            const std::optional<long long> number = decimal(text);
            if (!number || *number < Limits::min() || *number > Limits::max()) return false;
            record.s32MTU = static_cast<std::int32_t>(*number);
            return true;
          },
          [](const Record& record) { return std::to_string(record.s32MTU); },
          nullptr};
}

bool isSameWord(const std::string& a, const std::string& b) {
  return a.size() == b.size() && strcasecmp(a.c_str(), b.c_str()) == 0;
}

}  // namespace

std::pair<int, int> mtuLimits(const tinyxml2::XMLElement& element) {
  constexpr int kSmallest = 68;
  constexpr int kLargest = 9216;
  return {element.IntAttribute("Min", kSmallest), element.IntAttribute("Max", kLargest)};
}

const std::vector<NetworkField>& networkFields() {
  static const std::vector<NetworkField> fields = {
      wordField<&Record::enEnable, kSwitch>("Enable"),
      wordField<&Record::enAutoneg, kSwitch>("Autoneg"),
      wordField<&Record::enDuplex, kDuplex>("Duplex"),
      wordField<&Record::enSpeed, kSpeed>("Speed"),
      mtuField("MTU"),
      interfaceField("Intf"),
      wordField<&Record::enIpMode, kIpMode>("IpMode"),
      textField<&Record::acIpAddr>("IpAddr", whyNotAnAddress),
      textField<&Record::acNetMask>("NetMask", whyNotAMask),
      textField<&Record::acGateWay>("GateWay", whyNotAnOptionalAddress),
      wordField<&Record::enDnsMode, kDnsMode>("DnsMode"),
      textField<&Record::acDns1>("Dns1", whyNotAServer),
      textField<&Record::acDns2>("Dns2", whyNotAServer),
      textField<&Record::acDnsSearch>("DnsSearch", whyNotDomains),
      textField<&Record::acDhcpDns1>("DhcpDns1", whyNotAServer),
      textField<&Record::acDhcpDns2>("DhcpDns2", whyNotAServer),
  };
  return fields;
}

const NetworkField& requireNetworkField(const std::string& name) {
  std::vector<std::string> names;
  for (const NetworkField& field : networkFields()) {
    if (isSameWord(field.name, name)) return field;
    names.emplace_back(field.name);
  }
  throw Refusal("cards have no field '" + name + "'" + didYouMean(name, names));
}

std::string requireWord(const NetworkField& field, const std::string& text) {
  std::string all;
  for (const std::string& word : field.words) {
    if (isSameWord(word, text)) return word;
    all += (all.empty() ? "" : ", ") + word;
  }
  throw Refusal("'" + text + "' is none of " + all + settings::nearestOf(text, field.words));
}

}  // namespace camcfg::tool::network
