#include <cctype>

#include "network/network_test.h"

namespace camcfg::tests {
namespace {

using Settings = tagNETWORK_CFG_S;

class ParametersTest : public NetworkTest {};

// Every combination of the words that a card can hold.
std::vector<Settings> everyCombination() {
  std::vector<Settings> all;
  for (const auto enable : {BU_FALSE, BU_TRUE})
    for (const auto autoneg : {BU_FALSE, BU_TRUE})
      for (const auto duplex : {LINK_DUPLEX_HALF, LINK_DUPLEX_FULL})
        for (const auto speed : {LINK_SPEED_10M, LINK_SPEED_100M, LINK_SPEED_1000M})
          for (const auto ipMode : {IP_MODE_DHCP, IP_MODE_STATIC})
            for (const auto dnsMode : {DNS_MODE_AUTO, DNS_MODE_MANUAL})
              for (const char* interface : {"eth0", "eth1", "wlan0"}) {
                Settings settings = factoryCurrent();
                settings.enEnable = enable;
                settings.enAutoneg = autoneg;
                settings.enDuplex = duplex;
                settings.enSpeed = speed;
                settings.enIpMode = ipMode;
                settings.enDnsMode = dnsMode;
                settings.s32MTU = static_cast<int>(all.size());
                std::memset(settings.acIntf, 0, sizeof settings.acIntf);
                std::strcpy(settings.acIntf, interface);
                all.push_back(settings);
              }
  return all;
}

TEST_F(ParametersTest, EveryCombinationOfWordsIsReadAsItWasWritten) {
  store(kFactory);
  const std::vector<Settings> all = everyCombination();
  ASSERT_EQ(all.size(), 288U);
  for (const Settings& written : all) {
    CFG_NETWORK_SetAllParam(text("Lan"), written);
    Settings read = patterned<Settings>();
    CFG_NETWORK_GetAllParamCur(text("Lan"), &read);
    ASSERT_EQ(read, written);
  }
  Settings factory{};
  CFG_NETWORK_GetAllParamDef(text("Lan"), &factory);
  EXPECT_EQ(factory, factoryDefault());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ParametersTest, WritingBackWhatWasReadChangesNothing) {
  store(kFactory);
  Settings settings{};
  CFG_NETWORK_GetAllParamCur(text("Lan"), &settings);
  CFG_NETWORK_SetAllParam(text("Lan"), settings);
  expectSaved(kFactory);
}

// A parameter, what factoryCurrent() writes into it, and whether an element whose name only begins
// with the parameter's is written.
struct Parameter {
  const char* name;
  const char* current;
  bool byBeginning;
};

constexpr Parameter kParameters[] = {
    {"Enable", "On", true},
    {"Autoneg", "Off", true},
    {"Duplex", "Full", true},
    {"Speed", "100M", true},
    {"MTU", "1492", false},
    {"Intf", "Eth1", true},
    {"IpMode", "StaticIp", true},
    {"IpAddr", "192.168.1.20", true},
    {"NetMask", "255.255.255.0", true},
    {"GateWay", "192.168.1.1", true},
    {"DnsMode", "ManualMode", true},
    {"Dns1", "192.168.1.53", true},
    {"Dns2", "192.168.1.54", true},
    {"DnsSearch", "studio.example", false},
    {"DhcpDns1", "192.168.9.1", false},
    {"DhcpDns2", "192.168.9.2", false},
};

TEST_F(ParametersTest, MostNamesAreWrittenByTheirBeginningAndFourByTheWhole) {
  std::vector<std::string> before;
  std::vector<std::string> after;
  for (const auto& [name, current, byBeginning] : kParameters)
    for (const std::string& element : {name + std::string("X"), std::string(name)}) {
      const bool written = byBeginning || element == name;
      before.push_back("<" + element + " Cur=\"old\"/>");
      after.push_back("<" + element + " Cur=\"" + (written ? current : "old") + "\"/>");
    }
  store(lan(before));
  CFG_NETWORK_SetAllParam(text("Lan"), factoryCurrent());
  expectSaved(lan(after));
}

TEST_F(ParametersTest, AnElementWrittenByItsBeginningIsNeverRead) {
  store(lan({"<EnableX Cur=\"Off\"/>"}));
  Settings settings{};
  settings.enEnable = BU_TRUE;
  CFG_NETWORK_SetAllParam(text("Lan"), settings);
  expectSaved(lan({"<EnableX Cur=\"On\"/>"}));

  CFG_NETWORK_GetAllParamCur(text("Lan"), &settings);
  EXPECT_EQ(settings, Settings{});
}

TEST_F(ParametersTest, NamesAreComparedByCase) {
  std::vector<std::string> elements;
  for (const Parameter& parameter : kParameters) {
    std::string name = parameter.name;
    name[0] = static_cast<char>(std::tolower(name[0]));
    elements.push_back("<" + name + " Cur=\"On\"/>");
  }
  store(lan(elements));
  CFG_NETWORK_SetAllParam(text("Lan"), factoryCurrent());
  expectSaved(lan(elements));

  Settings settings = patterned<Settings>();
  CFG_NETWORK_GetAllParamCur(text("Lan"), &settings);
  EXPECT_EQ(settings, Settings{});
}

}  // namespace
}  // namespace camcfg::tests
