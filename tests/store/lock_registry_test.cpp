#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <thread>

#include "support/device_test.h"

namespace camcfg::tests {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

const std::size_t recordsAtStart = g_mapFileLock.size();

tag_CFG_FILE_LOCK* recordOf(const std::string& path) {
  pthread_mutex_lock(&g_lockMapFileLock);
  tag_CFG_FILE_LOCK* record = cfgGetLockByFile(path.c_str());
  pthread_mutex_unlock(&g_lockMapFileLock);
  return record;
}

bool isFree(pthread_mutex_t* mutex) {
  if (pthread_mutex_trylock(mutex) != 0) return false;
  pthread_mutex_unlock(mutex);
  return true;
}

auto timeoutRecord(const std::string& path) {
  return FieldsAre(4, "[cfgLockFile:88] ", "Lock " + path + " timeout, a deadlock may exist!");
}
std::string timeoutLine(const std::string& path) {
  return "[Warn][Cfg] Lock " + path + " timeout, a deadlock may exist!\n";
}
auto notLockedRecord(const std::string& path) {
  return FieldsAre(4, "[cfgUnlockFile:115] ", path + " has not been locked before unlock!");
}
std::string notLockedLine(const std::string& path) {
  return "[Warn][Cfg] " + path + " has not been locked before unlock!\n";
}

std::string repeated(std::size_t times, const std::string& line) {
  std::string lines;
  while (times-- > 0) lines += line;
  return lines;
}

template <typename Body>
void runThreads(int count, Body body) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(body, i);
  for (std::thread& thread : threads) thread.join();
}

class LockRegistryTest : public DeviceTest {
 protected:
  /// Unlocks a path that is not locked, and expects the warning.
  void expectUnlockWarns(const char* path) {
    log.clear();
    int result = -1;
    EXPECT_EQ(captureOutput([&] { result = cfgUnlockFile(path); }), notLockedLine(path));
    EXPECT_EQ(result, 0);
    EXPECT_THAT(log.records(), ElementsAre(notLockedRecord(path)));
  }
};

TEST_F(LockRegistryTest, RecordIsAPointerAndA32BitFlag) {
  EXPECT_EQ(offsetof(tag_CFG_FILE_LOCK, pstMutex), 0u);
  EXPECT_EQ(offsetof(tag_CFG_FILE_LOCK, s32Locked), sizeof(void*));
  EXPECT_EQ(sizeof(tag_CFG_FILE_LOCK::s32Locked), 4u);
  EXPECT_EQ(sizeof(tag_CFG_FILE_LOCK), 2 * sizeof(void*));
}

TEST_F(LockRegistryTest, IsEmptyWhenTheProcessStarts) {
  EXPECT_EQ(recordsAtStart, 0u);
}

TEST_F(LockRegistryTest, FirstNamingCreatesAnUnlockedRecordWithAMutexOfDefaultKind) {
  const tag_CFG_FILE_LOCK* record = recordOf("/cfg0/new.xml");
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record, &g_mapFileLock.at("/cfg0/new.xml"));
  EXPECT_EQ(record->s32Locked, 0);
  pthread_mutex_t fresh{};
  pthread_mutex_init(&fresh, nullptr);
  EXPECT_EQ(std::memcmp(record->pstMutex, &fresh, sizeof fresh), 0);
}

TEST_F(LockRegistryTest, MutexIsNotRecursive) {
  const tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  EXPECT_EQ(cfgLockFile("/cfg0/x.xml"), 0);
  EXPECT_EQ(pthread_mutex_trylock(record->pstMutex), EBUSY);
  EXPECT_EQ(cfgUnlockFile("/cfg0/x.xml"), 0);
}

TEST_F(LockRegistryTest, LaterNamingFindsTheRecordWhereItWas) {
  const tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  pthread_mutex_t* const mutex = record->pstMutex;
  for (int i = 0; i < 1000; ++i) recordOf("/cfg0/" + std::to_string(i) + ".xml");
  EXPECT_EQ(recordOf("/cfg0/x.xml"), record);
  EXPECT_EQ(record->pstMutex, mutex);
  EXPECT_EQ(record->s32Locked, 0);
}

