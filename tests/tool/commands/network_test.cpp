#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kCards[] =
    "<NetWork Hostname=\"gate\">\n"
    "    <Lan0>\n"
    "        <Enable Cur=\"On\" Def=\"Off\"/>\n"
    "        <Autoneg Cur=\"Off\" Def=\"On\"/>\n"
    "        <Duplex Cur=\"Half\" Def=\"Full\"/>\n"
    "        <Speed Cur=\"10M\" Def=\"1000M\"/>\n"
    "        <MTU Cur=\"1400\" Def=\"1500\"/>\n"
    "        <Intf Cur=\"Eth1\" Def=\"Eth0\"/>\n"
    "        <IpMode Cur=\"DhcpIp\" Def=\"StaticIp\"/>\n"
    "        <IpAddr Cur=\"192.0.2.7\" Def=\"192.0.2.1\"/>\n"
    "        <NetMask Cur=\"255.255.0.0\" Def=\"255.255.255.0\"/>\n"
    "        <GateWay Cur=\"192.0.2.254\" Def=\"192.0.2.253\"/>\n"
    "        <DnsMode Cur=\"AutoMode\" Def=\"ManualMode\"/>\n"
    "        <Dns1 Cur=\"192.0.2.31\" Def=\"192.0.2.41\"/>\n"
    "        <Dns2 Cur=\"192.0.2.32\" Def=\"192.0.2.42\"/>\n"
    "        <DnsSearch Cur=\"a.example\" Def=\"b.example\"/>\n"
    "        <DhcpDns1 Cur=\"192.0.2.33\" Def=\"192.0.2.43\"/>\n"
    "        <DhcpDns2 Cur=\"192.0.2.34\" Def=\"192.0.2.44\"/>\n"
    "    </Lan0>\n"
    "    <Wifi>\n"
    "        <MTU Cur=\"1500\" Def=\"1500\" Min=\"576\" Max=\"2304\"/>\n"
    "        <Intf Cur=\"Eth2\" Def=\"Wlan0\"/>\n"
    "    </Wifi>\n"
    "</NetWork>\n";

ToolRun refusedCard(const std::string& text) {
  return {1, "", "camcfg: network " + text + "\n"};
}

class NetworkTest : public ToolTest {
 protected:
  NetworkTest() { writeBoth(kCards); }

  ToolRun network(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "network");
    return run(arguments);
  }

  void expect(const std::string& cards) const {
    EXPECT_EQ(device.read(kBusiness), cards);
    EXPECT_EQ(device.read(kBusinessBackup), cards);
  }
};

TEST_F(NetworkTest, CardsAreListedWithTheirInterfacesAndAddresses) {
  EXPECT_EQ(network({"cards"}), (ToolRun{0,
                                         "CARD  INTERFACE  ENABLE  IPMODE  IPADDR\n"
                                         "Lan0  eth1       On      DhcpIp  192.0.2.7\n"
                                         "Wifi  -          -       -       -\n",
                                         ""}));
}

TEST_F(NetworkTest, CardsInJsonSayWhetherTheLibraryListsThem) {
  writeBoth("<NetWork><A/><B/><C/><D><Intf Cur=\"Wlan0\"/></D></NetWork>");
  const ToolRun cards = network({"cards", "--json"});
  EXPECT_THAT(cards.out, testing::HasSubstr("    \"card\": \"C\",\n"
                                            "    \"interface\": null,\n"
                                            "    \"enable\": null,\n"
                                            "    \"ipMode\": null,\n"
                                            "    \"ipAddr\": null,\n"
                                            "    \"listed\": true\n"
                                            "  },\n"
                                            "  {\n"
                                            "    \"card\": \"D\",\n"
                                            "    \"interface\": \"wlan0\",\n"
                                            "    \"enable\": null,\n"
                                            "    \"ipMode\": null,\n"
                                            "    \"ipAddr\": null,\n"
                                            "    \"listed\": false\n"
                                            "  }\n"));
  EXPECT_EQ(cards.err,
            "camcfg: network cards: note: the library lists the first 3 cards only, without D\n");
}

