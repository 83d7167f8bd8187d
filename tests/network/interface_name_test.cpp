#include "camcfg/network.h"

#include <gtest/gtest.h>

namespace camcfg::tests {
namespace {

struct Name {
  const char* inFile;
  const char* inSystem;
};
constexpr Name kNames[] = {{"Eth0", "eth0"}, {"Eth1", "eth1"}, {"Wlan0", "wlan0"}};

TEST(InterfaceNameTest, TheThreeKnownNamesTranslateBothWays) {
  for (const Name& name : kNames) {
    EXPECT_STREQ(CFG_NETWORK_IntfXmlStr2EthName(name.inFile), name.inSystem);
    EXPECT_STREQ(CFG_NETWORK_IntfEthName2XmlStr(name.inSystem), name.inFile);
  }
}

TEST(InterfaceNameTest, ANameInTheOtherFormIsUnknown) {
  for (const Name& name : kNames) {
    EXPECT_STREQ(CFG_NETWORK_IntfXmlStr2EthName(name.inSystem), "") << name.inSystem;
    EXPECT_STREQ(CFG_NETWORK_IntfEthName2XmlStr(name.inFile), "") << name.inFile;
  }
}

TEST(InterfaceNameTest, AnyOtherNameIsUnknownInBothDirections) {
  for (const char* name : {"ETH0", "eTh0", "WLAN0", "wLan0", "Eth", "eth", "Eth2", "eth2", "Eth00",
                           "eth0 ", " eth0", "Wlan1", "wlan", "lo", ""}) {
    EXPECT_STREQ(CFG_NETWORK_IntfXmlStr2EthName(name), "") << name;
    EXPECT_STREQ(CFG_NETWORK_IntfEthName2XmlStr(name), "") << name;
  }
}

TEST(InterfaceNameTest, ANullNameIsUnknownInBothDirections) {
  EXPECT_STREQ(CFG_NETWORK_IntfXmlStr2EthName(nullptr), "");
  EXPECT_STREQ(CFG_NETWORK_IntfEthName2XmlStr(nullptr), "");
}

}  // namespace
}  // namespace camcfg::tests
