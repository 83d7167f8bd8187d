#include <functional>

#include "network/network_test.h"
#include "support/quick_saves.h"

namespace camcfg::tests {
namespace {

using testing::Values;
using testing::WithParamInterface;

// A setter of one field, called with a value that kFactory does not hold.
struct Setter {
  const char* name;
  std::function<void(char* card)> set;
  const char* before;
  const char* after;
};

void PrintTo(const Setter& setter, std::ostream* out) {
  *out << setter.name;
}

std::string element(const char* name, const std::string& current) {
  return "<" + std::string(name) + " Cur=\"" + current + "\"";
}

class OneFieldTest : public NetworkTest, public WithParamInterface<Setter> {
 protected:
  void set(const char* card) const { GetParam().set(text(card)); }
};

TEST_P(OneFieldTest, ChangesTheCurrentValueOfItsElementAndNothingElse) {
  const auto& [name, setter, before, after] = GetParam();
  store(kFactory);
  set("Lan");
  expectSaved(replaced(kFactory, element(name, before), element(name, after)));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(OneFieldTest, AMissingElementIsReportedByItsName) {
  const std::string name = GetParam().name;
  store(lan({}));
  set("Lan");
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "cfgNetworkSetSingleParam",
                                                "Network " + name + " node doesn't exist\n")));
  expectNotSaved();
}

TEST_P(OneFieldTest, AMissingCardIsReportedByItsName) {
  store(kFactory);
  set("Lan2");
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "cfgNetworkSetSingleParam",
                                                "Network Lan2 node doesn't exist\n")));
  expectNotSaved();
}

TEST_P(OneFieldTest, ANullCardIsRefusedBeforeTheFileIsOpened) {
  set(nullptr);
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "cfgNetworkSetSingleParam", "pcCard is NULL\n")));
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0U);
}

INSTANTIATE_TEST_SUITE_P(
    Setters, OneFieldTest,
    Values(
        Setter{"Enable", [](char* card) { CFG_NETWORK_SetNetMode(card, BU_FALSE); }, "On", "Off"},
        Setter{"Autoneg", [](char* card) { CFG_NETWORK_SetLinkAutoneg(card, BU_TRUE); }, "Off",
               "On"},
        Setter{"Duplex", [](char* card) { CFG_NETWORK_SetLinkDuplex(card, LINK_DUPLEX_HALF); },
               "Full", "Half"},
        Setter{"Speed", [](char* card) { CFG_NETWORK_SetLinkSpeed(card, LINK_SPEED_1000M); },
               "100M", "1000M"},
        Setter{"MTU", [](char* card) { CFG_NETWORK_SetLinkMTU(card, 9000); }, "1492", "9000"},
        Setter{"IpMode", [](char* card) { CFG_NETWORK_SetIpMode(card, IP_MODE_DHCP); }, "StaticIp",
               "DhcpIp"},
        Setter{"IpAddr", [](char* card) { CFG_NETWORK_SetIpAddr(card, text("1.2.3.4")); },
               "192.168.1.20", "1.2.3.4"},
        Setter{"NetMask", [](char* card) { CFG_NETWORK_SetNetMask(card, text("1.2.3.4")); },
               "255.255.255.0", "1.2.3.4"},
        Setter{"GateWay", [](char* card) { CFG_NETWORK_SetGateWay(card, text("1.2.3.4")); },
               "192.168.1.1", "1.2.3.4"},
        Setter{"DnsMode", [](char* card) { CFG_NETWORK_SetDnsMode(card, DNS_MODE_AUTO); },
               "ManualMode", "AutoMode"},
        Setter{"Dns1", [](char* card) { CFG_NETWORK_SetDns1(card, text("1.2.3.4")); },
               "192.168.1.53", "1.2.3.4"},
        Setter{"Dns2", [](char* card) { CFG_NETWORK_SetDns2(card, text("1.2.3.4")); },
               "192.168.1.54", "1.2.3.4"},
        Setter{"DnsSearch", [](char* card) { CFG_NETWORK_SetDnsSearch(card, text("a.example")); },
               "studio.example", "a.example"}),
    nameOf<Setter>);

// A setter of one text field.
struct TextSetter {
  const char* name;
  void (*set)(char* card, char* text);
};

