#include "params/all_calls.h"
#include "support/each_shortage.h"

namespace camcfg::tests {
namespace {

constexpr char kBackup[] = "/cfg1/business_param.xml";

// What memory runs out of in these tests is not logged, so that the log's own memory is left alone.
class WithoutMemory : public testing::TestWithParam<Call> {
 protected:
  /// A file that cannot be saved without allocating, so that saves fail as well.
  void writeFiles() {
    writeAllFiles(device, deeplyNested());
    device.write(kBackup, "backup");
  }
  testkit::DeviceRoot device;
};

TEST_P(WithoutMemory, CallFailsReleasesTheLockAndSparesTheBackup) {
  const Call& call = GetParam();
  writeFiles();
  EXPECT_EQ(call.make(), call.success);
  writeFiles();
  underEachShortage(call.make, [&](bool struck, int result) {
    EXPECT_EQ(result, struck ? call.failure : call.success);
    EXPECT_TRUE(isUnlocked(call.path));
    tinyxml2::XMLDocument backup;
    if (device.read(kBackup) == "backup")
      EXPECT_TRUE(struck || !call.writes);
    else if (call.transactions == 1)
      EXPECT_TRUE(!struck && call.writes);
    else
      EXPECT_EQ(backup.LoadFile(kBackup), tinyxml2::XML_SUCCESS);

    writeFiles();
    EXPECT_EQ(call.make(), call.success) << "the next call was to pass";
    EXPECT_EQ(device.read(kBackup), call.writes ? device.read(CFG_FILE_BUSINESS) : "backup");
    writeFiles();
  });
}

INSTANTIATE_TEST_SUITE_P(Calls, WithoutMemory, testing::ValuesIn(kAllCalls),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace camcfg::tests
