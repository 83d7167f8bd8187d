#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <sstream>

#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using tool::Json;

constexpr char kForced[] = "; '--force' sets it anyway";

/// Several fields of a card at once, on the sample device: Lan0 (eth0) with DHCP and 192.168.1.80/24,
/// Lan1 (eth1) with a static 192.168.90.80/24 and the gateway 192.168.90.1.
class NetworkSetTest : public SampleTest {
 protected:
  ToolRun type(const std::string& line) const {
    std::istringstream words(line);
    return run({std::istream_iterator<std::string>(words), {}});
  }
  ToolRun set(const std::string& line) const { return type("network set " + line); }

  std::string value(const std::string& member) const {
    return type("get network.cards." + member).out;
  }

  /// A line that must change these members, and nothing else.
  void expectChanges(const std::string& line, const Json& expected) const {
    const ToolRun result = set(line + " --json");
    EXPECT_EQ(result.status, 0) << result.err;
    Json changes = Json::object();
    const Json answer = jsonIn(result.out);
    for (const Json& change : answer.at("changes"))
      changes[change.at("place").text()] = change.at("after");
    EXPECT_EQ(changes, expected) << line;
  }

  void expectRefused(const std::string& line, const std::string& why, int status = 1) const {
    const std::string before = device.read(kBusiness);
    EXPECT_EQ(set(line), (ToolRun{status, "", "camcfg: network set: " + why + "\n"}));
    EXPECT_EQ(device.read(kBusiness), before);
    EXPECT_EQ(device.read(kBusinessBackup), before);
  }

  /// How often the main copy is saved by a line.
  int savesBy(const std::string& line) const {
    const int watch = inotify_init1(IN_NONBLOCK);
    inotify_add_watch(watch, (device.hostPath() + "/cfg0").c_str(), IN_CLOSE_WRITE | IN_MOVED_TO);
    EXPECT_EQ(type(line).status, 0);
    alignas(inotify_event) std::array<char, 4096> buffer{};
    const ssize_t length = read(watch, buffer.data(), buffer.size());
    close(watch);
    int saves = 0;
    for (ssize_t at = 0; at < length;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer.data() + at);
      if (std::string(event->name) == "business_param.xml") ++saves;
      at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
    }
    return saves;
  }
};

TEST_F(NetworkSetTest, SeveralFieldsAreOneChangeThatCanBeUndone) {
  const std::string before = device.read(kBusiness);
  EXPECT_EQ(
      set("eth0 address=192.0.2.7/24 gateway=192.0.2.1 dns=192.0.2.53,192.0.2.54 mode=static"),
      (ToolRun{
          0,
          "PLACE                       BEFORE        AFTER\n"
          "network.cards.Lan0.ipMode   DhcpIp        StaticIp\n"
          "network.cards.Lan0.ipAddr   192.168.1.80  192.0.2.7\n"
          "network.cards.Lan0.gateWay  192.168.1.1   192.0.2.1\n"
          "network.cards.Lan0.dnsMode  AutoMode      ManualMode\n"
          "network.cards.Lan0.dns1     192.168.1.1   192.0.2.53\n"
          "network.cards.Lan0.dns2                   192.0.2.54\n",
          "camcfg: network set: warning: /cfg0/business_param.xml:241: Lan1/GateWay: \"Cur\" is a "
          "second default route: card Lan0 has one [two-gateways]\n"}));
  EXPECT_EQ(device.read(kBusinessBackup), device.read(kBusiness));
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 1U);
  EXPECT_EQ(type("undo").status, 0);
  EXPECT_EQ(device.read(kBusiness), before);
  EXPECT_EQ(device.read(kBusinessBackup), before);
}

TEST_F(NetworkSetTest, SeveralFieldsAreSavedOnce) {
  EXPECT_EQ(savesBy("network set eth0 address=192.0.2.7/24 gateway=192.0.2.1 mtu=1400"), 1);
  EXPECT_EQ(savesBy("network set eth0 mtu=1400"), 0);
  EXPECT_EQ(savesBy("network set eth0 mode=dhcp --dry-run"), 0);
}

TEST_F(NetworkSetTest, FieldsGoByAnyOfTheirNamesInAnyCase) {
  for (const char* field : {"MTU", "mtu"})
    expectChanges(std::string("Lan1 --dry-run ") + field + "=1400",
                  {{"network.cards.Lan1.mtu", 1400}});
  for (const char* field : {"IpAddr", "ipAddr", "address", "ADDRESS"})
    expectChanges(std::string("Lan1 --dry-run ") + field + "=192.168.90.5",
                  {{"network.cards.Lan1.ipAddr", "192.168.90.5"}});
  for (const char* word : {"mode=dhcp", "IpMode=DhcpIp", "ipmode=dhcpip"})
    expectChanges(
        std::string("Lan1 --dry-run ") + word,
        {{"network.cards.Lan1.ipMode", "DhcpIp"}, {"network.cards.Lan1.dnsMode", "AutoMode"}});
  expectChanges("Lan1 --dry-run --force netmask=255.255.0.0 enable=no interface=wlan0 speed=10m",
                {{"network.cards.Lan1.enable", false},
                 {"network.cards.Lan1.speed", "10M"},
                 {"network.cards.Lan1.intf", "Wlan0"},
                 {"network.cards.Lan1.netMask", "255.255.0.0"}});
}