void PrintTo(const TextSetter& setter, std::ostream* out) {
  *out << setter.name;
}

class OneTextTest : public NetworkTest, public WithParamInterface<TextSetter> {
 protected:
  // Sets the text in a card that holds only this element.
  void expectStored(char* value, const std::string& stored) {
    const char* name = GetParam().name;
    store(lan({element(name, "old") + "/>"}));
    GetParam().set(text("Lan"), value);
    expectSaved(lan({element(name, stored) + "/>"}));
  }
};

TEST_P(OneTextTest, ALongTextIsCutToItsField) {
  const std::string fits(31, 'a');
  expectStored(text(fits.c_str()), fits);
  expectStored(text((fits + "b").c_str()), fits);
  expectStored(text(std::string(500, 'a').c_str()), fits);
}

TEST_P(OneTextTest, ANullTextIsTheEmptyText) {
  expectStored(nullptr, "");
  expectStored(text(""), "");
}

INSTANTIATE_TEST_SUITE_P(Setters, OneTextTest,
                         Values(TextSetter{"IpAddr", CFG_NETWORK_SetIpAddr},
                                TextSetter{"NetMask", CFG_NETWORK_SetNetMask},
                                TextSetter{"GateWay", CFG_NETWORK_SetGateWay},
                                TextSetter{"Dns1", CFG_NETWORK_SetDns1},
                                TextSetter{"Dns2", CFG_NETWORK_SetDns2},
                                TextSetter{"DnsSearch", CFG_NETWORK_SetDnsSearch}),
                         nameOf<TextSetter>);

class OneValueTest : public NetworkTest {
 protected:
  // A setter called with an odd value, in a file that it saves.
  void expectFile(const std::function<void()>& set, const std::string& contents) {
    store(kFactory);
    device.remove(kBackup);
    set();
    expectSaved(contents);
    EXPECT_THAT(log.records(), IsEmpty());
  }
};

TEST_F(OneValueTest, EveryWordCanBeWritten) {
  const auto changed = [](const char* name, const char* before, const char* after) {
    return replaced(kFactory, element(name, before), element(name, after));
  };
  char* lan = text("Lan");
  expectFile([&] { CFG_NETWORK_SetNetMode(lan, BU_TRUE); }, kFactory);
  expectFile([&] { CFG_NETWORK_SetLinkDuplex(lan, LINK_DUPLEX_FULL); }, kFactory);
  expectFile([&] { CFG_NETWORK_SetLinkSpeed(lan, LINK_SPEED_10M); },
             changed("Speed", "100M", "10M"));
  expectFile([&] { CFG_NETWORK_SetLinkSpeed(lan, LINK_SPEED_100M); }, kFactory);
  expectFile([&] { CFG_NETWORK_SetIpMode(lan, IP_MODE_STATIC); }, kFactory);
  expectFile([&] { CFG_NETWORK_SetDnsMode(lan, DNS_MODE_MANUAL); }, kFactory);
}

TEST_F(OneValueTest, AnUnknownEnableSpeedDuplexOrModeIsNotWrittenYetTheFileIsSaved) {
  char* lan = text("Lan");
  for (const int unknown : {2, -1, 25, 2500}) {
    SCOPED_TRACE(unknown);
    expectFile([&] { CFG_NETWORK_SetNetMode(lan, static_cast<tagBU_BOOL>(unknown)); }, kFactory);
    expectFile([&] { CFG_NETWORK_SetLinkSpeed(lan, static_cast<tagLINK_SPEED_E>(unknown)); },
               kFactory);
    expectFile([&] { CFG_NETWORK_SetLinkDuplex(lan, static_cast<tagDUPLEX_E>(unknown)); },
               kFactory);
    expectFile([&] { CFG_NETWORK_SetIpMode(lan, static_cast<tagIP_MODE_E>(unknown)); }, kFactory);
    expectFile([&] { CFG_NETWORK_SetDnsMode(lan, static_cast<tagDNS_MODE_E>(unknown)); }, kFactory);
  }
}

