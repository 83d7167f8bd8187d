#include <cerrno>
#include <memory>

#include "support/device_test.h"
#include "support/each_shortage.h"
#include "support/expected_leaks.h"
#include "support/interposed_calls.h"
#include "support/quick_saves.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using tinyxml2::XMLDocument;
using Document = std::unique_ptr<XMLDocument>;

constexpr char kFaultyPath[] = "/cfg0/business_param.xml";
constexpr char kFaultyBackup[] = "/cfg1/business_param.xml";

Document openFaulty(tagBU_BOOL readOnly) {
  return Document(CFG_GetDocByFileName(text(kFaultyPath), readOnly));
}

class DocumentFaultsTest : private QuickSaves, public DeviceTest {
 protected:
  /// Opens the file in both modes, without success.
  long allocationsLeftByOpening() {
    EXPECT_EQ(openFaulty(BU_TRUE), nullptr);  // makes the lock's record
    log.clear();
    const long before = allocationsAlive();
    EXPECT_EQ(openFaulty(BU_TRUE), nullptr);
    EXPECT_EQ(openFaulty(BU_FALSE), nullptr);
    log.clear();
    return allocationsAlive() - before;
  }
  InterposedCallsScope calls;
};

TEST_F(DocumentFaultsTest, SaveSyncsAfterTheMainCopyAndAfterTheBackupWithTheLockHeld) {
  device.write(kFaultyPath, "<Older/>\n");
  device.write(kFaultyBackup, "<Older/>\n");
  const Document document = openFaulty(BU_FALSE);
  document->FirstChildElement()->SetName("Newer");
  std::vector<std::string> atSync;
  insteadOfSync = [&] {
    atSync.push_back(device.read(kFaultyPath) + device.read(kFaultyBackup));
    EXPECT_FALSE(isUnlocked(kFaultyPath));
  };
  EXPECT_EQ(CFG_SaveFile(document.get(), text(kFaultyPath), BU_TRUE), 0);
  EXPECT_THAT(atSync, ElementsAre("<Newer/>\n<Older/>\n", "<Newer/>\n<Newer/>\n"));
  EXPECT_TRUE(isUnlocked(kFaultyPath));
}

TEST_F(DocumentFaultsTest, SaveThatFailsSyncsTwiceAsWell) {
  device.remove("/cfg0");
  device.remove("/cfg1");
  int syncs = 0;
  insteadOfSync = [&] { ++syncs; };
  XMLDocument document;
  EXPECT_EQ(CFG_SaveFile(&document, text(kFaultyPath), BU_FALSE), 0);
  EXPECT_EQ(syncs, 2);
  EXPECT_EQ(CFG_SaveFile(&document, nullptr, BU_FALSE), -1);
  EXPECT_EQ(syncs, 2);
}

TEST_F(DocumentFaultsTest, OpeningNeverSyncs) {
  device.write(kFaultyPath, "<A/>");
  insteadOfSync = [] { ADD_FAILURE(); };
  openFaulty(BU_FALSE);
  CFG_UnlockFile(text(kFaultyPath));
  openFaulty(BU_TRUE);
}

TEST_F(DocumentFaultsTest, LockThatCannotBeHadIsReportedByItsWarningOnly) {
  device.write(kFaultyPath, "<A/>");
  const ExpectedLeaks abandoned;
  calls->timedLock = [](pthread_mutex_t*, const timespec*) { return ETIMEDOUT; };
  for (const tagBU_BOOL readOnly : {BU_TRUE, BU_FALSE}) {
    log.clear();
    XMLDocument* document = nullptr;
    EXPECT_EQ(captureOutput([&] { document = CFG_GetDocByFileName(text(kFaultyPath), readOnly); }),
              "[Warn][Cfg] Lock /cfg0/business_param.xml timeout, a deadlock may exist!\n");
    EXPECT_EQ(document, nullptr);
    EXPECT_THAT(
        log.records(),
        ElementsAre(FieldsAre(4, "[cfgLockFile:88] ",
                              "Lock /cfg0/business_param.xml timeout, a deadlock may exist!")));
    EXPECT_TRUE(isUnlocked(kFaultyPath));
  }
}

TEST_F(DocumentFaultsTest, LockThatCannotBeHadLeavesTheDocumentMadeForItUndeleted) {
  const ExpectedLeaks abandoned;
  calls->timedLock = [](pthread_mutex_t*, const timespec*) { return ETIMEDOUT; };
  EXPECT_EQ(allocationsLeftByOpening(), 2);
}

TEST_F(DocumentFaultsTest, FileThatDoesNotLoadLeavesNoDocumentBehind) {
  device.write(kFaultyPath, "<A>");
  EXPECT_EQ(allocationsLeftByOpening(), 0);
}