TEST_F(NetworkSetTest, PrefixSetsTheNetmask) {
  expectChanges("eth1 address=192.168.90.81/16", {{"network.cards.Lan1.ipAddr", "192.168.90.81"},
                                                  {"network.cards.Lan1.netMask", "255.255.0.0"}});
}

TEST_F(NetworkSetTest, AddressImpliesStatic) {
  expectChanges("eth0 address=192.168.1.81", {{"network.cards.Lan0.ipMode", "StaticIp"},
                                              {"network.cards.Lan0.ipAddr", "192.168.1.81"}});
  EXPECT_EQ(set("wlan0 gateway=192.168.2.9").status, 0);
  EXPECT_EQ(value("Wifi.ipMode"), "StaticIp\n");
}

TEST_F(NetworkSetTest, ServersImplyManualOnes) {
  expectChanges("eth0 dns=192.0.2.53", {{"network.cards.Lan0.dnsMode", "ManualMode"},
                                        {"network.cards.Lan0.dns1", "192.0.2.53"}});
  expectChanges("eth0 dns2=192.0.2.54 dns1=",
                {{"network.cards.Lan0.dns1", ""}, {"network.cards.Lan0.dns2", "192.0.2.54"}});
  expectChanges("eth0 dns=192.0.2.53",
                {{"network.cards.Lan0.dns1", "192.0.2.53"}, {"network.cards.Lan0.dns2", ""}});
}

TEST_F(NetworkSetTest, DhcpImpliesAutomaticServersUnlessTheyAreGiven) {
  expectChanges("eth1 mode=dhcp --dry-run", {{"network.cards.Lan1.ipMode", "DhcpIp"},
                                             {"network.cards.Lan1.dnsMode", "AutoMode"}});
  expectChanges(
      "eth1 mode=dhcp dns=192.0.2.53 --dry-run",
      {{"network.cards.Lan1.ipMode", "DhcpIp"}, {"network.cards.Lan1.dns1", "192.0.2.53"}});
  expectChanges("eth1 mode=dhcp dnsMode=manual", {{"network.cards.Lan1.ipMode", "DhcpIp"}});
}

TEST_F(NetworkSetTest, CardsGoByTheirInterfaceToo) {
  for (const char* card : {"Lan1", "LAN1", "eth1", "Eth1"}) {
    EXPECT_EQ(run({"network", "show", card}), run({"network", "show", "Lan1"})) << card;
    EXPECT_EQ(run({"network", "set", card, "MTU", "1400", "--dry-run"}).out,
              "Lan1/MTU: 1500 -> 1400\nnothing was written\n");
    EXPECT_EQ(run({"network", "reset", card}).out, "Lan1: it has its factory values already\n");
  }
}

TEST_F(NetworkSetTest, InterfaceOfTwoCardsIsRefused) {
  EXPECT_EQ(set("eth1 interface=eth0 --force").status, 0);
  expectRefused("eth0 mtu=1400", "'eth0' may be Lan0, Lan1; give one of these names");
}

TEST_F(NetworkSetTest, UnknownCardIsRefusedWithThoseThatExist) {
  expectRefused(
      "eht0 mtu=1400",
      "there is no card 'eht0'; there are Lan0 (eth0), Lan1 (eth1), Wifi (wlan0); did you "
      "mean 'eth0'?");
  expectRefused("Lan mtu=1400",
                "there is no card 'Lan'; there are Lan0 (eth0), Lan1 (eth1), Wifi (wlan0); did you "
                "mean 'Lan0'?");
}

TEST_F(NetworkSetTest, GatewayOutsideTheSubnetIsRefusedUnlessForced) {
  expectRefused("eth0 address=192.0.2.7/24 gateway=192.0.3.1",
                std::string("Lan0/GateWay: 192.0.3.1 is not in 192.0.2.0/24, the subnet of "
                            "192.0.2.7") +
                    kForced);
  expectRefused("eth1 address=192.0.2.7",
                std::string("Lan1/GateWay: 192.168.90.1 is not in 192.0.2.0/24, the subnet of "
                            "192.0.2.7; give gateway= as well") +
                    kForced);
  expectRefused("eth1 netmask=255.255.255.224",
                std::string("Lan1/GateWay: 192.168.90.1 is not in 192.168.90.64/27, the subnet of "
                            "192.168.90.80; give gateway= as well") +
                    kForced);
  EXPECT_EQ(set("eth0 address=192.0.2.7/24 gateway=192.0.3.1 --force").status, 0);
  EXPECT_EQ(value("Lan0.gateWay"), "192.0.3.1\n");
}