TEST_F(LockRegistryTest, KeyIsThePathAsItIs) {
  const std::vector<std::string> paths{"",
                                       "/cfg0//business_param.xml",
                                       "/cfg0/business_param.xml",
                                       "/cfg1/business_param.xml",
                                       "/cfg0/business_param.xml/",
                                       "Business_param.xml",
                                       "business_param.xml",
                                       "/cfg0/" + std::string(300, 'x')};
  for (const std::string& path : paths) EXPECT_EQ(cfgLockFile(path.c_str()), 0) << path;
  for (const std::string& path : paths) EXPECT_EQ(g_mapFileLock.count(path), 1u) << path;
  EXPECT_EQ(g_mapFileLock.size(), recordsAtStart + paths.size());
  for (const std::string& path : paths) EXPECT_EQ(cfgUnlockFile(path.c_str()), 0) << path;
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LockRegistryTest, LockTakesTheMutexAndSetsTheFlagSilently) {
  const tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  EXPECT_EQ(captureOutput([] { cfgLockFile("/cfg0/x.xml"); }), "");
  EXPECT_EQ(record->s32Locked, 1);
  EXPECT_FALSE(isFree(record->pstMutex));
  EXPECT_EQ(captureOutput([] { cfgUnlockFile("/cfg0/x.xml"); }), "");
  EXPECT_EQ(record->s32Locked, 0);
  EXPECT_TRUE(isFree(record->pstMutex));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LockRegistryTest, LockAndUnlockReturnZero) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(cfgLockFile("/cfg0/x.xml"), 0);
    EXPECT_EQ(cfgUnlockFile("/cfg0/x.xml"), 0);
  }
}

TEST_F(LockRegistryTest, UnlockOfAPathNeverSeenCreatesItsRecordAndWarns) {
  expectUnlockWarns("/cfg0/never.xml");
  ASSERT_EQ(g_mapFileLock.count("/cfg0/never.xml"), 1u);
  EXPECT_TRUE(isUnlocked("/cfg0/never.xml"));
}

TEST_F(LockRegistryTest, SecondUnlockWarns) {
  cfgLockFile("/cfg0/x.xml");
  cfgUnlockFile("/cfg0/x.xml");
  expectUnlockWarns("/cfg0/x.xml");
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
}

TEST_F(LockRegistryTest, UnlockWithTheFlagClearLeavesTheMutexAlone) {
  const tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  pthread_mutex_lock(record->pstMutex);
  expectUnlockWarns("/cfg0/x.xml");
  EXPECT_EQ(record->s32Locked, 0);
  EXPECT_FALSE(isFree(record->pstMutex));
  pthread_mutex_unlock(record->pstMutex);
}

TEST_F(LockRegistryTest, UnlockWithTheFlagSetReleasesTheMutexWhoeverTookIt) {
  tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  pthread_mutex_lock(record->pstMutex);
  record->s32Locked = 1;
  EXPECT_EQ(cfgUnlockFile("/cfg0/x.xml"), 0);
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
}

TEST_F(LockRegistryTest, NameAndPathOfOneFileAreTwoLocks) {
  cfgLockFile("x.xml");
  expectUnlockWarns("/cfg0/x.xml");
  EXPECT_FALSE(isUnlocked("x.xml"));
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
  cfgUnlockFile("x.xml");
}

TEST_F(LockRegistryTest, ExportedUnlockDoesWhatTheInternalOneDoes) {
  cfgLockFile("/cfg0/x.xml");
  EXPECT_EQ(CFG_UnlockFile(text("/cfg0/x.xml")), 0);
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
  EXPECT_THAT(log.records(), IsEmpty());

  int result = -1;
  EXPECT_EQ(captureOutput([&] { result = CFG_UnlockFile(text("/cfg0/x.xml")); }),
            notLockedLine("/cfg0/x.xml"));
  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.records(), ElementsAre(notLockedRecord("/cfg0/x.xml")));
}

TEST_F(LockRegistryTest, WarningsShowLongAndOddPathsWhole) {
  expectUnlockWarns(("/cfg0/" + std::string(600, 'x')).c_str());
  expectUnlockWarns("/cfg0/%n%s%d 100%.xml");
  expectUnlockWarns("");
}

