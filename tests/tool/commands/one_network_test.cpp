#include <fstream>

#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
// On the sample device it has 192.168.90.80/24 as its own address, and the gateway 192.168.90.1.
constexpr char kCard[] = "Lan1";

/// Address, mask and gateway of a card, however they are changed.
class OneNetworkTest : public SampleTest {
 protected:
  ToolRun importing(const std::string& card) const {
    const std::string path = device.hostPath() + "/document.json";
    std::ofstream(path) << R"({"version": 1, "network": {"cards": {")" << kCard << "\": {" << card
                        << "}}}}";
    return run({"import", path});
  }
};

constexpr char kOtherSubnet[] =
    "warning: /cfg0/business_param.xml:241: Lan1/GateWay: \"Cur\": 192.168.90.1 is not in "
    "192.0.2.0/24, the subnet of 192.0.2.7 [gateway-unreachable]\n";

TEST_F(OneNetworkTest, EveryWayThatLeavesAGatewayOfAnotherSubnetSaysSo) {
  for (const Words& words : {Words{"network", "set", kCard, "IpAddr", "192.0.2.7"},
                             {"set", "network.cards.Lan1.ipAddr=192.0.2.7"},
                             {"set", "NetWork/Lan1/IpAddr=192.0.2.7"},
                             {"set", "NetWork", "Lan1/IpAddr", "192.0.2.7"}}) {
    const ToolRun result = run(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "camcfg: " + (words[0] == "set" ? words[0] : "network set") + ": " + kOtherSubnet);
    EXPECT_EQ(run({"undo"}).status, 0);
  }
  const ToolRun imported = importing(R"("ipAddr": "192.0.2.7")");
  EXPECT_EQ(imported.status, 0);
  EXPECT_EQ(imported.err, std::string("camcfg: import: ") + kOtherSubnet);
}

TEST_F(OneNetworkTest, WhatWasSoBeforeIsNotSaidAgain) {
  EXPECT_THAT(importing(R"("ipAddr": "192.0.2.7")").err, HasSubstr("192.168.90.1 is not in"));
  EXPECT_EQ(importing(R"("mtu": 1400)").err, "");
  EXPECT_EQ(run({"network", "set", kCard, "MTU", "1300"}).err, "");
  EXPECT_EQ(importing(R"("gateWay": "192.0.2.1")").err, "");
}

TEST_F(OneNetworkTest, AddressFromTheNetworkHasNothingToDoWithIt) {
  EXPECT_EQ(run({"network", "set", "Lan0", "IpAddr", "192.0.2.7"}).err, "");
}

TEST_F(OneNetworkTest, GatewayIsAnotherHostOfTheSubnet) {
  const std::string before = device.read(kBusiness);
  const std::pair<const char*, const char*> kCases[] = {
      {"192.0.2.7", "192.0.2.7 is the card's own address"},
      {"192.0.2.255", "192.0.2.255 is the broadcast address of the subnet 192.0.2.0/24"},
      {"192.0.2.0", "192.0.2.0 is the subnet 192.0.2.0/24 itself"},
      {"192.0.3.1", "192.0.3.1 is not in 192.0.2.0/24, the subnet of 192.0.2.7"}};
  for (const auto& [gateway, why] : kCases) {
    const Words words = {"network", "set", kCard, "address=192.0.2.7/24",
                         std::string("gateway=") + gateway};
    EXPECT_EQ(run(words), (ToolRun{1, "",
                                   std::string("camcfg: network set: Lan1/GateWay: ") + why +
                                       "; '--force' sets it anyway\n"}));
    EXPECT_EQ(device.read(kBusiness), before);
  }
}

TEST_F(OneNetworkTest, InterfaceOfAnotherCardIsRefused) {
  EXPECT_EQ(run({"network", "set", "eth0", "interface=eth1"}),
            (ToolRun{1, "",
                     "camcfg: network set: Lan0/Intf: Lan1 has this interface already; '--force' "
                     "sets it anyway\n"}));
  EXPECT_EQ(run({"network", "set", "eth0", "interface=eth1", "--force"}).status, 0);
}

}  // namespace
}  // namespace camcfg::tests