TEST_F(NetworkSetTest, GatewayMayBeEmptyAndOfNoInterestWithoutAnOwnAddress) {
  EXPECT_EQ(set("eth1 address=192.0.2.7 gateway=").status, 0);
  EXPECT_EQ(value("Lan1.gateWay"), "\n");
  EXPECT_EQ(set("eth1 GateWay= --dry-run").out, "it is so already; nothing was written\n");
  change("business_param.xml", "<GateWay Cur=\"192.168.1.1\"", "<GateWay Cur=\"192.0.9.9\"");
  EXPECT_EQ(set("eth0 mtu=1400 mode=dhcp").status, 0);
  expectRefused("eth0 mode=static",
                std::string("Lan0/GateWay: 192.0.9.9 is not in 192.168.1.0/24, the subnet of "
                            "192.168.1.80; give gateway= as well") +
                    kForced);
}

TEST_F(NetworkSetTest, WhatHasNothingToDoWithTheGatewayIsSetNevertheless) {
  EXPECT_EQ(set("eth1 gateway=192.0.2.1 --force").status, 0);
  EXPECT_EQ(set("eth1 mtu=1400 dns=192.0.2.53").status, 0);
}

TEST_F(NetworkSetTest, AddressOfTheSubnetItselfIsRefusedUnlessForced) {
  expectRefused(
      "eth0 address=192.168.1.0/24",
      std::string("Lan0/IpAddr: 192.168.1.0 is the subnet 192.168.1.0/24 itself") + kForced);
  expectRefused("eth0 address=192.168.1.255",
                std::string("Lan0/IpAddr: 192.168.1.255 is the broadcast address of the subnet "
                            "192.168.1.0/24") +
                    kForced);
  EXPECT_EQ(set("eth0 address=192.0.2.6/31 gateway=192.0.2.7").status, 0);
  EXPECT_EQ(set("eth0 address=192.0.2.6/32 gateway=").status, 0);
  EXPECT_EQ(set("eth0 address=192.0.2.0/24 --force").status, 0);
}

TEST_F(NetworkSetTest, StaticWithoutAnAddressIsRefused) {
  change("business_param.xml", "<IpAddr Cur=\"192.168.1.80\"", "<IpAddr Cur=\"\"");
  expectRefused(
      "eth0 mode=static",
      std::string("Lan0/IpAddr: '' is not of the form 192.0.2.1; give address= as well") + kForced);
  EXPECT_EQ(set("eth0 mode=static address=192.168.1.7").status, 0);
}

TEST_F(NetworkSetTest, ContradictionsAreRefused) {
  expectRefused("eth0 mode=dhcp address=192.0.2.7/24 gateway=192.0.2.1",
                "Lan0/IpAddr: it is for mode=static, and mode=dhcp is given");
  expectRefused("eth0 gateway=192.168.1.1 mode=dhcp",
                "Lan0/GateWay: it is for mode=static, and mode=dhcp is given");
  expectRefused("eth0 dns=192.0.2.53,192.0.2.54 dnsMode=auto",
                "Lan0/Dns1: it is for dnsMode=manual, and dnsMode=auto is given");
}

TEST_F(NetworkSetTest, FieldsThatAreGivenTwiceAreRefused) {
  expectRefused("eth0 mtu=1400 MTU=1400", "Lan0/MTU: it is given twice");
  expectRefused("eth1 address=192.168.90.7/24 netmask=255.255.255.0",
                "Lan1/NetMask: it is given twice");
  expectRefused("eth1 IpAddr=192.168.90.7 address=192.168.90.7", "Lan1/IpAddr: it is given twice");
  expectRefused("eth1 dns=192.0.2.53 dns2=192.0.2.53", "Lan1/Dns2: it is given twice");
}

