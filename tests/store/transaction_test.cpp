#include "store/transaction.h"

#include "support/device_test.h"

namespace camcfg::tests {
namespace {

using testing::IsEmpty;

constexpr char kTransactionPath[] = "/cfg0/x.xml";
constexpr char kTransactionBackup[] = "/cfg1/x.xml";

class TransactionTest : public DeviceTest {
 protected:
  TransactionTest() { device.write(kTransactionPath, contents); }
  const std::string contents = "<A   Cur='1'/>";
  const std::string saved = "<A Cur=\"2\"/>\n";
};

TEST_F(TransactionTest, ReadingLeavesTheFileUnlockedWhileTheDocumentLives) {
  const ReadDocument document(kTransactionPath);
  ASSERT_TRUE(document);
  EXPECT_STREQ(document.root()->Attribute("Cur"), "1");
  EXPECT_EQ(document.root()->GetDocument(), document.get());
  EXPECT_TRUE(isUnlocked(kTransactionPath));
}

TEST_F(TransactionTest, ReadDocumentIsGoneOnceClosed) {
  ReadDocument document(kTransactionPath);
  document.close();
  EXPECT_FALSE(document);
  EXPECT_EQ(document.get(), nullptr);
}

TEST_F(TransactionTest, WritingHoldsTheLockAndGivesUpUnlessSaved) {
  {
    WriteDocument document(kTransactionPath);
    ASSERT_TRUE(document);
    EXPECT_EQ(document.root()->GetDocument(), document.get());
    document.root()->SetAttribute("Cur", 2);
    EXPECT_FALSE(isUnlocked(kTransactionPath));
  }
  EXPECT_TRUE(isUnlocked(kTransactionPath));
  EXPECT_EQ(device.read(kTransactionPath), contents);
  EXPECT_FALSE(device.exists(kTransactionBackup));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TransactionTest, WriteDocumentIsGoneAndTheFileUnlockedOnceClosed) {
  WriteDocument document(kTransactionPath);
  document.close();
  EXPECT_FALSE(document);
  EXPECT_EQ(document.get(), nullptr);
  EXPECT_TRUE(isUnlocked(kTransactionPath));
}

TEST_F(TransactionTest, SaveWritesBothCopiesAndReleasesTheLockAtOnce) {
  WriteDocument document(kTransactionPath);
  document.root()->SetAttribute("Cur", 2);
  EXPECT_TRUE(document.save());
  EXPECT_TRUE(isUnlocked(kTransactionPath));
  EXPECT_EQ(device.read(kTransactionPath), saved);
  EXPECT_EQ(device.read(kTransactionBackup), saved);
}

TEST_F(TransactionTest, SaveReleasesTheLockOnce) {
  {
    WriteDocument document(kTransactionPath);
    document.save();
    cfgLockFile(kTransactionPath);
  }
  EXPECT_FALSE(isUnlocked(kTransactionPath));
  EXPECT_THAT(log.records(), IsEmpty());
  cfgUnlockFile(kTransactionPath);
}

TEST_F(TransactionTest, SaveMayKeepTheLockUntilTheEnd) {
  {
    WriteDocument document(kTransactionPath);
    document.root()->SetAttribute("Cur", 2);
    EXPECT_TRUE(document.saveKeepingLock());
    EXPECT_FALSE(isUnlocked(kTransactionPath));
    EXPECT_EQ(device.read(kTransactionBackup), saved);
  }
  EXPECT_TRUE(isUnlocked(kTransactionPath));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TransactionTest, LockCanBeLeftBehind) {
  {
    WriteDocument document(kTransactionPath);
    document.leaveLocked();
  }
  EXPECT_FALSE(isUnlocked(kTransactionPath));
  EXPECT_EQ(device.read(kTransactionPath), contents);
  cfgUnlockFile(kTransactionPath);
}

TEST_F(TransactionTest, FileThatDoesNotOpenIsFalseAndReleasesNothing) {
  device.write(kTransactionPath, "broken");
  {
    const ReadDocument reading(kTransactionPath);
    WriteDocument writing(kTransactionPath);
    EXPECT_FALSE(reading);
    EXPECT_FALSE(writing);
    EXPECT_EQ(writing.get(), nullptr);
    log.clear();
  }
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_TRUE(isUnlocked(kTransactionPath));
}

}  // namespace
}  // namespace camcfg::tests