TEST_F(OneValueTest, AnyAutonegButOneIsWrittenAsOff) {
  for (const int value : {0, 2, -1, 256}) {
    store(lan({R"(<Autoneg Cur="On" Def="On"/>)"}));
    CFG_NETWORK_SetLinkAutoneg(text("Lan"), static_cast<tagBU_BOOL>(value));
    expectSaved(lan({R"(<Autoneg Cur="Off" Def="On"/>)"}));
  }
}

TEST_F(OneValueTest, AnElementWhoseNameOnlyBeginsWithTheParametersIsWritten) {
  store(lan({"<EnableWifi Cur=\"On\"/>", "<SpeedX Cur=\"10M\"/>"}));
  CFG_NETWORK_SetNetMode(text("Lan"), BU_FALSE);
  CFG_NETWORK_SetLinkSpeed(text("Lan"), LINK_SPEED_100M);
  expectSaved(lan({"<EnableWifi Cur=\"Off\"/>", "<SpeedX Cur=\"100M\"/>"}));
}

class CacheDnsTest : public NetworkTest {
 protected:
  static std::string cached(const std::string& dns1, const std::string& dns2) {
    return lan({element("DhcpDns1", dns1) + "/>", element("DhcpDns2", dns2) + "/>"});
  }
};

TEST_F(CacheDnsTest, TheFirstServerIsSavedAndUnlockedBeforeTheSecondIsWritten) {
  store(cached("old1", "old2"));
  std::vector<std::string> seen;
  insteadOfSync = [&] {
    seen.push_back(device.read(CFG_FILE_BUSINESS));
    seen.push_back(device.exists(kBackup) ? device.read(kBackup) : "none");
  };
  CFG_NETWORK_CacheDnsFromDhcp(text("Lan"), text("1.1.1.1"), text("2.2.2.2"));
  insteadOfSync = [] {};

  const std::string first = cached("1.1.1.1", "old2");
  const std::string both = cached("1.1.1.1", "2.2.2.2");
  EXPECT_THAT(seen, ElementsAre(first, "none", first, first, both, first, both, both));
  expectSaved(both);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CacheDnsTest, AMissingSecondElementIsReportedAfterTheFirstIsSaved) {
  store(lan({element("DhcpDns1", "old") + "/>"}));
  CFG_NETWORK_CacheDnsFromDhcp(text("Lan"), text("1.1.1.1"), text("2.2.2.2"));
  expectSaved(lan({element("DhcpDns1", "1.1.1.1") + "/>"}));
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "cfgNetworkSetSingleParam",
                                                "Network DhcpDns2 node doesn't exist\n")));
}

TEST_F(CacheDnsTest, AMissingFirstElementIsReportedAndTheSecondSaved) {
  store(lan({element("DhcpDns2", "old") + "/>"}));
  CFG_NETWORK_CacheDnsFromDhcp(text("Lan"), text("1.1.1.1"), text("2.2.2.2"));
  expectSaved(lan({element("DhcpDns2", "2.2.2.2") + "/>"}));
  EXPECT_THAT(log.records(), ElementsAre(Logged(3, "cfgNetworkSetSingleParam",
                                                "Network DhcpDns1 node doesn't exist\n")));
}

TEST_F(CacheDnsTest, EachHalfReportsItsOwnFailure) {
  CFG_NETWORK_CacheDnsFromDhcp(nullptr, text("1.1.1.1"), text("2.2.2.2"));
  const auto reported = Logged(3, "cfgNetworkSetSingleParam", "pcCard is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(reported, reported));
}

TEST_F(CacheDnsTest, LongAndNullServersAreCutAndEmpty) {
  store(cached("old1", "old2"));
  CFG_NETWORK_CacheDnsFromDhcp(text("Lan"), text(std::string(100, 'a').c_str()), nullptr);
  expectSaved(cached(std::string(31, 'a'), ""));
}

TEST_F(CacheDnsTest, TheServersSetByHandStayAsTheyAre) {
  store(kFactory);
  CFG_NETWORK_CacheDnsFromDhcp(text("Lan"), text("1.1.1.1"), text("2.2.2.2"));
  expectSaved(replaced(replaced(kFactory, "Cur=\"192.168.9.1\"", "Cur=\"1.1.1.1\""),
                       "Cur=\"192.168.9.2\"", "Cur=\"2.2.2.2\""));
}

}  // namespace
}  // namespace camcfg::tests