TEST_F(NetworkTest, CardWhoseNameTheLibraryCutsIsNoted) {
  writeBoth("<NetWork><ACardWithALongName/></NetWork>");
  EXPECT_EQ(
      network({"cards"}).err,
      "camcfg: network cards: note: the library lists ACardWithALongName as ACardWithALongN\n");
}

TEST_F(NetworkTest, FileWithoutTheSectionIsUnusable) {
  writeBoth("<System/>");
  for (const char* command : {"cards", "hostname"})
    EXPECT_EQ(network({command}),
              (ToolRun{3, "",
                       std::string("camcfg: network ") + command +
                           ": /cfg0/business_param.xml has no section NetWork\n"}));
}

TEST_F(NetworkTest, ShowListsAllSixteenFields) {
  EXPECT_EQ(network({"show", "Lan0"}), (ToolRun{0,
                                                "Enable     On\n"
                                                "Autoneg    Off\n"
                                                "Duplex     Half\n"
                                                "Speed      10M\n"
                                                "MTU        1400\n"
                                                "Intf       Eth1\n"
                                                "IpMode     DhcpIp\n"
                                                "IpAddr     192.0.2.7\n"
                                                "NetMask    255.255.0.0\n"
                                                "GateWay    192.0.2.254\n"
                                                "DnsMode    AutoMode\n"
                                                "Dns1       192.0.2.31\n"
                                                "Dns2       192.0.2.32\n"
                                                "DnsSearch  a.example\n"
                                                "DhcpDns1   192.0.2.33\n"
                                                "DhcpDns2   192.0.2.34\n",
                                                ""}));
}

TEST_F(NetworkTest, ShowFactoryInJsonHasTheFactoryValuesAndNullForWhatIsMissing) {
  EXPECT_EQ(network({"show", "Wifi", "--factory", "--json"}), (ToolRun{0,
                                                                       "{\n"
                                                                       "  \"card\": \"Wifi\",\n"
                                                                       "  \"factory\": true,\n"
                                                                       "  \"fields\": {\n"
                                                                       "    \"Enable\": null,\n"
                                                                       "    \"Autoneg\": null,\n"
                                                                       "    \"Duplex\": null,\n"
                                                                       "    \"Speed\": null,\n"
                                                                       "    \"MTU\": \"1500\",\n"
                                                                       "    \"Intf\": \"Wlan0\",\n"
                                                                       "    \"IpMode\": null,\n"
                                                                       "    \"IpAddr\": null,\n"
                                                                       "    \"NetMask\": null,\n"
                                                                       "    \"GateWay\": null,\n"
                                                                       "    \"DnsMode\": null,\n"
                                                                       "    \"Dns1\": null,\n"
                                                                       "    \"Dns2\": null,\n"
                                                                       "    \"DnsSearch\": null,\n"
                                                                       "    \"DhcpDns1\": null,\n"
                                                                       "    \"DhcpDns2\": null\n"
                                                                       "  }\n"
                                                                       "}\n",
                                                                       ""}));
}

TEST_F(NetworkTest, ShowSaysWhatApplicationsReadOtherwise) {
  writeBoth("<NetWork><Lan0><Duplex Cur=\"full\"/><Speed Cur=\"2500M\"/></Lan0></NetWork>");
  EXPECT_EQ(network({"show", "Lan0"}).err,
            "camcfg: network show: note: applications read Lan0/Duplex as 'Half'\n"
            "camcfg: network show: note: applications read Lan0/Speed as nothing\n");
}

constexpr char kShadowedCards[] =
    "<NetWork>\n"
    "    <LanWide>\n"
    "        <MTU Cur=\"1\" Def=\"2\"/>\n"
    "    </LanWide>\n"
    "    <Lan>\n"
    "        <MTU Cur=\"3\" Def=\"4\"/>\n"
    "    </Lan>\n"
    "</NetWork>\n";