TEST_F(LockRegistryTest, NullPathIsRefusedWithTheSameWarnings) {
  EXPECT_EQ(cfgGetLockByFile(nullptr), nullptr);
  int result = 0;
  EXPECT_EQ(captureOutput([&] { result = cfgLockFile(nullptr); }), timeoutLine("(null)"));
  EXPECT_EQ(result, -1);
  EXPECT_EQ(captureOutput([&] { result = cfgUnlockFile(nullptr); }), notLockedLine("(null)"));
  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.records(), ElementsAre(timeoutRecord("(null)"), notLockedRecord("(null)")));
  EXPECT_EQ(g_mapFileLock.size(), recordsAtStart);
}

TEST_F(LockRegistryTest, AnotherThreadThanTheHolderMayUnlock) {
  std::thread([] { cfgLockFile("/cfg0/x.xml"); }).join();
  EXPECT_FALSE(isUnlocked("/cfg0/x.xml"));
  EXPECT_EQ(cfgUnlockFile("/cfg0/x.xml"), 0);
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LockRegistryTest, OneOfManyUnlocksAtOnceReleasesTheFileAndTheOthersWarn) {
  constexpr int kThreads = 8;
  cfgLockFile("/cfg0/x.xml");
  const std::string output =
      captureOutput([] { runThreads(kThreads, [](int) { cfgUnlockFile("/cfg0/x.xml"); }); });
  EXPECT_EQ(output, repeated(kThreads - 1, notLockedLine("/cfg0/x.xml")));
  EXPECT_THAT(log.records(), SizeIs(kThreads - 1));
  EXPECT_THAT(log.records(), Each(notLockedRecord("/cfg0/x.xml")));
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
}

// Waits 20 seconds: for the second lock, and for those that come after it.
TEST_F(LockRegistryTest, SecondLockByTheHolderFailsAfterTenSecondsAndLeavesTheFileLockedForGood) {
  const tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  EXPECT_EQ(cfgLockFile("/cfg0/x.xml"), 0);
  int result = 0;
  EXPECT_EQ(captureOutput([&] { result = cfgLockFile("/cfg0/x.xml"); }),
            timeoutLine("/cfg0/x.xml"));
  EXPECT_EQ(result, -1);
  EXPECT_THAT(log.records(), ElementsAre(timeoutRecord("/cfg0/x.xml")));
  EXPECT_EQ(record->s32Locked, 0);

  expectUnlockWarns("/cfg0/x.xml");
  EXPECT_FALSE(isFree(record->pstMutex));

  EXPECT_EQ(cfgLockFile("/cfg0/x.xml"), -1);
  EXPECT_THAT(log.records(),
              ElementsAre(notLockedRecord("/cfg0/x.xml"), timeoutRecord("/cfg0/x.xml")));
}

// Waits 10 seconds.
TEST_F(LockRegistryTest, ThreadsThatWaitTooLongGiveUpTogetherAndTheHoldersUnlockThenWarns) {
  constexpr int kWaiters = 4;
  cfgLockFile("/cfg0/x.xml");
  std::array<int, kWaiters> results{};
  const std::string output = captureOutput([&] {
    runThreads(kWaiters,
               [&](int i) { results[static_cast<std::size_t>(i)] = cfgLockFile("/cfg0/x.xml"); });
  });

  EXPECT_THAT(results, Each(-1));
  EXPECT_EQ(output, repeated(kWaiters, timeoutLine("/cfg0/x.xml")));
  EXPECT_THAT(log.records(), SizeIs(kWaiters));
  EXPECT_THAT(log.records(), Each(timeoutRecord("/cfg0/x.xml")));

  expectUnlockWarns("/cfg0/x.xml");
  EXPECT_FALSE(isFree(recordOf("/cfg0/x.xml")->pstMutex));
}