TEST_F(DocumentFaultsTest, FileThatDoesNotLoadIsReportedBeforeItIsReleased) {
  cfgUnlockFile(kFaultyPath);  // makes its record
  log.clear();
  std::vector<std::string> atRelease;
  calls->beforeUnlock = [&, file = g_mapFileLock.at(kFaultyPath).pstMutex](pthread_mutex_t* mutex) {
    if (mutex == file) atRelease = log.texts();
  };
  EXPECT_EQ(openFaulty(BU_TRUE), nullptr);
  EXPECT_THAT(atRelease, ElementsAre("Load file /cfg0/business_param.xml fail\n"));
}

TEST_F(DocumentFaultsTest, DocumentThatCannotBeMadeIsReportedAndNoLockIsTaken) {
  device.write(kFaultyPath, "<A/>");
  calls->timedLock = [](pthread_mutex_t*, const timespec*) {
    ADD_FAILURE();
    return std::nullopt;
  };
  XMLDocument* document = nullptr;
  const std::string output = captureOutput([&] {
    const ScarceMemory memory(1, Shortage::OneAllocation);
    document = CFG_GetDocByFileName(text(kFaultyPath), BU_FALSE);
  });
  EXPECT_EQ(document, nullptr);
  EXPECT_EQ(output, "");
  EXPECT_THAT(log.records(),
              ElementsAre(FieldsAre(3, "[CFG_GetDocByFileName:313] ", "New XMLDocument fail\n")));
}

class OpeningWithoutMemory : public testing::TestWithParam<tagBU_BOOL> {
 protected:
  testkit::DeviceRoot device;
};

TEST_P(OpeningWithoutMemory, FailsWithTheFileUnlockedAndTheNextAttemptSucceeds) {
  std::string contents = "<System>";
  for (int i = 0; i < 200; ++i) contents += "<Entry Cur=\"" + std::to_string(i) + "\"/>";
  device.write(kFaultyPath, contents + "</System>");
  const auto openOnce = [] { return CFG_GetDocByFileName(text(kFaultyPath), GetParam()); };
  const bool staysLocked = GetParam() != BU_TRUE;
  Document(openOnce()).reset();
  if (staysLocked) CFG_UnlockFile(text(kFaultyPath));

  underEachShortage(openOnce, [&](bool struck, XMLDocument* opened) {
    const Document document(opened);
    EXPECT_EQ(document == nullptr, struck);
    EXPECT_EQ(isUnlocked(kFaultyPath), struck || !staysLocked);
    if (document != nullptr && staysLocked) CFG_UnlockFile(text(kFaultyPath));
  });
  EXPECT_NE(Document(openOnce()), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Modes, OpeningWithoutMemory, testing::Values(BU_TRUE, BU_FALSE),
                         [](const auto& test) {
                           return test.param == BU_TRUE ? "Reading" : "Writing";
                         });

class SavingWithoutMemory : public testing::TestWithParam<tagBU_BOOL> {
 protected:
  testkit::DeviceRoot device;
};

TEST_P(SavingWithoutMemory, FailsWithTheBackupAsItWasAndTheLockReleasedIfAsked) {
  XMLDocument document;
  document.Parse(deeplyNested().c_str());
  tinyxml2::XMLPrinter whole;
  document.Print(&whole);
  const auto save = [&] {
    cfgLockFile(kFaultyPath);
    return CFG_SaveFile(&document, text(kFaultyPath), GetParam());
  };
  device.write(kFaultyBackup, "backup");
  cfgLockFile(kFaultyPath);
  cfgUnlockFile(kFaultyPath);

  underEachShortage(save, [&](bool struck, int result) {
    EXPECT_EQ(result, struck ? -1 : 0);
    EXPECT_EQ(device.read(kFaultyBackup), struck ? "backup" : whole.CStr());
    EXPECT_EQ(isUnlocked(kFaultyPath), GetParam() == BU_TRUE);
    if (GetParam() != BU_TRUE) cfgUnlockFile(kFaultyPath);

    EXPECT_EQ(CFG_SaveFile(&document, text(kFaultyPath), BU_FALSE), 0);
    EXPECT_EQ(device.read(kFaultyPath), whole.CStr());
    EXPECT_EQ(device.read(kFaultyBackup), whole.CStr());
    device.write(kFaultyBackup, "backup");
  });
}

INSTANTIATE_TEST_SUITE_P(UnlockFlags, SavingWithoutMemory, testing::Values(BU_TRUE, BU_FALSE),
                         [](const auto& test) {
                           return test.param == BU_TRUE ? "Unlocking" : "KeepingTheLock";
                         });

TEST_F(DocumentFaultsTest, GivingUpWithoutMemoryReleasesTheLock) {
  device.write(kFaultyPath, "<A/>");
  const Document document = openFaulty(BU_FALSE);
  {
    const ScarceMemory memory(1, Shortage::FromThenOn);
    EXPECT_EQ(CFG_UnlockFile(text(kFaultyPath)), 0);
  }
  EXPECT_TRUE(isUnlocked(kFaultyPath));
  EXPECT_THAT(log.records(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