TEST_F(NetworkTest, CardThatTheLibraryTakesForAnotherIsShownButNotChanged) {
  writeBoth(kShadowedCards);
  EXPECT_EQ(network({"show", "Lan"}).err,
            "camcfg: network show: note: applications that ask for Lan get LanWide, since another "
            "name that begins with it comes first\n");
  const char* const why =
      "Lan: the library would take LanWide, which begins with this name and comes before it in "
      "/cfg0/business_param.xml";
  EXPECT_EQ(network({"set", "Lan", "MTU", "1500"}), refusedCard(std::string("set: ") + why));
  EXPECT_EQ(network({"reset", "Lan"}), refusedCard(std::string("reset: ") + why));
  expect(kShadowedCards);
}

TEST_F(NetworkTest, BeginningOfACardsNameIsNoCard) {
  const char* const why =
      "there is no card 'Lan'; there are Lan0 (eth1), Wifi; did you mean 'Lan0'?";
  EXPECT_EQ(network({"show", "Lan"}), refusedCard(std::string("show: ") + why));
  EXPECT_EQ(network({"set", "Lan", "MTU", "1500"}), refusedCard(std::string("set: ") + why));
  EXPECT_EQ(network({"reset", "Lan"}), refusedCard(std::string("reset: ") + why));
}

struct Setting {
  const char* written;  ///< the field as it is given
  const char* field;
  const char* before;
  const char* value;
};

void PrintTo(const Setting& setting, std::ostream* out) {
  *out << setting.written;
}

class SettingTest : public NetworkTest, public testing::WithParamInterface<Setting> {};

TEST_P(SettingTest, ChangesItsElementAndNothingElse) {
  const Setting& setting = GetParam();
  const std::string field = setting.field;
  const ToolRun result = network({"set", "Lan0", setting.written, setting.value});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out, "Lan0/" + field + ": " + setting.before + " -> " + setting.value + "\n");
  const std::string element = "<" + field + " Cur=\"";
  expect(with(kCards, element + setting.before + "\"", element + setting.value + "\""));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, SettingTest,
    testing::Values(Setting{"Enable", "Enable", "On", "Off"},
                    Setting{"autoneg", "Autoneg", "Off", "On"},
                    Setting{"DUPLEX", "Duplex", "Half", "Full"},
                    Setting{"Speed", "Speed", "10M", "1000M"}, Setting{"mtu", "MTU", "1400", "68"},
                    Setting{"MTU", "MTU", "1400", "9216"}, Setting{"Intf", "Intf", "Eth1", "Wlan0"},
                    Setting{"ipmode", "IpMode", "DhcpIp", "StaticIp"},
                    Setting{"IpAddr", "IpAddr", "192.0.2.7", "198.51.100.2"},
                    Setting{"NetMask", "NetMask", "255.255.0.0", "255.255.255.252"},
                    Setting{"GateWay", "GateWay", "192.0.2.254", ""},
                    Setting{"DnsMode", "DnsMode", "AutoMode", "ManualMode"},
                    Setting{"Dns1", "Dns1", "192.0.2.31", "127.0.0.53"},
                    Setting{"Dns2", "Dns2", "192.0.2.32", ""},
                    Setting{"DnsSearch", "DnsSearch", "a.example", "c.example d.example"},
                    Setting{"DhcpDns1", "DhcpDns1", "192.0.2.33", "198.51.100.3"},
                    Setting{"DhcpDns2", "DhcpDns2", "192.0.2.34", "198.51.100.4"}));

TEST_F(NetworkTest, WordsAreTakenInAnyCaseAndStoredInTheirs) {
  EXPECT_EQ(network({"set", "Lan0", "Intf", "eth0"}),
            (ToolRun{0, "Lan0/Intf: Eth1 -> Eth0\n", ""}));
  expect(with(kCards, "<Intf Cur=\"Eth1\"", "<Intf Cur=\"Eth0\""));
}

