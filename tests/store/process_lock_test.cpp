#include "store/process_lock_test.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "support/interposed_calls.h"

namespace camcfg::tests {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

auto timeoutOf(const std::string& path) {
  return FieldsAre(4, "[cfgLockFile:88] ", "Lock " + path + " timeout, a deadlock may exist!");
}

// A program that has the file open for writing until it is resumed.
int holdForWriting(OtherProgram& self) {
  const Document document = openDocument(kPath, BU_FALSE);
  self.pause();
  return save(document, 2);
}

TEST_F(ProcessLockTest, WriteModeKeepsOthersOutUntilTheSavesEnd) {
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_FALSE(othersMayRead(kName));
  int syncs = 0;
  insteadOfSync = [&] {
    ++syncs;
    EXPECT_FALSE(othersMayRead(kName));
  };
  EXPECT_EQ(save(document, 2), 0);
  EXPECT_EQ(syncs, 2);
  EXPECT_TRUE(othersMayWrite(kName));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ProcessLockTest, WriteModeKeepsOthersOutUntilItIsGivenUp) {
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_FALSE(othersMayRead(kName));
  EXPECT_EQ(CFG_UnlockFile(text(kPath)), 0);
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(ProcessLockTest, SaveThatKeepsTheLockKeepsOthersOut) {
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_EQ(save(document, 2, kPath, BU_FALSE), 0);
  EXPECT_FALSE(othersMayRead(kName));
  CFG_UnlockFile(text(kPath));
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(ProcessLockTest, ReadModeAndFailedOpeningsHoldNothingAfterwards) {
  for (int round = 0; round < 3; ++round) {
    EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
    EXPECT_TRUE(othersMayWrite(kName));
  }
  device.write(kPath, "<A");
  EXPECT_EQ(openDocument(kPath, BU_TRUE), nullptr);
  EXPECT_EQ(openDocument(kPath, BU_FALSE), nullptr);
  EXPECT_TRUE(othersMayWrite(kName));
  EXPECT_TRUE(isUnlocked(kPath));
}

TEST_F(ProcessLockTest, SaveOfAFileThatNobodyOpenedKeepsOthersOutMeanwhile) {
  Document document = std::make_unique<tinyxml2::XMLDocument>();
  document->Parse("<A/>");
  bool kept = false;
  insteadOfSync = [&] { kept = !othersMayRead(kName); };
  EXPECT_EQ(save(document, 2, kPath, BU_FALSE), 0);
  EXPECT_TRUE(kept);
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(ProcessLockTest, ReaderWaitsForAnotherProgramsSaveAndReadsWhatItSaved) {
  OtherProgram other(holdForWriting);
  other.waitForPause();
  std::atomic<int> value{0};
  std::thread reader([&] { value = valueOf(openDocument(kPath, BU_TRUE)); });
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(other.finish(), 0);
  reader.join();
  EXPECT_EQ(value, 2);
}

// It saves again as soon as it has saved, so the file is free for some microseconds at a time.
int saveWithoutPause(OtherProgram& self) {
  insteadOfSync = [] { std::this_thread::sleep_for(20ms); };
  const auto end = Clock::now() + 8s;
  bool isPaused = false;
  while (Clock::now() < end) {
    const Document document = openDocument(kPath, BU_FALSE);
    if (!isPaused) self.pause();
    isPaused = true;
    save(document, 1);
  }
  return 0;
}

TEST_F(ProcessLockTest, ProgramThatSavesAgainAndAgainKeepsNobodyOut) {
  OtherProgram other(saveWithoutPause);
  other.waitForPause();
  other.resume();
  for (const tagBU_BOOL readOnly : {BU_TRUE, BU_FALSE})
    for (int round = 0; round < 10; ++round) {
      const auto start = Clock::now();
      const Document document = openDocument(kPath, readOnly);
      EXPECT_LT(Clock::now() - start, 500ms);
      ASSERT_NE(document, nullptr);
      if (readOnly != BU_TRUE) CFG_UnlockFile(text(kPath));
    }
}

TEST_F(ProcessLockTest, SaveOfAFileThatNobodyOpenedWaitsForThisProgramsReaders) {
  std::atomic<bool> reads{false};
  std::atomic<bool> hasRead{false};
  InterposedCallsScope calls;
  calls->open = [&](const std::string& path) -> std::optional<int> {
    if (path != kPath || reads.exchange(true)) return std::nullopt;
    std::this_thread::sleep_for(300ms);
    hasRead = true;
    return std::nullopt;
  };
  std::thread reader([] { openDocument(kPath, BU_TRUE); });
  while (!reads) std::this_thread::yield();
  Document document = std::make_unique<tinyxml2::XMLDocument>();
  document->Parse("<A/>");
  insteadOfSync = [&] {
    EXPECT_TRUE(hasRead);
    EXPECT_FALSE(othersMayRead(kName));
  };
  EXPECT_EQ(save(document, 2, kPath, BU_FALSE), 0);
  reader.join();
}

TEST_F(ProcessLockTest, WritersOfTwoProgramsTakeTurns) {
  constexpr int kRounds = 200;
  const auto raise = [](OtherProgram&) {
    for (int i = 0; i < kRounds; ++i) {
      const Document document = openDocument(kPath, BU_FALSE);
      if (document == nullptr || save(document, valueOf(document) + 1) != 0) return 1;
    }
    return 0;
  };
  OtherProgram first(raise);
  OtherProgram second(raise);
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1 + 2 * kRounds);
}

TEST_F(ProcessLockTest, ReadersOfTwoProgramsGoSideBySide) {
  openDocument(kPath, BU_TRUE);
  OtherProgram other([](OtherProgram& self) {
    insteadOfSync = nullptr;
    const int fd = open(lockFileOf(kName).c_str(), O_RDWR);
    struct flock range {};
    range.l_type = F_RDLCK;
    range.l_len = 1;
    if (fcntl(fd, F_OFD_SETLK, &range) != 0) return 1;
    self.pause();
    return 0;
  });
  other.waitForPause();
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);

  std::atomic<bool> wrote{false};
  std::thread writer([&] {
    openDocument(kPath, BU_FALSE);
    wrote = true;
  });
  std::this_thread::sleep_for(200ms);
  EXPECT_FALSE(wrote);
  EXPECT_FALSE(othersMayRead(kName)) << "a waiting writer lets no new reader pass";
  EXPECT_EQ(other.finish(), 0);
  writer.join();
  EXPECT_TRUE(wrote);
}

// Waits 10 seconds, as the two below.
TEST_F(ProcessLockTest, WaitingForAnotherProgramEndsAfterTenSecondsWithTheSameWarning) {
  OtherProgram other(holdForWriting);
  other.waitForPause();
  const auto start = Clock::now();
  std::thread writer([] { EXPECT_EQ(cfgLockFile(kName), -1); });
  Document document;
  const std::string output =
      captureOutput([&] { document = openDocument(kPath, BU_TRUE), writer.join(); });
  EXPECT_EQ(document, nullptr);
  EXPECT_GT(Clock::now() - start, 9900ms);
  EXPECT_LT(Clock::now() - start, 12s);
  EXPECT_THAT(log.records(), SizeIs(2));
  EXPECT_THAT(log.records(), Contains(timeoutOf(kPath)));
  EXPECT_THAT(log.records(), Contains(timeoutOf(kName)));
  EXPECT_THAT(output,
              testing::HasSubstr("[Warn][Cfg] Lock /cfg0/x.xml timeout, a deadlock may exist!\n"));
  EXPECT_TRUE(isUnlocked(kPath));

  EXPECT_EQ(other.finish(), 0);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 2);
}

TEST_F(ProcessLockTest, BothLocksTogetherAreWaitedForTenSecondsThreadsIncluded) {
  OtherProgram other(holdForWriting);
  other.waitForPause();
  std::thread first([] { EXPECT_EQ(cfgLockFile(kPath), -1); });
  std::this_thread::sleep_for(2s);
  const auto start = Clock::now();
  EXPECT_EQ(cfgLockFile(kPath), -1);  // 8 seconds for the thread's lock, 2 for the program's
  EXPECT_GT(Clock::now() - start, 9900ms);
  EXPECT_LT(Clock::now() - start, 11s);
  first.join();
}

TEST_F(ProcessLockTest, HolderWhoseFlagATimeOutClearedStillReleasesTheFileForOthers) {
  EXPECT_EQ(cfgLockFile(kPath), 0);
  EXPECT_EQ(cfgLockFile(kPath), -1);
  EXPECT_FALSE(othersMayRead(kName));
  CFG_UnlockFile(text(kPath));
  EXPECT_THAT(log.texts(), Contains("/cfg0/x.xml has not been locked before unlock!"));
  EXPECT_TRUE(othersMayWrite(kName));
  EXPECT_FALSE(isUnlocked(kPath));
}

TEST_F(ProcessLockTest, AllSpellingsOfAFileLeadToOneLock) {
  ASSERT_EQ(symlink("cfg0", "/alias"), 0);
  ASSERT_EQ(symlink("/cfg0/x.xml", "/cfg0/link.xml"), 0);
  for (const char* path :
       {kPath, "x.xml", "/cfg0//x.xml", "/cfg0/../cfg0/./x.xml", "/alias/x.xml", "link.xml"}) {
    EXPECT_EQ(cfgLockFile(path), 0);
    EXPECT_FALSE(othersMayRead(kName)) << path;
    EXPECT_EQ(cfgUnlockFile(path), 0);
  }
  EXPECT_THAT(device.list("/run/camcfg"), SizeIs(1));
}

TEST_F(ProcessLockTest, FileThatDoesNotExistHasTheLockThatItWillHave) {
  EXPECT_EQ(cfgLockFile("/cfg0//new.xml"), 0);
  device.write("/cfg0/new.xml", "<A/>");
  cfgUnlockFile("/cfg0//new.xml");
  EXPECT_EQ(cfgLockFile("new.xml"), 0);
  cfgUnlockFile("new.xml");
  EXPECT_THAT(device.list("/run/camcfg"), SizeIs(1));
}

TEST_F(ProcessLockTest, InsideAProgramSpellingsStayLocksOfTheirOwn) {
  EXPECT_EQ(cfgLockFile(kPath), 0);
  const Document document = openDocument("/cfg0//x.xml", BU_FALSE);
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(valueOf(openDocument("/cfg0/./x.xml", BU_TRUE)), 1);
  EXPECT_EQ(cfgUnlockFile(kPath), 0);
  EXPECT_FALSE(othersMayRead(kName)) << "the second spelling still holds it";
  EXPECT_EQ(save(document, 2, "/cfg0//x.xml"), 0);
  EXPECT_TRUE(othersMayWrite(kName));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ProcessLockTest, SaveUnderAnotherSpellingThanOpenedDoesNotWaitForItself) {
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_EQ(save(document, 2, "x.xml", BU_FALSE), 0);
  EXPECT_FALSE(othersMayRead(kName));
  CFG_UnlockFile(text(kPath));
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(ProcessLockTest, ThreadsOfTwoProgramsTakeTurns) {
  const auto raise = [](OtherProgram&) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
      threads.emplace_back([] {
        for (int round = 0; round < 25; ++round) {
          const Document document = openDocument(kPath, BU_FALSE);
          save(document, valueOf(document) + 1);
        }
      });
    for (std::thread& thread : threads) thread.join();
    return 0;
  };
  OtherProgram first(raise);
  OtherProgram second(raise);
  EXPECT_EQ(first.wait() + second.wait(), 0);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 201);
}

