#include <time.h>

#include <cerrno>
#include <cstring>

#include "support/device_test.h"
#include "support/each_shortage.h"
#include "support/interposed_calls.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;

constexpr char kFaultyLock[] = "/cfg0/business_param.xml";

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

std::int64_t realtime() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return nanoseconds(now);
}

class LockRegistryFaultsTest : public DeviceTest {
 protected:
  LockRegistryFaultsTest() {
    cfgLockFile(kFaultyLock);
    cfgUnlockFile(kFaultyLock);
    record = &g_mapFileLock.at(kFaultyLock);
  }
  InterposedCallsScope calls;
  tag_CFG_FILE_LOCK* record;
};

TEST_F(LockRegistryFaultsTest, DeadlineIsTenSecondsAheadOnTheRealtimeClock) {
  std::int64_t deadline = 0;
  calls->timedLock = [&](pthread_mutex_t* mutex, const timespec* until) {
    EXPECT_EQ(mutex, record->pstMutex);
    deadline = nanoseconds(*until);
    return std::nullopt;
  };
  const std::int64_t before = realtime();
  EXPECT_EQ(cfgLockFile(kFaultyLock), 0);
  const std::int64_t after = realtime();
  // timespec_get may read a coarser clock than clock_gettime.
  EXPECT_GE(deadline, before + 10'000'000'000 - 10'000'000);
  EXPECT_LE(deadline, after + 10'000'000'000);
  cfgUnlockFile(kFaultyLock);
}

TEST_F(LockRegistryFaultsTest, WhileAFileIsWaitedForTheRegistryIsFreeAndTheFlagNotYetSet) {
  bool asked = false;
  calls->timedLock = [&](pthread_mutex_t*, const timespec*) {
    asked = true;
    EXPECT_EQ(pthread_mutex_trylock(&g_lockMapFileLock), 0);
    pthread_mutex_unlock(&g_lockMapFileLock);
    EXPECT_EQ(record->s32Locked, 0);
    return std::nullopt;
  };
  EXPECT_EQ(cfgLockFile(kFaultyLock), 0);
  EXPECT_TRUE(asked);
  EXPECT_EQ(record->s32Locked, 1);
  cfgUnlockFile(kFaultyLock);
}

TEST_F(LockRegistryFaultsTest, FlagIsClearBeforeTheFileIsReleased) {
  cfgLockFile(kFaultyLock);
  bool released = false;
  calls->beforeUnlock = [&](pthread_mutex_t* mutex) {
    if (mutex != record->pstMutex) return;
    released = true;
    EXPECT_EQ(record->s32Locked, 0);
  };
  EXPECT_EQ(cfgUnlockFile(kFaultyLock), 0);
  EXPECT_TRUE(released);
}

class AnyErrorOfTheMutex : public LockRegistryFaultsTest,
                           public testing::WithParamInterface<int> {};

TEST_P(AnyErrorOfTheMutex, IsReportedAsATimeOutAndClearsTheFlag) {
  record->s32Locked = 1;
  calls->timedLock = [](pthread_mutex_t*, const timespec*) { return GetParam(); };
  int result = 0;
  EXPECT_EQ(captureOutput([&] { result = cfgLockFile(kFaultyLock); }),
            "[Warn][Cfg] Lock /cfg0/business_param.xml timeout, a deadlock may exist!\n");
  EXPECT_EQ(result, -1);
  EXPECT_THAT(log.records(), ElementsAre(FieldsAre(
                                 4, "[cfgLockFile:88] ",
                                 "Lock /cfg0/business_param.xml timeout, a deadlock may exist!")));
  EXPECT_EQ(record->s32Locked, 0);
}

INSTANTIATE_TEST_SUITE_P(Errors, AnyErrorOfTheMutex,
                         testing::Values(ETIMEDOUT, EINVAL, EDEADLK, EAGAIN, EOWNERDEAD),
                         [](const auto& test) { return strerrorname_np(test.param); });

// A path that was never named before, made without allocating.
class NewPath {
 public:
  const char* next() {
    std::snprintf(path_, sizeof path_, "/cfg0/a_path_longer_than_any_short_text_%d.xml", ++number_);
    return path_;
  }
  const char* current() const { return path_; }

 private:
  char path_[64]{};
  int number_ = 0;
};

TEST_F(LockRegistryFaultsTest, WithoutMemoryANewPathGetsNoRecordAndTheNextAttemptDoes) {
  NewPath path;
  underEachShortage([&] { return cfgGetLockByFile(path.next()); },
                    [&](bool struck, const tag_CFG_FILE_LOCK* made) {
                      EXPECT_EQ(made == nullptr, struck);
                      EXPECT_EQ(g_mapFileLock.count(path.current()), struck ? 0u : 1u);
                      EXPECT_NE(cfgGetLockByFile(path.current()), nullptr);
                      EXPECT_TRUE(isUnlocked(path.current()));
                    });
}

TEST_F(LockRegistryFaultsTest, WithoutMemoryANewPathIsNotLockedAndTheNextAttemptDoes) {
  NewPath path;
  underEachShortage([&] { return cfgLockFile(path.next()); },
                    [&](bool struck, int result) {
                      EXPECT_EQ(result, struck ? -1 : 0);
                      if (struck) result = cfgLockFile(path.current());
                      EXPECT_EQ(result, 0);
                      EXPECT_FALSE(isUnlocked(path.current()));
                      EXPECT_EQ(cfgUnlockFile(path.current()), 0);
                    });
}

TEST_F(LockRegistryFaultsTest, ReleasingALockNeedsNoMemory) {
  cfgLockFile(kFaultyLock);
  {
    const ScarceMemory memory(1, Shortage::FromThenOn);
    EXPECT_EQ(cfgUnlockFile(kFaultyLock), 0);
    EXPECT_FALSE(memory.struck());
  }
  EXPECT_TRUE(isUnlocked(kFaultyLock));
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