TEST_F(LockRegistryTest, ThreadsTakeTurnsWithOneFile) {
  constexpr int kThreads = 8;
  constexpr int kRounds = 500;
  tag_CFG_FILE_LOCK* record = recordOf("/cfg0/x.xml");
  int inTurn = 0;
  std::atomic<int> wrongFlags{0};
  runThreads(kThreads, [&](int) {
    for (int i = 0; i < kRounds; ++i) {
      cfgLockFile("/cfg0/x.xml");
      ++inTurn;
      if (__atomic_load_n(&record->s32Locked, __ATOMIC_ACQUIRE) != 1) ++wrongFlags;
      cfgUnlockFile("/cfg0/x.xml");
    }
  });
  EXPECT_EQ(inTurn, kThreads * kRounds);
  EXPECT_EQ(wrongFlags, 0);
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LockRegistryTest, ThreadsNamingNewPathsAtOnceShareTheRecords) {
  constexpr int kThreads = 8;
  constexpr int kPaths = 100;
  std::vector<std::vector<tag_CFG_FILE_LOCK*>> seen(kThreads);
  runThreads(kThreads, [&](int i) {
    for (int path = 0; path < kPaths; ++path)
      seen[static_cast<std::size_t>(i)].push_back(recordOf("/cfg0/" + std::to_string(path)));
  });
  EXPECT_THAT(seen, Each(seen.front()));
  EXPECT_EQ(g_mapFileLock.size(), recordsAtStart + kPaths);
}

TEST_F(LockRegistryTest, ThreadsUnlockingAnUnlockedFileAllWarn) {
  constexpr int kThreads = 8;
  const std::string output =
      captureOutput([] { runThreads(kThreads, [](int) { cfgUnlockFile("/cfg0/x.xml"); }); });
  EXPECT_EQ(output, repeated(kThreads, notLockedLine("/cfg0/x.xml")));
  EXPECT_THAT(log.records(), SizeIs(kThreads));
  EXPECT_TRUE(isUnlocked("/cfg0/x.xml"));
}

TEST_F(LockRegistryTest, ThreadsWaitingForOneFileHoldUpNoOther) {
  cfgLockFile("/cfg0/held.xml");
  std::atomic<int> result{-2};
  std::thread waiter([&] { result = cfgLockFile("/cfg0/held.xml"); });
  std::this_thread::sleep_for(300ms);

  EXPECT_EQ(pthread_mutex_trylock(&g_lockMapFileLock), 0);
  pthread_mutex_unlock(&g_lockMapFileLock);
  EXPECT_EQ(cfgLockFile("/cfg0/other.xml"), 0);
  EXPECT_EQ(cfgUnlockFile("/cfg0/other.xml"), 0);
  EXPECT_EQ(result, -2) << "the file was to be held all the while";

  cfgUnlockFile("/cfg0/held.xml");
  waiter.join();
  EXPECT_EQ(result, 0);
  EXPECT_FALSE(isUnlocked("/cfg0/held.xml"));
  cfgUnlockFile("/cfg0/held.xml");
  EXPECT_THAT(log.records(), IsEmpty());
}

// Each of these looks a path up, so each waits while another thread has the registry.
TEST_F(LockRegistryTest, ThreadsWaitForTheRegistryToLookAPathUp) {
  tinyxml2::XMLDocument document;
  document.Parse("<A/>");
  device.write("/cfg0/x.xml", "<A/>");
  const std::vector<std::function<void()>> calls = {
      [] { cfgLockFile("/cfg0/a.xml"); }, [] { cfgUnlockFile("/cfg0/b.xml"); },
      [] { delete CFG_GetDocByFileName(text("/cfg0/x.xml"), BU_TRUE); },
      [&] { CFG_SaveFile(&document, text("/cfg0/c.xml"), BU_FALSE); }};
  for (std::size_t i = 0; i < calls.size(); ++i) {
    std::atomic<bool> done{false};
    pthread_mutex_lock(&g_lockMapFileLock);
    const std::size_t records = g_mapFileLock.size();
    std::thread caller([&] {
      calls[i]();
      done = true;
    });
    std::this_thread::sleep_for(300ms);
    EXPECT_FALSE(done) << "call " << i;
    EXPECT_EQ(g_mapFileLock.size(), records) << "call " << i;
    pthread_mutex_unlock(&g_lockMapFileLock);
    caller.join();
    EXPECT_TRUE(done);
  }
}

TEST_F(LockRegistryTest, ThreadsHoldingTwoFilesNeverMeet) {
  constexpr int kRounds = 1000;
  int first = 0;
  int second = 0;
  runThreads(2, [&](int i) {
    const char* path = i == 0 ? "/cfg0/first.xml" : "/cfg0/second.xml";
    for (int round = 0; round < kRounds; ++round) {
      cfgLockFile(path);
      ++(i == 0 ? first : second);
      cfgUnlockFile(path);
    }
  });
  EXPECT_EQ(first + second, 2 * kRounds);
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
