#include <array>
#include <cctype>

#include "network/network_test.h"

namespace camcfg::tests {
namespace {

using Settings = tagNETWORK_CFG_S;

class ParametersTest : public NetworkTest {};

constexpr int kCombinations = 2 * 2 * 2 * 3 * 2 * 2 * 3;

// A card with one of all combinations of words.
Settings combination(int number) {
  auto oneOf = [rest = number](auto... values) mutable {
    const std::array all{values...};
    const auto chosen = all[static_cast<std::size_t>(rest) % all.size()];
    rest /= static_cast<int>(all.size());
    return chosen;
  };
  Settings settings = factoryCurrent();
  settings.enEnable = oneOf(BU_FALSE, BU_TRUE);
  settings.enAutoneg = oneOf(BU_FALSE, BU_TRUE);
  settings.enDuplex = oneOf(LINK_DUPLEX_HALF, LINK_DUPLEX_FULL);
  settings.enSpeed = oneOf(LINK_SPEED_10M, LINK_SPEED_100M, LINK_SPEED_1000M);
  settings.enIpMode = oneOf(IP_MODE_DHCP, IP_MODE_STATIC);
  settings.enDnsMode = oneOf(DNS_MODE_AUTO, DNS_MODE_MANUAL);
  setField(settings.acIntf, oneOf("eth0", "eth1", "wlan0"));
  settings.s32MTU = number;
  return settings;
}

TEST_F(ParametersTest, EveryCombinationOfWordsIsReadAsItWasWritten) {
  store(kFactory);
  for (int number = 0; number < kCombinations; ++number) {
    const Settings written = combination(number);
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
