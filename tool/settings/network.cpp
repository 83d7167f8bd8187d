#include "settings/network.h"

#include <camcfg/network.h>

#include <algorithm>
#include <optional>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "settings/subnet.h"
#include "settings/table.h"

namespace camcfg::tool::settings {
namespace {

using Card = tagNETWORK_CFG_S;

constexpr char kLabelCharacters[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-";
constexpr std::uint32_t kMulticastPrefix = 0xe;  // 224.0.0.0/4
constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestHostname = 253;

std::string notDotted(const std::string& text) {
  return quoted(text) + " is not of the form 192.0.2.1";
}

std::string whyNotAHost(const std::string& text, bool loopback) {
  const std::optional<std::uint32_t> address = ipv4Of(text);
  if (!address) return notDotted(text);
  const std::uint32_t first = *address >> 24;
  if (first == 0) return quoted(text) + " is not a host's address: it begins with 0";
  if (first == 127 && !loopback) return quoted(text) + " is the device itself, not its network";
  if (first >= 240) return quoted(text) + " is a reserved or the broadcast address";
  if (first >= 224) return quoted(text) + " is a multicast address";
  return "";
}

std::string whyNotALabel(const std::string& label) {
  if (label.empty()) return "has an empty label";
  if (label.size() > kLongestLabel)
    return concat("has a label of ", label.size(), " characters, the limit is ", kLongestLabel);
  if (label.find_first_not_of(kLabelCharacters) != std::string::npos)
    return "has a character that is not a letter, digit or hyphen";
  if (label.front() == '-' || label.back() == '-')
    return "has a label that begins or ends with a hyphen";
  return "";
}

template <auto Member>
Row row(const char* member, const char* element, Kind kind, const char* help) {
  return Row(member, nullptr, kind, kExpected, help, fieldOf<Member>()).from({{"Cur", element}});
}

// The record has the system's name of an interface, not the file's word.
Json writeInterface(const void* record) {
  return CFG_NETWORK_IntfEthName2XmlStr(static_cast<const Card*>(record)->acIntf);
}

void readInterface(const Node& node, void* record) {
  const std::string system = CFG_NETWORK_IntfXmlStr2EthName(node.value().text().c_str());
  if (system.empty() || !fieldOf<&Card::acIntf>().setText(record, system))
    node.refuse("there is no such interface");
}

Settings makeCardSettings() {
  const std::vector<Word> onOff = {{"Off", BU_FALSE, nullptr, "no"},
                                   {"On", BU_TRUE, nullptr, "yes"}};
  return {
      row<&Card::enEnable>("enable", "Enable", Kind::Switch, "Whether it is in use").of(onOff),
      row<&Card::enAutoneg>("autoneg", "Autoneg", Kind::Switch,
                            "Whether speed and duplex are negotiated")
          .of(onOff),
      row<&Card::enDuplex>("duplex", "Duplex", Kind::Word,
                           "Whether it sends and receives at the same time")
          .of({{"Half", LINK_DUPLEX_HALF}, {"Full", LINK_DUPLEX_FULL}}),
      row<&Card::enSpeed>("speed", "Speed", Kind::Word, "Bits per second")
          .of({{"10M", LINK_SPEED_10M}, {"100M", LINK_SPEED_100M}, {"1000M", LINK_SPEED_1000M}}),
      row<&Card::s32MTU>("mtu", "MTU", Kind::Integer, "Largest packet that it sends")
          .within(68, 9216)
          .in("bytes")
          .byWholeName(),
      row<&Card::acIntf>("intf", "Intf", Kind::Word, "Interface of the system that it drives")
          .of({{"Eth0", 0, nullptr, "eth0"},
               {"Eth1", 1, nullptr, "eth1"},
               {"Wlan0", 2, nullptr, "wlan0"}})
          .called("interface")
          .by(writeInterface, readInterface),
      row<&Card::enIpMode>("ipMode", "IpMode", Kind::Word, "Where its address comes from")
          .of({{"DhcpIp", IP_MODE_DHCP, nullptr, "dhcp", {"DnsMode", "AutoMode"}},
               {"StaticIp", IP_MODE_STATIC, nullptr, "static"}})
          .called("mode"),
      // A card that gets its address from the network needs none in the file.
      row<&Card::acIpAddr>("ipAddr", "IpAddr", Kind::Text, "Address")
          .checked(whyNotAnAddress)
          .neededIf("IpMode", "StaticIp")
          .called("address")
          .onlyWith("IpMode", "StaticIp")
          .prefixSets("NetMask"),
      row<&Card::acNetMask>("netMask", "NetMask", Kind::Text, "Netmask")
          .checked(whyNotAMask)
          .neededIf("IpMode", "StaticIp")
          .called("netmask")
          .onlyWith("IpMode", "StaticIp"),
      row<&Card::acGateWay>("gateWay", "GateWay", Kind::Text, "Gateway")
          .checked(whyNotAnOptionalAddress)
          .called("gateway")
          .onlyWith("IpMode", "StaticIp"),
      row<&Card::enDnsMode>("dnsMode", "DnsMode", Kind::Word, "Where its name servers come from")
          .of({{"AutoMode", DNS_MODE_AUTO, nullptr, "auto"},
               {"ManualMode", DNS_MODE_MANUAL, nullptr, "manual"}}),
      row<&Card::acDns1>("dns1", "Dns1", Kind::Text, "First name server set by hand")
          .checked(whyNotAServer)
          .called("dns")
          .onlyWith("DnsMode", "ManualMode"),
      row<&Card::acDns2>("dns2", "Dns2", Kind::Text, "Second name server set by hand")
          .checked(whyNotAServer)
          .called("dns")
          .onlyWith("DnsMode", "ManualMode"),
      row<&Card::acDnsSearch>("dnsSearch", "DnsSearch", Kind::Text, "Search domains")
          .checked(whyNotDomains)
          .byWholeName(),
      row<&Card::acDhcpDns1>("dhcpDns1", "DhcpDns1", Kind::Text,
                             "First name server learnt from DHCP")
          .checked(whyNotAServer)
          .byWholeName(),
      row<&Card::acDhcpDns2>("dhcpDns2", "DhcpDns2", Kind::Text,
                             "Second name server learnt from DHCP")
          .checked(whyNotAServer)
          .byWholeName(),
  };
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
             : quoted(text) + " is not a netmask: its set bits are not all at the beginning";
}

std::string whyNotMulticast(const std::string& text) {
  const std::optional<std::uint32_t> address = ipv4Of(text);
  return address && *address >> 28 == kMulticastPrefix
             ? ""
             : quoted(text) + " is not a multicast address";
}

std::string whyNotDomains(const std::string& text) {
  std::vector<std::string> domains = parts(text, ' ');
  if (domains.back().empty()) domains.pop_back();
  for (const std::string& domain : domains) {
    std::string fault = whyNotAHostname(domain);
    if (!fault.empty()) return fault;
  }
  return "";
}

std::string whyNotAHostname(const std::string& text) {
  if (text.size() > kLongestHostname)
    return concat("it has ", text.size(), " characters, the limit is ", kLongestHostname);
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('.', start), text.size());
    const std::string fault = whyNotALabel(text.substr(start, end - start));
    if (!fault.empty()) return concat(quoted(text), " ", fault);
    start = end + 1;
  }
  return "";
}

const Settings& cardSettings() {
  static const Settings settings = makeCardSettings();
  return settings;
}

const Setting& hostnameSetting() {
  static const Setting setting =
      Row("hostname", "Hostname", Kind::Text, kExpected, "Host name").checked(whyNotAHostname);
  return setting;
}

const Setting* cardSettingOf(std::string_view element) {
  for (const Setting& setting : cardSettings())
    if (element == elementOf(setting)) return &setting;
  return nullptr;
}

const Setting* cardSettingWrittenInto(std::string_view element) {
  if (cardSettingOf(element) != nullptr) return nullptr;
  for (const Setting& setting : cardSettings())
    if (beginsWith(element, elementOf(setting)) && !setting.isWrittenByWholeName) return &setting;
  return nullptr;
}

bool mayBeEmpty(const Setting& setting, const tinyxml2::XMLElement& field, const char* attribute) {
  const auto& [element, word] = setting.neededIf;
  if (element == nullptr) return false;
  const tinyxml2::XMLElement* other = field.Parent()->FirstChildElement(element);
  return other == nullptr || textOf(*other, attribute) != word;
}

const Setting& requireCardSetting(const std::string& name) {
  std::vector<std::string> names;
  for (const Setting& setting : cardSettings()) {
    if (isSameWord(elementOf(setting), name)) return setting;
    names.emplace_back(elementOf(setting));
  }
  const std::string nearest = didYouMean(name, names);
  const bool isPlain = nearest.empty() && !cardSettingsCalled(name).empty();
  throw Refusal(concat("cards have no field '", name, "'",
                       isPlain ? concat("; give ", name, "=VALUE") : nearest));
}

std::string spelt(const Setting& setting, const std::string& text) {
  for (const Word& word : setting.words)
    if (isSameWord(word.written(), text)) return word.written();
  return text;
}

}  // namespace camcfg::tool::settings
