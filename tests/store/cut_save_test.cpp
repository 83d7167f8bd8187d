#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <thread>

#include "store/process_lock_test.h"
#include "support/without_override.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

constexpr int kKilled = 128 + SIGKILL;

class CutSaveTest : public ProcessLockTest {
 protected:
  CutSaveTest() { lay(withValue(1)); }

  /// So long that a write of it can be cut within.
  static std::string withValue(int value) {
    return "<A Cur=\"" + std::to_string(value) + "\">" + std::string(9000, '.') + "</A>\n";
  }
  /// A program that dies at a save's first or second sync, or while it writes the main copy.
  static void dieInSave(int value, int sync) {
    OtherProgram other([=](OtherProgram&) {
      int syncs = 0;
      insteadOfSync = [&] {
        if (++syncs == sync) raise(SIGKILL);
      };
      if (sync == 0) {
        const rlimit limit{1500, 1500};
        setrlimit(RLIMIT_FSIZE, &limit);
      }
      return save(openDocument(kPath, BU_FALSE), value);
    });
    EXPECT_EQ(other.wait(), sync == 0 ? 128 + SIGXFSZ : kKilled);
  }
  void expectBoth(int value) {
    EXPECT_EQ(device.read(kPath), withValue(value));
    EXPECT_EQ(device.read("/cfg1/x.xml"), withValue(value));
  }

  void expectRepaired(const std::string& how) const {
    EXPECT_THAT(log.records(),
                ElementsAre(Logged(4, "cfgLockFile", "/cfg0/x.xml was left half saved, " + how)));
  }
};

TEST_F(CutSaveTest, MainCopyThatWasBeingWrittenIsRestoredFromTheBackupByTheNextReader) {
  dieInSave(2, 0);
  EXPECT_NE(device.read(kPath), withValue(1));
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
  expectBoth(1);
  expectRepaired("copied /cfg1/x.xml to /cfg0/x.xml");
  log.clear();
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(CutSaveTest, MainCopyThatParsesButEndsTooEarlyIsRestoredTooByTheNextWriter) {
  dieInSave(2, 0);
  device.write(kPath, "<A Cur=\"2\"/>\n");
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_EQ(valueOf(document), 1);
  expectBoth(1);
  EXPECT_THAT(log.records(), SizeIs(1));
  EXPECT_EQ(save(document, 3), 0);
  expectBoth(3);
  EXPECT_THAT(log.records(), SizeIs(1));
}

TEST_F(CutSaveTest, BackupIsBroughtUpToAMainCopyThatIsWhole) {
  dieInSave(2, 1);
  EXPECT_EQ(device.read("/cfg1/x.xml"), withValue(1));
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 2);
  expectBoth(2);
  expectRepaired("copied /cfg0/x.xml to /cfg1/x.xml");
}

TEST_F(CutSaveTest, SaveThatWasCutAtItsVeryEndKeepsTheNewValue) {
  dieInSave(2, 2);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 2);
  expectBoth(2);
}

TEST_F(CutSaveTest, WholeMainCopyIsTakenWhereTheBackupDoesNotLoad) {
  dieInSave(2, 0);
  device.write(kPath, withValue(2));
  device.write("/cfg1/x.xml", "<A");
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 2);
  expectBoth(2);
}

TEST_F(CutSaveTest, WhereNeitherCopyLoadsBothStayAndARecordSaysSo) {
  dieInSave(2, 0);
  device.write(kPath, "<A");
  device.write("/cfg1/x.xml", "<B");
  EXPECT_EQ(openDocument(kPath, BU_TRUE), nullptr);
  EXPECT_EQ(device.read(kPath), "<A");
  EXPECT_EQ(device.read("/cfg1/x.xml"), "<B");
  EXPECT_THAT(log.texts(),
              ElementsAre("/cfg0/x.xml was left half saved, neither /cfg0/x.xml nor /cfg1/x.xml "
                          "loads",
                          "Load file /cfg0/x.xml fail\n"));
}

TEST_F(CutSaveTest, WhoMayNotRepairLeavesItToTheNext) {
  dieInSave(2, 0);
  chmod(kPath, 0444);
  {
    const WithoutOverride withoutOverride;
    EXPECT_EQ(openDocument(kPath, BU_TRUE), nullptr);
  }
  log.clear();
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
  expectBoth(1);
  EXPECT_THAT(log.records(), SizeIs(1));
}

TEST_F(CutSaveTest, ManyWhoComeAtOnceRepairItOnce) {
  dieInSave(2, 0);
  std::vector<std::unique_ptr<OtherProgram>> others;
  for (int i = 0; i < 6; ++i)
    others.push_back(std::make_unique<OtherProgram>([this](OtherProgram&) {
      if (valueOf(openDocument(kPath, BU_TRUE)) != 1) return 100;
      return static_cast<int>(log.records().size());
    }));
  int records = 0;
  for (const auto& other : others) records += other->wait();
  EXPECT_EQ(records, 1);
  expectBoth(1);
}

TEST_F(CutSaveTest, VerificationWaitsForASaveThatIsUnderWay) {
  OtherProgram other([](OtherProgram& self) {
    const Document document = openDocument(kPath, BU_FALSE);
    truncate(kPath, 5);  // as far as a save has got
    self.pause();
    return save(document, 2);
  });
  other.waitForPause();
  std::thread resume([&] {
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(other.finish(), 0);
  });
  EXPECT_EQ(captureOutput([] { EXPECT_EQ(CFG_VerifyFileFormat(), 0); }), "file /cfg0/x.xml \n");
  resume.join();
  expectBoth(2);
  EXPECT_THAT(log.records(), SizeIs(1)) << "the counts, nothing to repair";
}

TEST_F(CutSaveTest, VerificationInAProgramThatHoldsTheFileDoesNotWaitForItself) {
  const Document document = openDocument(kPath, BU_FALSE);
  const auto start = Clock::now();
  captureOutput([] { EXPECT_EQ(CFG_VerifyFileFormat(), 0); });
  EXPECT_LT(Clock::now() - start, 1s);
  EXPECT_FALSE(othersMayRead(kName));
}

// Waits 10 seconds.
TEST_F(CutSaveTest, VerificationLeavesAFileToTheProgramThatKeepsIt) {
  device.write("/cfg0/y.xml", "<A/>");
  OtherProgram other([](OtherProgram& self) {
    openDocument(kPath, BU_FALSE);
    truncate(kPath, 5);
    self.pause();
    return 0;
  });
  other.waitForPause();
  const std::string output = captureOutput([] { EXPECT_EQ(CFG_VerifyFileFormat(), 0); });
  EXPECT_THAT(output, testing::HasSubstr("file /cfg0/y.xml \n"));
  EXPECT_THAT(output, testing::HasSubstr("Lock /cfg0/x.xml timeout, a deadlock may exist!\n"));
  EXPECT_EQ(device.read(kPath).size(), 5u);
}

}  // namespace
}  // namespace camcfg::tests
