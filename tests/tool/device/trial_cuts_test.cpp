#include "device/trial.h"

#include "tool/device/journal_device.h"
#include "tool/device/killed.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;

constexpr char kTrialRecord[] = "/cfg1/.camcfg/trial";

class TrialCutsTest : public JournalTest {
 protected:
  /// Puts the change of both files on trial.
  static void tryOut() {
    putOnTrial(std::chrono::hours(1));
    open();
    saveContents({{kBusiness, kNewBusiness}, {kPreset, kNewPreset}});
    closeJournal();
  }

  static void rollBack() {
    const RollingBack rollingBack(*changeOnTrial());
    openJournal({{kBusiness, kNewBusiness, kOldBusiness}, {kPreset, kNewPreset, kOldPreset}});
    saveContents({{kBusiness, kOldBusiness}, {kPreset, kOldPreset}});
    closeJournal();
  }

  static void inChild(const std::function<void()>& work) { EXPECT_FALSE(killAtCall(-1, work)); }

  void startAgain() const {
    device.remove(kState);
    putBack();
  }
};

TEST_F(TrialCutsTest, ChangeThatIsInForceIsOnTrial) {
  for (int call = 1, isKilled = true; isKilled; call += kCallStep) {
    startAgain();
    isKilled = killAtCall(call, [] { tryOut(); });
    finishInterrupted();
    ASSERT_TRUE(isNew() || isOld()) << call;
    ASSERT_EQ(device.exists(kTrialRecord), isNew()) << call;
    ASSERT_TRUE(history().empty()) << call;
  }
  EXPECT_TRUE(isNew());
}

TEST_F(TrialCutsTest, RollbackThatIsInForceEndsTheTrial) {
  for (int call = 1, isKilled = true; isKilled; call += kCallStep) {
    startAgain();
    inChild([] { tryOut(); });
    isKilled = killAtCall(call, [] { rollBack(); });
    finishInterrupted();
    ASSERT_TRUE(isNew() || isOld()) << call;
    ASSERT_EQ(device.exists(kTrialRecord), isNew()) << call;
    ASSERT_EQ(history().size(), isNew() ? 0U : 2U) << call;
    ASSERT_TRUE(isIdle()) << call;
  }
  EXPECT_TRUE(isOld());
}

TEST_F(TrialCutsTest, ConfirmedChangeIsOnTrialOrInTheHistory) {
  for (int call = 1, isKilled = true; isKilled; call += kCallStep) {
    startAgain();
    inChild([] { tryOut(); });
    isKilled = killAtCall(call, [] { endTrial(TrialEnd::Confirmed); });
    ASSERT_TRUE(isNew()) << call;
    ASSERT_EQ(history().size() + (device.exists(kTrialRecord) ? 1 : 0), 1U) << call;
    ASSERT_TRUE(isKilled || !device.exists(kTrialRecord)) << call;
  }
}

TEST_F(TrialCutsTest, JournalWithARollbackSaysThatTheTrialIsOver) {
  inChild([] { tryOut(); });
  EXPECT_FALSE(isTrialOver());
  inChild([] {
    const RollingBack rollingBack(*changeOnTrial());
    openJournal({{kBusiness, kNewBusiness, kOldBusiness}});
  });
  EXPECT_TRUE(isTrialOver());
}

}  // namespace
}  // namespace camcfg::tests