TEST_F(ProcessLockTest, KilledProgramLeavesNoLockAndNoRecord) {
  OtherProgram other(holdForWriting);
  other.waitForPause();
  other.kill();
  const auto start = Clock::now();
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
  EXPECT_LT(Clock::now() - start, 1s);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ProcessLockTest, ChildInheritsNoLock) {
  const Document document = openDocument(kPath, BU_FALSE);
  OtherProgram child([](OtherProgram& self) {
    self.pause();
    return 0;
  });
  child.waitForPause();
  EXPECT_FALSE(othersMayRead(kName));
  EXPECT_EQ(save(document, 2), 0);
  EXPECT_TRUE(othersMayWrite(kName)) << "though the child lives";
  EXPECT_EQ(child.finish(), 0);
}

TEST_F(ProcessLockTest, ChildOfAKilledProgramHoldsNothingOfIt) {
  OtherProgram other([](OtherProgram& self) {
    const Document document = openDocument(kPath, BU_FALSE);
    int ready[2];
    char mark = 'x';
    if (pipe(ready) != 0) return 1;
    if (fork() == 0) {
      if (write(ready[1], &mark, 1) == 1) sleep(5);
      _exit(0);
    }
    if (read(ready[0], &mark, 1) != 1) return 2;
    self.pause();
    return 0;
  });
  other.waitForPause();
  EXPECT_FALSE(othersMayRead(kName));
  other.kill();
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(ProcessLockTest, ChildThatSavesWhatItsParentOpenedWaitsForTheParent) {
  const Document document = openDocument(kPath, BU_FALSE);
  OtherProgram child([&](OtherProgram& self) {
    self.pause();
    return save(document, 3);
  });
  child.waitForPause();
  child.resume();
  std::this_thread::sleep_for(200ms);
  EXPECT_EQ(device.read(kPath), "<A Cur=\"1\"/>\n");
  EXPECT_EQ(save(document, 2), 0);
  EXPECT_EQ(child.wait(), 0);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 3);
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(ProcessLockTest, NothingIsKeptAcrossAChangeOfTheRoot) {
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
  device.write("/inner/cfg0/x.xml", "<A Cur=\"5\"/>");
  device.makeDirectory("/inner/run/camcfg");
  OtherProgram other([](OtherProgram&) {
    if (valueOf(openDocument(kPath, BU_TRUE)) != 1) return 1;
    if (chroot("/inner") != 0) return 2;
    if (valueOf(openDocument(kPath, BU_TRUE)) != 5) return 3;
    return access(lockFileOf(kName).c_str(), F_OK) == 0 ? 0 : 4;
  });
  EXPECT_EQ(other.wait(), 0);
}

TEST_F(ProcessLockTest, WithoutTheDirectoryThereIsNoLockAndItIsNotMade) {
  device.remove("/run");
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_EQ(save(document, 2), 0);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 2);
  EXPECT_FALSE(device.exists("/run"));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ProcessLockTest, DirectoryThatGoesAndComesBackIsFollowed) {
  for (int round = 0; round < 3; ++round) {
    openDocument(kPath, BU_TRUE);
    device.remove("/run");
    EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
    EXPECT_FALSE(device.exists("/run"));
    device.makeDirectory("/run/camcfg");
    const Document document = openDocument(kPath, BU_FALSE);
    EXPECT_FALSE(othersMayRead(kName));
    CFG_UnlockFile(text(kPath));
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
