#include "base/host.h"

#include <gmock/gmock.h>

#include "base/outcome.h"
#include "camcfg/testkit/device_root.h"

namespace camcfg::tests {
namespace {

using tool::HostDirectory;
using tool::Refusal;

class HostDirectoryTest : public testing::Test {
 protected:
  std::string path(const std::string& name) const { return host.hostPath() + name; }

  testkit::DeviceRoot host{testkit::DeviceRoot::StayOut};
};

TEST_F(HostDirectoryTest, SavesBytesUnderTheNameGiven) {
  HostDirectory directory(path("/kept"));
  EXPECT_EQ(directory.save("a", std::string("x\0y", 3)), path("/kept/a"));
  EXPECT_EQ(host.read("/kept/a"), std::string("x\0y", 3));
}

TEST_F(HostDirectoryTest, SameBytesAreKeptOnce) {
  HostDirectory directory(path("/kept"));
  EXPECT_EQ(directory.save("a", "one"), path("/kept/a"));
  EXPECT_EQ(directory.save("a", "two"), path("/kept/a.1"));
  EXPECT_EQ(directory.save("a", "three"), path("/kept/a.2"));
  EXPECT_EQ(directory.save("a", "two"), path("/kept/a.1"));
  EXPECT_EQ(host.list("/kept"), (std::vector<std::string>{"a", "a.1", "a.2"}));
  EXPECT_EQ(host.read("/kept/a"), "one");
}

TEST_F(HostDirectoryTest, LinkUnderTheNameIsNotFollowed) {
  host.write("/victim", "precious");
  host.makeDirectory("/kept");
  ASSERT_EQ(symlink(path("/victim").c_str(), path("/kept/a").c_str()), 0);
  HostDirectory directory(path("/kept"));
  EXPECT_EQ(directory.save("a", "bytes"), path("/kept/a.1"));
  EXPECT_EQ(host.read("/victim"), "precious");
}

TEST_F(HostDirectoryTest, WhatCannotBeOpenedOrWrittenIsRefused) {
  host.write("/file", "");
  EXPECT_THROW(HostDirectory(path("/file")), Refusal);
  EXPECT_THROW(HostDirectory(path("/no/such")), Refusal);
  HostDirectory directory(path("/kept"));
  EXPECT_THROW(directory.save(std::string(300, 'n'), "bytes"), Refusal);
}

}  // namespace
}  // namespace camcfg::tests