TEST_F(NetworkTest, SetInJsonShowsTheValueBefore) {
  EXPECT_EQ(network({"set", "Lan0", "mtu", "1500", "--json"}), (ToolRun{0,
                                                                        "{\n"
                                                                        "  \"card\": \"Lan0\",\n"
                                                                        "  \"field\": \"MTU\",\n"
                                                                        "  \"before\": \"1400\",\n"
                                                                        "  \"value\": \"1500\"\n"
                                                                        "}\n",
                                                                        ""}));
}

struct RefusedSetting {
  const char* card;
  const char* field;
  std::string value;
  std::string why;
};

void PrintTo(const RefusedSetting& refused, std::ostream* out) {
  *out << refused.field << ' ' << refused.value;
}

class RefusedSettingTest : public NetworkTest,
                           public testing::WithParamInterface<RefusedSetting> {};

TEST_P(RefusedSettingTest, IsRefusedInOneLineAndChangesNothing) {
  const RefusedSetting& setting = GetParam();
  EXPECT_EQ(network({"set", setting.card, setting.field, "--", setting.value}),
            refusedCard("set: " + setting.why));
  expect(kCards);
}

constexpr char kUnlessForced[] = "; '--force' sets it anyway";

INSTANTIATE_TEST_SUITE_P(
    Values, RefusedSettingTest,
    testing::Values(
        RefusedSetting{"Lan0", "Dns", "192.0.2.1",
                       "cards have no field 'Dns'; did you mean 'Dns1'?"},
        RefusedSetting{"Wifi", "Enable", "On", "Wifi/Enable: the card has no such element"},
        RefusedSetting{"Lan0", "Enable", "Yes", "Lan0/Enable: 'Yes' is none of Off, On"},
        RefusedSetting{
            "Lan0", "Speed", "200M",
            "Lan0/Speed: '200M' is none of 10M, 100M, 1000M; the nearest permitted is '100M'"},
        RefusedSetting{
            "Lan0", "MTU", "67",
            std::string("Lan0/MTU: 67 is outside 68..9216; the nearest permitted is 68") +
                kUnlessForced},
        RefusedSetting{
            "Lan0", "MTU", "-1",
            std::string("Lan0/MTU: -1 is outside 68..9216; the nearest permitted is 68") +
                kUnlessForced},
        RefusedSetting{
            "Lan0", "MTU", "9217",
            std::string("Lan0/MTU: 9217 is outside 68..9216; the nearest permitted is 9216") +
                kUnlessForced},
        RefusedSetting{
            "Wifi", "MTU", "2305",
            std::string("Wifi/MTU: 2305 is outside 576..2304; the nearest permitted is 2304") +
                kUnlessForced},
        RefusedSetting{"Lan0", "MTU", "1500B", "Lan0/MTU: '1500B' is not a decimal integer"},
        RefusedSetting{"Lan0", "IpAddr", "",
                       std::string("Lan0/IpAddr: '' is not of the form 192.0.2.1") + kUnlessForced},
        RefusedSetting{
            "Lan0", "NetMask", "255.0.255.0",
            std::string("Lan0/NetMask: '255.0.255.0' is not a netmask: its set bits are not "
                        "all at the beginning") +
                kUnlessForced},
        RefusedSetting{
            "Lan0", "DnsSearch", std::string(32, 'x'),
            "Lan0/DnsSearch: '" + std::string(32, 'x') + "' has 32 bytes, the limit is 31"}));

TEST_F(NetworkTest, ForceStoresTextsAndNumbersThatACardCannotUse) {
  EXPECT_EQ(network({"set", "Lan0", "IpAddr", "--force", "fe80::1"}),
            (ToolRun{0, "Lan0/IpAddr: 192.0.2.7 -> fe80::1\n", ""}));
  EXPECT_EQ(
      network({"set", "Lan0", "MTU", "--force", "-5"}),
      (ToolRun{0, "Lan0/MTU: 1400 -> -5\n",
               "camcfg: network set: error: /cfg0/business_param.xml:7: Lan0/MTU: \"Cur\" -5 is "
               "outside 68..9216 [mtu-range]\n"}));
  expect(with(with(kCards, "\"192.0.2.7\"", "\"fe80::1\""), "\"1400\"", "\"-5\""));
}

