#include "device/signals.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <csignal>

#include "base/outcome.h"

namespace camcfg::tests {
namespace {

using tool::device::HeldSignals;

bool isPending(int number) {
  sigset_t pending{};
  sigpending(&pending);
  return sigismember(&pending, number) != 0;
}

TEST(HeldSignalsTest, OneThatHasComeIsKnownAndCanBeForgotten) {
  const HeldSignals held;
  EXPECT_FALSE(held.haveCome());
  raise(SIGTERM);
  EXPECT_TRUE(held.haveCome());
  held.ignore();
  EXPECT_FALSE(held.haveCome());
}

TEST(HeldSignalsTest, OneThatSomebodyElseWaitsForIsLeftToThem) {
  sigset_t waited;
  sigemptyset(&waited);
  sigaddset(&waited, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &waited, nullptr);
  {
    const HeldSignals held;
    raise(SIGTERM);
    raise(SIGINT);
    EXPECT_TRUE(held.haveCome());
    held.ignore();
    EXPECT_FALSE(isPending(SIGINT));
  }
  EXPECT_TRUE(isPending(SIGTERM));
  int number = 0;
  EXPECT_EQ(sigwait(&waited, &number), 0);
  EXPECT_EQ(number, SIGTERM);
  pthread_sigmask(SIG_UNBLOCK, &waited, nullptr);
}

// In a process of its own, which ends by the signal or by itself.
TEST(HeldSignalsTest, OneThatComesOnceAChangeIsInForceEndsNothing) {
  const auto endAfter = [](bool isInForce) {
    {
      const HeldSignals held;
      if (isInForce) tool::noteChange();
    }
    raise(SIGTERM);
    _exit(5);
  };
  EXPECT_EXIT(endAfter(false), testing::KilledBySignal(SIGTERM), "");
  EXPECT_EXIT(endAfter(true), testing::ExitedWithCode(5), "");
}

}  // namespace
}  // namespace camcfg::tests
