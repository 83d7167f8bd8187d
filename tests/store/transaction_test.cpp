#include "store/transaction.h"

#include "support/device_test.h"

namespace camcfg::tests {
namespace {

using testing::IsEmpty;

constexpr char kPath[] = "/cfg0/x.xml";
constexpr char kBackup[] = "/cfg1/x.xml";

class TransactionTest : public DeviceTest {
 protected:
  TransactionTest() { device.write(kPath, contents); }
  const std::string contents = "<A   Cur='1'/>";
  const std::string saved = "<A Cur=\"2\"/>\n";
};

TEST_F(TransactionTest, ReadingLeavesTheFileUnlockedWhileTheDocumentLives) {
  const ReadDocument document(kPath);
  ASSERT_TRUE(document);
  EXPECT_STREQ(document.root()->Attribute("Cur"), "1");
  EXPECT_EQ(document.root()->GetDocument(), document.get());
  EXPECT_TRUE(isUnlocked(kPath));
}

TEST_F(TransactionTest, ReadDocumentIsGoneOnceClosed) {
  ReadDocument document(kPath);
  document.close();
  EXPECT_FALSE(document);
  EXPECT_EQ(document.get(), nullptr);
}

TEST_F(TransactionTest, WritingHoldsTheLockAndGivesUpUnlessSaved) {
  {
    WriteDocument document(kPath);
    ASSERT_TRUE(document);
    EXPECT_EQ(document.root()->GetDocument(), document.get());
    document.root()->SetAttribute("Cur", 2);
    EXPECT_FALSE(isUnlocked(kPath));
  }
  EXPECT_TRUE(isUnlocked(kPath));
  EXPECT_EQ(device.read(kPath), contents);
  EXPECT_FALSE(device.exists(kBackup));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TransactionTest, WriteDocumentIsGoneAndTheFileUnlockedOnceClosed) {
  WriteDocument document(kPath);
  document.close();
  EXPECT_FALSE(document);
  EXPECT_EQ(document.get(), nullptr);
  EXPECT_TRUE(isUnlocked(kPath));
}

TEST_F(TransactionTest, SaveWritesBothCopiesAndReleasesTheLockAtOnce) {
  WriteDocument document(kPath);
  document.root()->SetAttribute("Cur", 2);
  EXPECT_TRUE(document.save());
  EXPECT_TRUE(isUnlocked(kPath));
  EXPECT_EQ(device.read(kPath), saved);
  EXPECT_EQ(device.read(kBackup), saved);
}

TEST_F(TransactionTest, SaveReleasesTheLockOnce) {
  {
    WriteDocument document(kPath);
    document.save();
    cfgLockFile(kPath);
  }
  EXPECT_FALSE(isUnlocked(kPath));
  EXPECT_THAT(log.records(), IsEmpty());
  cfgUnlockFile(kPath);
}

TEST_F(TransactionTest, SaveMayKeepTheLockUntilTheEnd) {
  {
    WriteDocument document(kPath);
    document.root()->SetAttribute("Cur", 2);
    EXPECT_TRUE(document.saveKeepingLock());
    EXPECT_FALSE(isUnlocked(kPath));
    EXPECT_EQ(device.read(kBackup), saved);
  }
  EXPECT_TRUE(isUnlocked(kPath));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TransactionTest, LockCanBeLeftBehind) {
  {
    WriteDocument document(kPath);
    document.leaveLocked();
  }
  EXPECT_FALSE(isUnlocked(kPath));
  EXPECT_EQ(device.read(kPath), contents);
  cfgUnlockFile(kPath);
}

TEST_F(TransactionTest, FileThatDoesNotOpenIsFalseAndReleasesNothing) {
  device.write(kPath, "broken");
  {
    const ReadDocument reading(kPath);
    WriteDocument writing(kPath);
    EXPECT_FALSE(reading);
    EXPECT_FALSE(writing);
    EXPECT_EQ(writing.get(), nullptr);
    log.clear();
  }
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_TRUE(isUnlocked(kPath));
}

}  // namespace
}  // namespace camcfg::tests
