#include "settings/subnet.h"

#include <gtest/gtest.h>

namespace camcfg::tool::settings {
namespace {

TEST(SubnetTest, PrefixLengthsAreNetmasks) {
  EXPECT_EQ(maskOfPrefix("1"), "128.0.0.0");
  EXPECT_EQ(maskOfPrefix("24"), "255.255.255.0");
  EXPECT_EQ(maskOfPrefix("31"), "255.255.255.254");
  EXPECT_EQ(maskOfPrefix("32"), "255.255.255.255");
  for (const char* none : {"", "0", "33", "-1", "x", "24 ", "255.255.255.0"})
    EXPECT_EQ(maskOfPrefix(none), std::nullopt) << none;
}

TEST(SubnetTest, HasTheAddressesOfItsPrefix) {
  const auto subnet = Subnet::of("192.0.2.7", "255.255.255.128");
  ASSERT_TRUE(subnet);
  EXPECT_EQ(subnet->text(), "192.0.2.0/25");
  EXPECT_TRUE(subnet->has(*ipv4Of("192.0.2.127")));
  EXPECT_FALSE(subnet->has(*ipv4Of("192.0.2.128")));
  EXPECT_FALSE(subnet->has(*ipv4Of("192.0.1.127")));
}

TEST(SubnetTest, WhatIsNoAddressOrNetmaskHasNone) {
  EXPECT_FALSE(Subnet::of("", "255.255.255.0"));
  EXPECT_FALSE(Subnet::of("fe80::1", "255.255.255.0"));
  EXPECT_FALSE(Subnet::of("192.0.2.7", "255.0.255.0"));
}

TEST(SubnetTest, FirstAndLastAddressAreNoHostsUnlessThereAreNoOthers) {
  EXPECT_EQ(Subnet::of("192.0.2.0", "255.255.255.0")->whyNotAHost(),
            "192.0.2.0 is the subnet 192.0.2.0/24 itself");
  EXPECT_EQ(Subnet::of("192.0.2.255", "255.255.255.0")->whyNotAHost(),
            "192.0.2.255 is the broadcast address of the subnet 192.0.2.0/24");
  EXPECT_EQ(Subnet::of("192.0.2.3", "255.255.255.252")->whyNotAHost(),
            "192.0.2.3 is the broadcast address of the subnet 192.0.2.0/30");
  for (const char* mask : {"255.255.255.254", "255.255.255.255"})
    for (const char* address : {"192.0.2.6", "192.0.2.7"})
      EXPECT_EQ(Subnet::of(address, mask)->whyNotAHost(), "") << address << ' ' << mask;
}

}  // namespace
}  // namespace camcfg::tool::settings
