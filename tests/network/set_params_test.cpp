#include "network/network_test.h"

namespace camcfg::tests {
namespace {

using Settings = tagNETWORK_CFG_S;

constexpr char kBefore[] = "<Enable Cur=\"On\"/>";

// One element before and after a whole-card write of a record.
struct Change {
  std::string before;
  std::string after;
};

class SetParamsTest : public NetworkTest {
 protected:
  void expectWritten(const Settings& settings, const std::vector<Change>& changes) {
    std::vector<std::string> before;
    std::vector<std::string> after;
    for (const Change& change : changes) {
      before.push_back(change.before);
      after.push_back(change.after);
    }
    store(lan(before));
    cfgNetworkSetAllParam(text("Lan"), settings);
    expectSaved(lan(after));
    EXPECT_THAT(log.records(), IsEmpty());
  }

  void expectOneWritten(const char* parameter, const Settings& settings,
                        const std::vector<std::string>& before,
                        const std::vector<std::string>& after) {
    store(lan(before));
    cfgNetworkSetSingleParam(text(parameter), text("Lan"), settings);
    expectSaved(lan(after));
    EXPECT_THAT(log.records(), IsEmpty());
  }
};

Settings withFields(tagBU_BOOL enable, tagBU_BOOL autoneg, std::int32_t other) {
  Settings settings = factoryCurrent();
  settings.enEnable = enable;
  settings.enAutoneg = autoneg;
  settings.enDuplex = static_cast<tagDUPLEX_E>(other);
  settings.enSpeed = static_cast<tagLINK_SPEED_E>(other);
  settings.enIpMode = static_cast<tagIP_MODE_E>(other);
  settings.enDnsMode = static_cast<tagDNS_MODE_E>(other);
  return settings;
}

// kFactory with the factory values as current ones.
std::string factoryReset() {
  std::string xml = kFactory;
  for (const auto& [from, to] : {std::pair{R"(Cur="On" Def="Off")", R"(Cur="Off" Def="Off")"},
                                 {"Cur=\"Eth1\"", "Cur=\"Eth0\""},
                                 {R"(Cur="Off" Def="On")", R"(Cur="On" Def="On")"},
                                 {"Cur=\"Full\"", "Cur=\"Half\""},
                                 {"Cur=\"100M\"", "Cur=\"1000M\""},
                                 {"Cur=\"1492\"", "Cur=\"1500\""},
                                 {"Cur=\"StaticIp\"", "Cur=\"DhcpIp\""},
                                 {"Cur=\"192.168.1.20\"", "Cur=\"10.0.0.2\""},
                                 {"Cur=\"255.255.255.0\"", "Cur=\"255.0.0.0\""},
                                 {"Cur=\"192.168.1.1\"", "Cur=\"10.0.0.1\""},
                                 {"Cur=\"ManualMode\"", "Cur=\"AutoMode\""},
                                 {"Cur=\"192.168.1.53\"", "Cur=\"10.0.0.53\""},
                                 {"Cur=\"192.168.1.54\"", "Cur=\"10.0.0.54\""},
                                 {"Cur=\"studio.example\"", "Cur=\"example\""},
                                 {"Cur=\"192.168.9.1\"", "Cur=\"10.9.0.1\""},
                                 {"Cur=\"192.168.9.2\"", "Cur=\"10.9.0.2\""}})
    xml = replaced(xml, from, to);
  return xml;
}

TEST_F(SetParamsTest, EveryElementOfTheCardIsWrittenAndNothingElse) {
  store(kFactory);
  cfgNetworkSetAllParam(text("Lan"), factoryDefault());
  expectSaved(factoryReset());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetParamsTest, TheExportedNameWritesTheSame) {
  store(kFactory);
  CFG_NETWORK_SetAllParam(text("Lan"), factoryDefault());
  expectSaved(factoryReset());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SetParamsTest, OnlyTheCardNamedIsWritten) {
  store(kFactory);
  cfgNetworkSetAllParam(text("Wifi"), factoryCurrent());
  expectSaved(replaced(
      replaced(kFactory, R"(<Enable Cur="Off" Def="Off"/>)", R"(<Enable Cur="On" Def="Off"/>)"),
      "Cur=\"Wlan0\"", "Cur=\"Eth1\""));
}

TEST_F(SetParamsTest, TheCardIsTheFirstWhoseNameBeginsWithTheText) {
  const std::string xml =
      "<NetWork>\n    <LanBack>\n        <MTU Cur=\"1\"/>\n    </LanBack>\n"
      "    <Lan>\n        <MTU Cur=\"2\"/>\n    </Lan>\n</NetWork>\n";
  store(xml);
  cfgNetworkSetAllParam(text("Lan"), factoryCurrent());
  expectSaved(replaced(xml, "Cur=\"1\"", "Cur=\"1492\""));
}

TEST_F(SetParamsTest, ACardWithoutElementsIsSavedUnchanged) {
  expectWritten(factoryCurrent(), {});
}

TEST_F(SetParamsTest, AnAbsentCurrentValueIsCreatedAndTheFactoryValueStays) {
  expectWritten(factoryCurrent(), {{R"(<Enable Def="Off"/>)", R"(<Enable Def="Off" Cur="On"/>)"},
                                   {"<MTU/>", "<MTU Cur=\"1492\"/>"},
                                   {"<Intf/>", "<Intf Cur=\"Eth1\"/>"},
                                   {"<Dns1/>", "<Dns1 Cur=\"192.168.1.53\"/>"}});
}

TEST_F(SetParamsTest, UnrecognisedElementsAreLeftAlone) {
  const char* elements[] = {"<Name Cur=\"a\"/>",     "<enable Cur=\"a\"/>",  "<Enabl Cur=\"a\"/>",
                            "<MyEnable Cur=\"a\"/>", "<Dns Cur=\"a\"/>",     "<DhcpDns Cur=\"a\"/>",
                            "<mtu Cur=\"a\"/>",      "<DhcpDns3 Cur=\"a\"/>"};
  std::vector<Change> unchanged;
  for (const char* element : elements) unchanged.push_back({element, element});
  expectWritten(factoryCurrent(), unchanged);
}

TEST_F(SetParamsTest, EveryElementThatStandsForAParameterIsWritten) {
  expectWritten(factoryCurrent(), {{"<Speed Cur=\"10M\"/>", "<Speed Cur=\"100M\"/>"},
                                   {"<SpeedWifi Cur=\"10M\"/>", "<SpeedWifi Cur=\"100M\"/>"},
                                   {"<Speed Cur=\"1000M\"/>", "<Speed Cur=\"100M\"/>"}});
}

TEST_F(SetParamsTest, ElementsBelowAParameterAreNotWritten) {
  store(
      "<NetWork>\n    <Lan>\n        <Group>\n            <MTU Cur=\"1\"/>\n        </Group>\n"
      "    </Lan>\n</NetWork>\n");
  cfgNetworkSetAllParam(text("Lan"), factoryCurrent());
  expectSaved(device.read(CFG_FILE_BUSINESS));
  EXPECT_THAT(device.read(CFG_FILE_BUSINESS), testing::HasSubstr("<MTU Cur=\"1\"/>"));
}

TEST_F(SetParamsTest, AnUnknownEnableIsLeftAloneWhileAnUnknownAutonegIsWrittenOff) {
  for (const int unknown : {2, -1, 256})
    expectWritten(withFields(static_cast<tagBU_BOOL>(unknown), static_cast<tagBU_BOOL>(unknown), 0),
                  {{kBefore, kBefore}, {"<Autoneg Cur=\"On\"/>", "<Autoneg Cur=\"Off\"/>"}});
}

TEST_F(SetParamsTest, ValuesWithoutAWordAreLeftAloneAndTheFileIsSaved) {
  for (const int unknown : {2, -1, 11, 2500, 1001})
    expectWritten(withFields(BU_TRUE, BU_TRUE, unknown),
                  {{"<Duplex Cur=\"odd\"/>", "<Duplex Cur=\"odd\"/>"},
                   {"<Speed Cur=\"odd\"/>", "<Speed Cur=\"odd\"/>"},
                   {"<IpMode/>", "<IpMode/>"},
                   {"<DnsMode Def=\"AutoMode\"/>", "<DnsMode Def=\"AutoMode\"/>"}});
}

TEST_F(SetParamsTest, AnUnknownInterfaceIsWrittenAsTheEmptyText) {
  for (const char* name : {"eth2", "Eth0", "", "wlan"}) {
    Settings settings{};
    setField(settings.acIntf, name);
    expectWritten(settings, {{"<Intf Cur=\"Eth0\"/>", "<Intf Cur=\"\"/>"}});
  }
}

TEST_F(SetParamsTest, AnyMtuIsWrittenInDecimal) {
  for (const int mtu : {0, -1, 9000, 2147483647, -2147483647 - 1}) {
    Settings settings{};
    settings.s32MTU = mtu;
    expectWritten(settings, {{"<MTU Cur=\"1\"/>", "<MTU Cur=\"" + std::to_string(mtu) + "\"/>"}});
  }
}

TEST_F(SetParamsTest, TextsAreWrittenAsTheyAre) {
  Settings settings{};
  setField(settings.acIpAddr, "not an <address>");
  expectWritten(settings, {{"<IpAddr Cur=\"a\"/>", "<IpAddr Cur=\"not an &lt;address&gt;\"/>"},
                           {"<NetMask Cur=\"a\"/>", "<NetMask Cur=\"\"/>"}});
}

TEST_F(SetParamsTest, ATextWithoutATerminatorEndsWithItsField) {
  const std::string cur = " Cur=\"" + std::string(31, 'Z') + "\"/>";
  expectWritten(patterned<Settings>(), {{"<IpAddr/>", "<IpAddr" + cur},
                                        {"<Intf/>", "<Intf Cur=\"\"/>"},
                                        {"<DhcpDns2/>", "<DhcpDns2" + cur}});
}

TEST_F(SetParamsTest, OneParameterIsWrittenOnlyFromItsField) {
  store(kFactory);
  cfgNetworkSetSingleParam(text("GateWay"), text("Lan"), factoryDefault());
  expectSaved(replaced(kFactory, "Cur=\"192.168.1.1\"", "Cur=\"10.0.0.1\""));
}

TEST_F(SetParamsTest, ParametersWithoutASetterOfTheirOwnCanBeWrittenByName) {
  store(kFactory);
  cfgNetworkSetSingleParam(text("Intf"), text("Lan"), factoryDefault());
  expectSaved(replaced(kFactory, "Cur=\"Eth1\"", "Cur=\"Eth0\""));
}

TEST_F(SetParamsTest, TheElementFoundDecidesWhatIsWritten) {
  expectOneWritten("Enable", factoryDefault(), {"<EnableWifi Cur=\"On\"/>", kBefore},
                   {"<EnableWifi Cur=\"Off\"/>", kBefore});
  expectOneWritten("Dns", factoryDefault(), {"<DnsMode Cur=\"ManualMode\"/>", "<Dns1 Cur=\"a\"/>"},
                   {"<DnsMode Cur=\"AutoMode\"/>", "<Dns1 Cur=\"a\"/>"});
  expectOneWritten("", factoryDefault(), {"<Speed Cur=\"10M\"/>", kBefore},
                   {"<Speed Cur=\"1000M\"/>", kBefore});
}

TEST_F(SetParamsTest, AnElementFoundThatIsNoParameterIsSavedUnchanged) {
  for (const char* name : {"MTU", "DnsSearch", "DhcpDns1", "DhcpDns2", "Other"}) {
    const std::string longer = "<" + std::string(name) + "Wifi Cur=\"a\"/>";
    const std::string exact = "<" + std::string(name) + " Cur=\"a\"/>";
    expectOneWritten(name, factoryCurrent(), {longer, exact}, {longer, exact});
  }
}

TEST_F(SetParamsTest, OnlyTheFirstElementOfANameIsWritten) {
  expectOneWritten("Speed", factoryCurrent(), {"<Speed Cur=\"10M\"/>", "<Speed Cur=\"10M\"/>"},
                   {"<Speed Cur=\"100M\"/>", "<Speed Cur=\"10M\"/>"});
}

TEST_F(SetParamsTest, AMissingParameterIsReportedByItsName) {
  store(lan({"<Enable Cur=\"On\"/>"}));
  cfgNetworkSetSingleParam(text("EnableX"), text("Lan"), factoryDefault());
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "cfgNetworkSetSingleParam",
                                                "Network EnableX node doesn't exist\n")));
  expectNotSaved();
}

TEST_F(SetParamsTest, AMissingCardIsReportedBeforeTheParameterIsLookedFor) {
  store(lan({}));
  cfgNetworkSetSingleParam(text("None"), text("Wifi"), factoryDefault());
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "cfgNetworkSetSingleParam",
                                                "Network Wifi node doesn't exist\n")));
  expectNotSaved();
}

TEST_F(SetParamsTest, ANullNameIsRefusedBeforeTheFileIsOpened) {
  cfgNetworkSetAllParam(nullptr, factoryCurrent());
  CFG_NETWORK_SetAllParam(nullptr, factoryCurrent());
  cfgNetworkSetSingleParam(nullptr, text("Lan"), factoryCurrent());
  cfgNetworkSetSingleParam(text("MTU"), nullptr, factoryCurrent());
  const auto all = Logged(3, "cfgNetworkSetAllParam", "pcCard is NULL\n");
  const auto single = Logged(3, "cfgNetworkSetSingleParam", "pcCard is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(all, all, single, single));
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0U);
}

}  // namespace
}  // namespace camcfg::tests
