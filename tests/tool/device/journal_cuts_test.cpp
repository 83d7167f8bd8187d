#include "tool/device/journal_device.h"
#include "tool/device/killed.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;

class JournalCutsTest : public JournalTest {
 protected:
  void startAgain() const {
    device.remove(kState);
    putBack();
  }

  /// Kills some work at call after call; what is left must be finished to one of two states.
  void cut(const std::function<void()>& prepare, const std::function<void()>& work,
           bool mayBeOld) const {
    for (int call = 1;; call += kCallStep) {
      startAgain();
      prepare();
      const bool isKilled = killAtCall(call, work);
      const bool waits = waitingChange().has_value();
      finishInterrupted();
      ASSERT_TRUE(isNew() || (mayBeOld && isOld())) << call;
      ASSERT_TRUE(!waits || isNew()) << call;
      ASSERT_TRUE(isIdle()) << call;
      ASSERT_EQ(waitingChange(), std::nullopt) << call;
      ASSERT_EQ(history().size(), isNew() ? 1U : 0U) << call;
      if (!isKilled) return;
    }
  }
};

TEST_F(JournalCutsTest, OpeningLeavesAllOrNothing) {
  cut([] {}, [] { open(); }, true);
}

TEST_F(JournalCutsTest, SavingAndClosingLeaveTheChangeInForce) {
  cut([] { open(); },
      [] {
        saveContents({{kBusiness, kNewBusiness}, {kPreset, kNewPreset}});
        closeJournal();
      },
      false);
}

TEST_F(JournalCutsTest, FinishingIsFinishedByTheNextRun) {
  cut(
      [this] {
        open();
        device.write(kBusiness, "<Sys");
      },
      [] { finishInterrupted(); }, false);
}

TEST_F(JournalCutsTest, TakingBackIsFinishedByTheNextRun) {
  for (int call = 1, isKilled = true; isKilled; call += kCallStep) {
    startAgain();
    open();
    saveContents({{kBusiness, kNewBusiness}});
    turnJournal();
    isKilled = killAtCall(call, [] { finishInterrupted(); });
    finishInterrupted();
    ASSERT_TRUE(isOld() && isIdle()) << call;
    ASSERT_TRUE(history().empty()) << call;
  }
}

TEST_F(JournalCutsTest, PuttingAsideIsFinishedByTheNextRun) {
  for (int call = 1, isKilled = true; isKilled; call += kCallStep) {
    startAgain();
    open();
    saveContents({{kBusiness, kNewBusiness}, {kPreset, kOthers}});
    isKilled = killAtCall(call, [] { finishInterrupted(); });
    finishInterrupted();
    ASSERT_TRUE(hold(kOldBusiness, kOthers) && isIdle()) << call;
    ASSERT_TRUE(device.exists(kAside)) << call;
  }
}

TEST_F(JournalCutsTest, NumbersGoOnWhereverForgettingIsCut) {
  for (int call = 1, isKilled = true; isKilled; call += kCallStep) {
    startAgain();
    complete(kNewBusiness);
    complete(kOldBusiness);
    isKilled = killAtCall(call, [] { setHistoryLimit(0); });
    openJournal({{kBusiness, kOldBusiness, kNewBusiness}});
    ASSERT_EQ(waitingChange()->number, 3) << call;
  }
}

}  // namespace
}  // namespace camcfg::tests
