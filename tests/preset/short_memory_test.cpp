#include "preset/preset_test.h"
#include "support/each_shortage.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;

class ShortMemoryTest : public PresetTest {
 protected:
  // Makes the lock's record, so that the lock's state can be seen whatever fails.
  void SetUp() override {
    cfgLockFile(CFG_FILE_PRESET);
    cfgUnlockFile(CFG_FILE_PRESET);
  }
};

class EveryOperationTest : public ShortMemoryTest, public testing::WithParamInterface<Shortage> {
 protected:
  // Runs an operation with the given allocation failing. False when it did not make that many.
  bool failsAt(int allocation, const Operation& operation) {
    // Nested so deep that saving needs memory as well.
    givenPresets("<preset Id='1' Description='Door'/><preset Id='2'/>" + deeplyNested());
    tagPRESET_CFG_S record = preset(1, "Door");
    int number = 77;
    int result = 0;
    bool struck = false;
    {
      const ScarceMemory memory(allocation, GetParam());
      result = operation.run(record, number);
      struck = memory.struck();
    }
    EXPECT_EQ(result, struck ? -1 : 0);
    EXPECT_TRUE(unlocked());
    if (struck) {
      EXPECT_EQ(record, preset(1, "Door"));
      EXPECT_EQ(number, 77);
    }
    return struck;
  }
};

TEST_P(EveryOperationTest, FailsWithTheFileUnlockedWhicheverAllocationFails) {
  for (const Operation& operation : kOperations) {
    int allocation = 1;
    while (failsAt(allocation, operation) && !HasFailure()) ++allocation;
    EXPECT_GT(allocation, 1);
    ASSERT_FALSE(HasFailure()) << operation.function << ", allocation " << allocation;
  }
}

INSTANTIATE_TEST_SUITE_P(, EveryOperationTest,
                         testing::Values(Shortage::OneAllocation, Shortage::FromThenOn),
                         testing::PrintToStringParamName());

class NewPresetTest : public ShortMemoryTest {
 protected:
  // What is logged when the given allocation of a SetParam that adds a preset fails.
  std::vector<testkit::LogRecord> logged(int allocation, bool& struck) {
    givenPresets("<preset Id='1'/>");
    tagPRESET_CFG_S record = preset(2, "Door");
    log.clear();
    const ScarceMemory memory(allocation, Shortage::OneAllocation);
    const int result = CFG_PRESET_SetParam(&record);
    struck = memory.struck();
    EXPECT_EQ(result, struck ? -1 : 0);
    return log.records();
  }
};

TEST_F(NewPresetTest, WithoutMemoryForItIsReportedAndTheFileStaysAsItWas) {
  int reports = 0;
  bool struck = true;
  for (int allocation = 1; struck; ++allocation) {
    const auto records = logged(allocation, struck);
    if (records.empty() || records[0].function() != "CFG_PRESET_SetParam") continue;
    ++reports;
    EXPECT_THAT(records, ElementsAre(Logged(3, "CFG_PRESET_SetParam", "pstNode is NULL\n")));
    EXPECT_TRUE(unlocked());
    expectBothCopies(group("<preset Id='1'/>"));
  }
  EXPECT_GT(reports, 0);
}

}  // namespace
}  // namespace camcfg::tests