TEST_F(NetworkTest, ForceNeitherCutsATextNorInventsAWord) {
  EXPECT_EQ(
      network({"set", "Lan0", "Dns1", "--force", std::string(32, '1')}),
      refusedCard("set: Lan0/Dns1: '" + std::string(32, '1') + "' has 32 bytes, the limit is 31"));
  EXPECT_EQ(network({"set", "Lan0", "Duplex", "--force", "both"}),
            refusedCard("set: Lan0/Duplex: 'both' is none of Half, Full"));
  EXPECT_EQ(network({"set", "Lan0", "MTU", "--force", "4294967296"}),
            refusedCard("set: Lan0/MTU: 4294967296 does not fit into 32 bits"));
  expect(kCards);
}

TEST_F(NetworkTest, ElementThatTheLibraryTakesForAnotherIsNotSet) {
  const char* const cards =
      "<NetWork><Lan0><EnableWifi Cur=\"Off\"/><Enable Cur=\"Off\"/></Lan0></NetWork>";
  writeBoth(cards);
  EXPECT_EQ(
      network({"set", "Lan0", "Enable", "On"}),
      refusedCard("set: Lan0/Enable: the library would set EnableWifi, which begins with this "
                  "name and comes before it"));
  expect(cards);
}

TEST_F(NetworkTest, ResetPutsEveryFactoryValueBack) {
  EXPECT_EQ(network({"reset", "Lan0"}), (ToolRun{0,
                                                 "FIELD      VALUE\n"
                                                 "Enable     On -> Off\n"
                                                 "Autoneg    Off -> On\n"
                                                 "Duplex     Half -> Full\n"
                                                 "Speed      10M -> 1000M\n"
                                                 "MTU        1400 -> 1500\n"
                                                 "Intf       Eth1 -> Eth0\n"
                                                 "IpMode     DhcpIp -> StaticIp\n"
                                                 "IpAddr     192.0.2.7 -> 192.0.2.1\n"
                                                 "NetMask    255.255.0.0 -> 255.255.255.0\n"
                                                 "GateWay    192.0.2.254 -> 192.0.2.253\n"
                                                 "DnsMode    AutoMode -> ManualMode\n"
                                                 "Dns1       192.0.2.31 -> 192.0.2.41\n"
                                                 "Dns2       192.0.2.32 -> 192.0.2.42\n"
                                                 "DnsSearch  a.example -> b.example\n"
                                                 "DhcpDns1   192.0.2.33 -> 192.0.2.43\n"
                                                 "DhcpDns2   192.0.2.34 -> 192.0.2.44\n",
                                                 ""}));
  EXPECT_EQ(network({"show", "Lan0"}), network({"show", "Lan0", "--factory"}));
  EXPECT_EQ(device.read(kBusinessBackup), device.read(kBusiness));
  EXPECT_EQ(network({"reset", "Lan0"}),
            (ToolRun{0, "Lan0: it has its factory values already\n", ""}));
}

TEST_F(NetworkTest, ResetTouchesNoOtherCard) {
  EXPECT_EQ(network({"reset", "Wifi", "--json"}), (ToolRun{0,
                                                           "{\n"
                                                           "  \"card\": \"Wifi\",\n"
                                                           "  \"changed\": [\n"
                                                           "    {\n"
                                                           "      \"field\": \"Intf\",\n"
                                                           "      \"before\": \"Eth2\",\n"
                                                           "      \"value\": \"Wlan0\"\n"
                                                           "    }\n"
                                                           "  ],\n"
                                                           "  \"withoutFactoryValue\": []\n"
                                                           "}\n",
                                                           ""}));
  expect(with(kCards, "\"Eth2\"", "\"Wlan0\""));
}

