#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/host.h"
#include "base/outcome.h"
#include "camcfg/testkit/device_root.h"

namespace camcfg::tests {
namespace {

using tool::HostFile;

class HostFileTest : public testing::Test {
 protected:
  HostFileTest() { host.write("/a.xml", "old"); }

  HostFile located(const std::string& name) const {
    HostFile file{host.hostPath() + name, "old", ""};
    locate(file);
    return file;
  }

  testkit::DeviceRoot host{testkit::DeviceRoot::StayOut};
};

TEST_F(HostFileTest, HoldsWhatReplacesItAndLeavesNothingElse) {
  const std::vector<std::string> before = host.list("/");
  replace(located("/a.xml"), "new");
  EXPECT_EQ(host.read("/a.xml"), "new");
  EXPECT_EQ(host.list("/"), before);
}

TEST_F(HostFileTest, IsNotReplacedIfItIsAnotherOneThanWasRead) {
  const HostFile file = located("/a.xml");
  host.write("/a.xml", "other");
  try {
    replace(file, "new");
    FAIL() << "it was replaced";
  } catch (const tool::Refusal& refusal) {
    EXPECT_EQ(refusal.what(), file.path + ": it has changed since it was read");
  }
  EXPECT_EQ(host.read("/a.xml"), "other");
}

TEST_F(HostFileTest, IsNotReplacedIfItIsNoFile) {
  host.makeDirectory("/sub");
  for (const char* name : {"/sub", "/none.xml"})
    EXPECT_THROW(replace(located(name), "new"), tool::Refusal) << name;
}

}  // namespace
}  // namespace camcfg::tests
