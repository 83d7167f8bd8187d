#include "support/traced_child.h"
#include "tool/device/journal_device.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;

/// Runs a piece of work in a child process that is killed right before one of its system calls.
/// @param call  which one, counted from 0, of those that begin or end
/// @return whether it was killed, and not over before
bool killAtCall(int call, const std::function<void()>& work) {
  TracedChild child(work);
  for (int left = call; left > 0 && child.isStopped(); --left) child.goOn();
  const bool isKilled = child.isStopped();
  if (isKilled) child.killNow();
  return isKilled;
}

class JournalCutsTest : public JournalTest {
 protected:
  // Three is odd, so that calls are cut both at their beginning and their end.
  static constexpr int kStep = 3;

  void startAgain() const {
    device.remove(kState);
    putBack();
  }

  /// Kills some work at call after call; what is left must be finished to one of two states.
  void cut(const std::function<void()>& prepare, const std::function<void()>& work,
           bool mayBeOld) const {
    for (int call = 1;; call += kStep) {
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
  for (int call = 1, isKilled = true; isKilled; call += kStep) {
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
  for (int call = 1, isKilled = true; isKilled; call += kStep) {
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
  for (int call = 1, isKilled = true; isKilled; call += kStep) {
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
