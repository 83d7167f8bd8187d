#include "settings/network.h"

#include <camcfg/network.h>

#include "base/refusal.h"
#include "base/spelling.h"
#include "base/text.h"
#include "settings/address.h"

namespace camcfg::tool::settings {
namespace {

using Record = tagNETWORK_CFG_S;

Setting row(const char* member, const char* element, Kind kind, Field field, const char* help) {
  return {member, {{"Cur", element}}, kind, Need::Expected, help, field};
}

template <auto Member>
Setting choice(const char* member, const char* element, Kind kind, std::vector<Word> words,
               const char* help) {
  Setting setting = row(member, element, kind, fieldOf<Member>(), help);
  setting.words = std::move(words);
  return setting;
}

template <auto Member>
Setting text(const char* member, const char* element, std::string (*whyNot)(const std::string&),
             const char* help) {
  Setting setting = row(member, element, Kind::Text, fieldOf<Member>(), help);
  setting.whyNotUsable = whyNot;
  return setting;
}

// A card that gets its address from the network needs none in the file.
Setting ofStaticCards(Setting setting) {
  setting.neededIf = {"IpMode", "StaticIp"};
  return setting;
}

Setting byWholeName(Setting setting) {
  setting.isWrittenByWholeName = true;
  return setting;
}

// The record has the system's name of an interface, not the file's word.
Json writeInterface(const void* record) {
  return CFG_NETWORK_IntfEthName2XmlStr(static_cast<const Record*>(record)->acIntf);
}

void readInterface(const Node& node, void* record) {
  const std::string system = CFG_NETWORK_IntfXmlStr2EthName(node.value().text().c_str());
  if (system.empty() || !fieldOf<&Record::acIntf>().setText(record, system))
    node.refuse("there is no such interface");
}

Setting interface() {
  Setting setting =
      choice<&Record::acIntf>("intf", "Intf", Kind::Word, {{"Eth0", 0}, {"Eth1", 1}, {"Wlan0", 2}},
                              "Interface of the system that it drives");
  setting.write = writeInterface;
  setting.read = readInterface;
  return setting;
}

Setting mtu() {
  constexpr Range kOfAnyCard{68, 9216};
  Setting setting =
      row("mtu", "MTU", Kind::Integer, fieldOf<&Record::s32MTU>(), "Largest packet that it sends");
  setting.limits = kOfAnyCard;
  setting.unit = "bytes";
  return setting;
}

Settings makeCardSettings() {
  const std::vector<Word> onOff = {{"Off", BU_FALSE}, {"On", BU_TRUE}};
  return {
      choice<&Record::enEnable>("enable", "Enable", Kind::Switch, onOff, "Whether it is in use"),
      choice<&Record::enAutoneg>("autoneg", "Autoneg", Kind::Switch, onOff,
                                 "Whether speed and duplex are negotiated"),
      choice<&Record::enDuplex>("duplex", "Duplex", Kind::Word,
                                {{"Half", LINK_DUPLEX_HALF}, {"Full", LINK_DUPLEX_FULL}},
                                "Whether it sends and receives at the same time"),
      choice<&Record::enSpeed>(
          "speed", "Speed", Kind::Word,
          {{"10M", LINK_SPEED_10M}, {"100M", LINK_SPEED_100M}, {"1000M", LINK_SPEED_1000M}},
          "Bits per second"),
      byWholeName(mtu()),
      interface(),
      choice<&Record::enIpMode>("ipMode", "IpMode", Kind::Word,
                                {{"DhcpIp", IP_MODE_DHCP}, {"StaticIp", IP_MODE_STATIC}},
                                "Where its address comes from"),
      ofStaticCards(text<&Record::acIpAddr>("ipAddr", "IpAddr", whyNotAnAddress, "Address")),
      ofStaticCards(text<&Record::acNetMask>("netMask", "NetMask", whyNotAMask, "Netmask")),
      text<&Record::acGateWay>("gateWay", "GateWay", whyNotAnOptionalAddress, "Gateway"),
      choice<&Record::enDnsMode>("dnsMode", "DnsMode", Kind::Word,
                                 {{"AutoMode", DNS_MODE_AUTO}, {"ManualMode", DNS_MODE_MANUAL}},
                                 "Where its name servers come from"),
      text<&Record::acDns1>("dns1", "Dns1", whyNotAServer, "First name server set by hand"),
      text<&Record::acDns2>("dns2", "Dns2", whyNotAServer, "Second name server set by hand"),
      byWholeName(
          text<&Record::acDnsSearch>("dnsSearch", "DnsSearch", whyNotDomains, "Search domains")),
      byWholeName(text<&Record::acDhcpDns1>("dhcpDns1", "DhcpDns1", whyNotAServer,
                                            "First name server learnt from DHCP")),
      byWholeName(text<&Record::acDhcpDns2>("dhcpDns2", "DhcpDns2", whyNotAServer,
                                            "Second name server learnt from DHCP")),
  };
}

}  // namespace

const Settings& cardSettings() {
  static const Settings settings = makeCardSettings();
  return settings;
}

const Setting& hostnameSetting() {
  static const Setting setting = [] {
    Setting row{"hostname", {{"Hostname", "NetWork"}}, Kind::Text, Need::Expected, "Host name"};
    row.whyNotUsable = whyNotAHostname;
    return row;
  }();
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

const Setting& requireCardSetting(const std::string& name) {
  std::vector<std::string> names;
  for (const Setting& setting : cardSettings()) {
    if (isSameWord(elementOf(setting), name)) return setting;
    names.emplace_back(elementOf(setting));
  }
  throw Refusal("cards have no field '" + name + "'" + didYouMean(name, names));
}

std::string spelt(const Setting& setting, const std::string& text) {
  for (const Word& word : setting.words)
    if (isSameWord(word.written(), text)) return word.written();
  return text;
}

}  // namespace camcfg::tool::settings