TEST_F(NetworkSetTest, FaultyWordsAreRefusedInOneLine) {
  expectRefused("eth0 adress=192.0.2.7", "cards have no field 'adress'; did you mean 'address'?");
  expectRefused("eth0 mode=dchp enable=maybe",
                "Lan0/IpMode: 'dchp' is none of dhcp, static; the nearest permitted is 'dhcp'; "
                "Lan0/Enable: 'maybe' is none of no, yes");
  expectRefused("eth0 address=192.0.2.7/33", "Lan0/IpAddr: '33' is not a prefix length, 1..32");
  expectRefused("eth0 address=192.0.2/24",
                std::string("Lan0/IpAddr: '192.0.2' is not of the form 192.0.2.1") + kForced);
  expectRefused("eth0 dns=192.0.2.1,192.0.2.2,192.0.2.3",
                "Lan0/Dns1: dns= has 3 values, the card has room for 2");
  expectRefused(
      "eth0 mtu=20",
      std::string("Lan0/MTU: 20 is outside 68..9216; the nearest permitted is 68") + kForced);
  expectRefused("eth0 mtu=1400 =x", "'=x' is not FIELD=VALUE", 2);
  expectRefused("eth0 mtu=1400 x", "'x' is not FIELD=VALUE", 2);
  expectRefused("eth0 mtu", "which value? give mtu=VALUE", 2);
  expectRefused("eth0 mtu 1400 x", "give FIELD=VALUE for each, or FIELD VALUE", 2);
  expectRefused("eth0 address 192.0.2.7", "cards have no field 'address'; give address=VALUE");
}

TEST_F(NetworkSetTest, FieldThatTheCardLacksIsRefused) {
  change("business_param.xml", "<Dns2 Cur=\"\" Def=\"\"/>", "");
  expectRefused("eth0 dns2=192.0.2.53", "Lan0/Dns2: the card has no such element");
  expectRefused("eth0 dns=192.0.2.53,192.0.2.54",
                "Lan0/Dns1: dns= has 2 values, the card has room for 1");
}

TEST_F(NetworkSetTest, UnchangedFieldsAreNotWritten) {
  EXPECT_EQ(set("eth0 mode=dhcp mtu=1500"),
            (ToolRun{0, "it is so already; nothing was written\n", ""}));
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 0U);
}

TEST_F(NetworkSetTest, AnswersInJsonAreThoseOfAnImport) {
  EXPECT_EQ(jsonIn(set("eth0 mtu=1400 --dry-run --json").out).dump(),
            R"({"dryRun":true,"changes":[{"place":"network.cards.Lan0.mtu","before":1500,)"
            R"("after":1400}]})");
  EXPECT_EQ(jsonIn(set("eth0 mtu=1400 --json").out).dump(),
            R"({"dryRun":false,"changes":[{"place":"network.cards.Lan0.mtu","before":1500,)"
            R"("after":1400}],"written":["network.cards.Lan0"],"notWritten":[]})");
}

TEST_F(NetworkSetTest, DryRunsWriteNothing) {
  const std::string before = device.read(kBusiness);
  EXPECT_EQ(set("eth1 MTU 1400").status, 0);
  const std::string changed = device.read(kBusiness);
  ASSERT_NE(changed, before);
  for (const char* line :
       {"network set eth0 address=192.0.2.7/24 gateway=", "network set eth0 MTU 1400",
        "network reset eth1", "network hostname gate", "system http-port 8081",
        "system https-port 8444", "system rtsp-port 8554", "system rtsp-over-http-port 8082"}) {
    const ToolRun result = type(std::string(line) + " --dry-run");
    EXPECT_EQ(result.status, 0) << line << '\n' << result.err;
    EXPECT_THAT(result.out, HasSubstr("\nnothing was written\n")) << line;
    EXPECT_EQ(device.read(kBusiness), changed) << line;
    EXPECT_EQ(device.read(kBusinessBackup), changed) << line;
    const ToolRun json = type(std::string(line) + " --dry-run --json");
    EXPECT_TRUE(jsonIn(json.out).is_object()) << line;
    EXPECT_EQ(device.read(kBusiness), changed) << line;
  }
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 1U);
}

TEST_F(NetworkSetTest, ShowWithoutACardShowsAll) {
  const std::string all = type("network show").out;
  std::string expected;
  for (const auto& [card, heading] :
       {std::pair("Lan0", "Lan0 (eth0)\n"), std::pair("Lan1", "\nLan1 (eth1)\n"),
        std::pair("Wifi", "\nWifi (wlan0)\n")})
    expected += heading + run({"network", "show", card}).out;
  EXPECT_EQ(all, expected);
}

TEST_F(NetworkSetTest, ShowWithoutACardIsAnArrayInJson) {
  for (const std::string option : {"", " --factory"}) {
    const Json all = jsonIn(type("network show --json" + option).out);
    ASSERT_EQ(all.size(), 3U);
    EXPECT_EQ(all[1], jsonIn(type("network show Lan1 --json" + option).out));
  }
}

TEST_F(NetworkSetTest, ANetmaskMayBeTypedAsThePrefixLength) {
  expectChanges("Lan1 --dry-run --force netmask=16",
                {{"network.cards.Lan1.netMask", "255.255.0.0"}});
}

}  // namespace
}  // namespace camcfg::tests
