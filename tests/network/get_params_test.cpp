#include <climits>

#include "network/network_test.h"

namespace camcfg::tests {
namespace {

using Settings = tagNETWORK_CFG_S;

class GetParamsTest : public NetworkTest {
 protected:
  Settings read(const char* attribute, const char* card) {
    auto settings = patterned<Settings>();
    cfgNetworkGetParam(text(attribute), text(card), &settings);
    EXPECT_THAT(log.records(), IsEmpty());
    expectNotSaved();
    return settings;
  }

  // The current values of a card with these elements.
  Settings readLan(const std::vector<std::string>& elements) {
    store(lan(elements));
    return read("Cur", "Lan");
  }
};

TEST_F(GetParamsTest, EveryFieldIsReadFromTheAttributeAskedFor) {
  store(kFactory);
  EXPECT_EQ(read("Cur", "Lan"), factoryCurrent());
  EXPECT_EQ(read("Def", "Lan"), factoryDefault());
}

TEST_F(GetParamsTest, TheTwoWrappersReadTheCurrentAndTheFactoryValues) {
  store(kFactory);
  auto settings = patterned<Settings>();
  CFG_NETWORK_GetAllParamCur(text("Lan"), &settings);
  EXPECT_EQ(settings, factoryCurrent());
  settings = patterned<Settings>();
  CFG_NETWORK_GetAllParamDef(text("Lan"), &settings);
  EXPECT_EQ(settings, factoryDefault());
  EXPECT_THAT(log.records(), IsEmpty());
  expectNotSaved();
}

TEST_F(GetParamsTest, TheCardIsTheFirstWhoseNameBeginsWithTheText) {
  store(
      "<NetWork>\n    <LanBack>\n        <MTU Cur=\"1\"/>\n    </LanBack>\n    <Lan>\n"
      "        <MTU Cur=\"2\"/>\n    </Lan>\n</NetWork>\n");
  EXPECT_EQ(read("Cur", "Lan").s32MTU, 1);
  EXPECT_EQ(read("Cur", "").s32MTU, 1);
}

TEST_F(GetParamsTest, ACardWithoutElementsReadsAsZero) {
  EXPECT_EQ(readLan({}), Settings{});
}

TEST_F(GetParamsTest, AnAbsentAttributeReadsAsTheEmptyText) {
  EXPECT_EQ(readLan({"<Enable/>", "<Autoneg/>", "<Duplex/>", "<Speed/>", "<MTU/>", "<Intf/>",
                     "<IpMode/>", "<IpAddr/>", "<NetMask/>", "<GateWay/>", "<DnsMode/>", "<Dns1/>",
                     "<Dns2/>", "<DnsSearch/>", "<DhcpDns1/>", "<DhcpDns2/>"}),
            Settings{});
}

TEST_F(GetParamsTest, WordsInAnotherCaseOrFormReadAsZero) {
  for (const char* word : {"", "on", "ON", "On ", " On", "1", "full", "FULL", "Fully", "2500M",
                           "100m", "100", "1000", "staticip", "Static", "manualmode", "Manual"})
    EXPECT_EQ(readLan({std::string("<Enable Cur=\"") + word + "\"/>",
                       std::string("<Autoneg Cur=\"") + word + "\"/>",
                       std::string("<Duplex Cur=\"") + word + "\"/>",
                       std::string("<Speed Cur=\"") + word + "\"/>",
                       std::string("<Intf Cur=\"") + word + "\"/>",
                       std::string("<IpMode Cur=\"") + word + "\"/>",
                       std::string("<DnsMode Cur=\"") + word + "\"/>"}),
              Settings{})
        << word;
}

TEST_F(GetParamsTest, OnlyElementsOfExactlyThisNameAreRead) {
  EXPECT_EQ(
      readLan({"<EnableX Cur=\"On\"/>", "<AutonegX Cur=\"On\"/>", "<DuplexX Cur=\"Full\"/>",
               "<SpeedX Cur=\"10M\"/>", "<MTUX Cur=\"1\"/>", "<IntfX Cur=\"Eth0\"/>",
               "<IpModeX Cur=\"StaticIp\"/>", "<IpAddrX Cur=\"x\"/>", "<NetMaskX Cur=\"x\"/>",
               "<GateWayX Cur=\"x\"/>", "<DnsModeX Cur=\"ManualMode\"/>", "<Dns1X Cur=\"x\"/>",
               "<Dns2X Cur=\"x\"/>", "<DnsSearchX Cur=\"x\"/>", "<DhcpDns1X Cur=\"x\"/>",
               "<DhcpDns2X Cur=\"x\"/>", "<enable Cur=\"On\"/>", "<Enabl Cur=\"On\"/>"}),
      Settings{});
}

TEST_F(GetParamsTest, OfSeveralElementsOfOneNameTheLastCounts) {
  EXPECT_EQ(readLan({"<Speed Cur=\"10M\"/>", "<Speed Cur=\"1000M\"/>"}).enSpeed, LINK_SPEED_1000M);
  EXPECT_EQ(readLan({"<Enable Cur=\"On\"/>", "<Enable Cur=\"none\"/>"}).enEnable, BU_FALSE);
  EXPECT_STREQ(readLan({"<Dns1 Cur=\"longer\"/>", "<Dns1 Cur=\"no\"/>"}).acDns1, "no");
}

TEST_F(GetParamsTest, AWordThatIsNoneOfAnElementsLeavesWhatAnEarlierElementGave) {
  EXPECT_EQ(readLan({"<Speed Cur=\"10M\"/>", "<Speed Cur=\"none\"/>"}).enSpeed, LINK_SPEED_10M);
}

TEST_F(GetParamsTest, TheMtuIsConvertedAsADecimalNumber) {
  const struct {
    const char* text;
    int mtu;
  } cases[] = {{"1500", 1500},
               {"-1", -1},
               {"+9000", 9000},
               {"  576", 576},
               {"1500 bytes", 1500},
               {"0010", 10},
               {"0x10", 0},
               {"", 0},
               {"none", 0},
               {"2147483647", INT_MAX},
               {"-2147483648", INT_MIN}};
  for (const auto& [mtu, expected] : cases)
    EXPECT_EQ(readLan({std::string("<MTU Cur=\"") + mtu + "\"/>"}).s32MTU, expected) << mtu;
}

TEST_F(GetParamsTest, AnMtuBeyond32BitsKeepsItsLowerHalf) {
  const struct {
    const char* text;
    int mtu;
  } cases[] = {{"2147483648", INT_MIN},     {"4294967296", 0},
               {"4294968796", 1500},        {"-2147483649", INT_MAX},
               {"9223372036854775807", -1}, {"99999999999999999999", -1},
               {"-99999999999999999999", 0}};
  for (const auto& [mtu, expected] : cases)
    EXPECT_EQ(readLan({std::string("<MTU Cur=\"") + mtu + "\"/>"}).s32MTU, expected) << mtu;
}

TEST_F(GetParamsTest, ATextThatFillsItsFieldIsCutByOneCharacter) {
  const std::string fits(31, 'a');
  const std::string tooLong(32, 'b');
  const Settings settings =
      readLan({"<IpAddr Cur=\"" + fits + "\"/>", "<NetMask Cur=\"" + tooLong + "\"/>"});
  EXPECT_EQ(settings.acIpAddr, fits);
  EXPECT_EQ(settings.acNetMask, tooLong.substr(1));
}

TEST_F(GetParamsTest, LongTextsAreCutAndNeverReachTheNextField) {
  const std::string end = " Cur=\"" + std::string(500, 'x') + "\"/>";
  Settings expected{};
  for (auto* field :
       {&expected.acIpAddr, &expected.acNetMask, &expected.acGateWay, &expected.acDns1,
        &expected.acDns2, &expected.acDnsSearch, &expected.acDhcpDns1, &expected.acDhcpDns2})
    std::memset(*field, 'x', sizeof *field - 1);
  EXPECT_EQ(readLan({"<IpAddr" + end, "<NetMask" + end, "<GateWay" + end, "<Dns1" + end,
                     "<Dns2" + end, "<DnsSearch" + end, "<DhcpDns1" + end, "<DhcpDns2" + end}),
            expected);
}

TEST_F(GetParamsTest, ANullArgumentLeavesTheRecordAlone) {
  auto settings = patterned<Settings>();
  cfgNetworkGetParam(text("Cur"), nullptr, &settings);
  cfgNetworkGetParam(nullptr, text("Lan"), &settings);
  EXPECT_EQ(settings, patterned<Settings>());
  cfgNetworkGetParam(text("Cur"), text("Lan"), nullptr);
  const auto reported = Logged(3, "cfgNetworkGetParam", "pcCard is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(reported, reported, reported));
  EXPECT_EQ(g_mapFileLock.count(CFG_FILE_BUSINESS), 0U);
}

TEST_F(GetParamsTest, TheWrappersZeroTheRecordEvenForANullCard) {
  auto settings = patterned<Settings>();
  CFG_NETWORK_GetAllParamCur(nullptr, &settings);
  EXPECT_EQ(settings, Settings{});
  settings = patterned<Settings>();
  CFG_NETWORK_GetAllParamDef(nullptr, &settings);
  EXPECT_EQ(settings, Settings{});
  const auto reported = Logged(3, "cfgNetworkGetParam", "pcCard is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(reported, reported));
}

TEST_F(GetParamsTest, TheWrappersRefuseANullRecord) {
  CFG_NETWORK_GetAllParamCur(text("Lan"), nullptr);
  CFG_NETWORK_GetAllParamDef(text("Lan"), nullptr);
  const auto reported = Logged(3, "cfgNetworkGetParam", "pcCard is NULL\n");
  EXPECT_THAT(log.records(), ElementsAre(reported, reported));
}

TEST_F(GetParamsTest, AFailedReadLeavesTheRecordZeroed) {
  auto settings = patterned<Settings>();
  cfgNetworkGetParam(text("Cur"), text("Lan"), &settings);
  EXPECT_EQ(settings, Settings{});
  for (const char* contents : {"<NetWork><Lan></NetWork>", "<!-- empty -->\n", "<System/>\n",
                               "<NetWork><Wifi/></NetWork>\n"}) {
    store(contents);
    settings = patterned<Settings>();
    cfgNetworkGetParam(text("Cur"), text("Lan"), &settings);
    EXPECT_EQ(settings, Settings{}) << contents;
    EXPECT_TRUE(isUnlocked(CFG_FILE_BUSINESS));
  }
}

}  // namespace
}  // namespace camcfg::tests