TEST_F(NetworkTest, ResetLeavesAloneWhatHasNoUsableFactoryValue) {
  const std::string cards =
      "<NetWork>\n"
      "    <Lan0>\n"
      "        <Duplex Cur=\"Full\" Def=\"half\"/>\n"
      "        <MTU Cur=\"1400\"/>\n"
      "        <Dns1 Cur=\"192.0.2.1\" Def=\"\"/>\n"
      "    </Lan0>\n"
      "</NetWork>\n";
  writeBoth(cards);
  EXPECT_EQ(network({"reset", "Lan0"}), (ToolRun{0, "FIELD  VALUE\nDns1   192.0.2.1 -> \n",
                                                 "camcfg: network reset: note: Lan0/Duplex has no "
                                                 "usable factory value and stays as it is\n"
                                                 "camcfg: network reset: note: Lan0/MTU has no "
                                                 "usable factory value and stays as it is\n"}));
  expect(with(cards, "Cur=\"192.0.2.1\"", "Cur=\"\""));
}

TEST_F(NetworkTest, ResetIsRefusedWhereTheLibraryWouldChangeMoreThanItShould) {
  const std::string wifi =
      "<NetWork><Lan0><Enable Cur=\"On\" Def=\"Off\"/><EnableWifi Cur=\"On\"/></Lan0></NetWork>";
  writeBoth(wifi);
  EXPECT_EQ(network({"reset", "Lan0"}),
            refusedCard("reset: Lan0: the library would write Enable into EnableWifi, too, which "
                        "begins with this name"));
  expect(wifi);
  const std::string odd = "<NetWork><Lan0><Intf Cur=\"Eth2\"/></Lan0></NetWork>";
  writeBoth(odd);
  EXPECT_EQ(network({"reset", "Lan0"}),
            refusedCard("reset: Lan0/Intf: it has no usable factory value, and the library would "
                        "change its current value; set it to a permitted value first"));
  expect(odd);
}

TEST_F(NetworkTest, HostnameIsShownAndSet) {
  EXPECT_EQ(network({"hostname"}), (ToolRun{0, "gate\n", ""}));
  EXPECT_EQ(network({"hostname", "Gate-2.example"}),
            (ToolRun{0, "hostname: gate -> Gate-2.example\n", ""}));
  expect(with(kCards, "\"gate\"", "\"Gate-2.example\""));
}

TEST_F(NetworkTest, HostnameInJson) {
  EXPECT_EQ(network({"hostname", "--json"}), (ToolRun{0, "{\n  \"hostname\": \"gate\"\n}\n", ""}));
  EXPECT_EQ(network({"hostname", "b", "--json"}),
            (ToolRun{0, "{\n  \"before\": \"gate\",\n  \"hostname\": \"b\"\n}\n", ""}));
}

TEST_F(NetworkTest, HostnameThatIsMissingIsNotFoundAndCanBeSet) {
  writeBoth("<NetWork/>\n");
  EXPECT_EQ(network({"hostname"}), refusedCard("hostname: no host name is set"));
  EXPECT_EQ(network({"hostname", "gate"}), (ToolRun{0, "hostname: - -> gate\n", ""}));
  expect("<NetWork Hostname=\"gate\"/>\n");
}

TEST_F(NetworkTest, HostnameThatIsNoneIsRefusedUnlessForced) {
  EXPECT_EQ(
      network({"hostname", "my_gate"}),
      refusedCard("hostname: 'my_gate' has a character that is not a letter, digit or hyphen; "
                  "'--force' sets it anyway"));
  expect(kCards);
  EXPECT_EQ(
      network({"hostname", "my_gate", "--force"}),
      (ToolRun{0, "hostname: gate -> my_gate\n",
               "camcfg: network hostname: warning: /cfg0/business_param.xml:1: NetWork: "
               "\"Hostname\": 'my_gate' has a character that is not a letter, digit or hyphen "
               "[hostname]\n"}));
}

}  // namespace
}  // namespace camcfg::tests
