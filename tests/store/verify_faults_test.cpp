#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "store/verify_test.h"
#include "support/each_shortage.h"
#include "support/expected_leaks.h"
#include "support/interposed_calls.h"

namespace camcfg::tests {
namespace {

class VerifyFaultsTest : public VerifyTest {
 protected:
  /// Lets a directory be counted but not be opened again for the scan.
  void refuseToScan(const std::string& directory) {
    calls->refusesToOpen = [directory, opened = 0](const char* path) mutable {
      return path == directory && ++opened == 2;
    };
  }
  InterposedCallsScope calls;
};

TEST_F(VerifyFaultsTest, DirectoryThatCannotBeOpenedForTheScanIsAnError) {
  writeBroken(kBackup);
  refuseToScan(kBackup);
  expectVerified(-1, "", {counts(0, 0, 1), error("File /cfg1 didn't exist\n")});
  writeBroken(kMain);
  refuseToScan(kMain);
  expectVerified(-1, "", {counts(0, 1, 1), error("File /cfg0 didn't exist\n")});
  writeGood(kDefault);
  refuseToScan(kDefault);
  expectVerified(-1, "", {counts(1, 1, 1), error("File /app/resource/defcfg didn't exist\n")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), broken(kMain));
}

TEST_F(VerifyFaultsTest, DirectoryThatNoDescriptorIsLeftForIsNotTakenForAnEmptyOne) {
  for (const char* directory : {kMain, kBackup, kDefault}) writeGood(directory);
  writeBroken(kMain);
  for (const char* directory : {kDefault, kMain, kBackup}) {
    calls->refusesToOpen = [directory](const char* path) { return std::string(path) == directory; };
    int result = 0;
    EXPECT_EQ(captureOutput([&] { result = CFG_VerifyFileFormat(); }),
              "File " + std::string(directory) + " didn't exist\n");
    EXPECT_EQ(result, -1);
    EXPECT_THAT(log.records(), testing::IsEmpty());
    EXPECT_EQ(device.read("/cfg0/x.xml"), broken(kMain));
  }
}

// Files are opened with the descriptor after those of the three standard streams and the scan.
TEST_F(VerifyFaultsTest, IntactCopyThatNoDescriptorIsLeftForIsNotReplaced) {
  for (const char* directory : {kMain, kBackup, kDefault}) writeGood(directory);
  // UndefinedBehaviorSanitizer looks at a class with a descriptor of its own, the first time.
  EXPECT_EQ(CFG_VerifyFileFormat(), 0);
  log.clear();
  const int lowestFree = dup(STDIN_FILENO);
  close(lowestFree);
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit forTheScanAlone{static_cast<rlim_t>(lowestFree) + 1, limit.rlim_max};
  int result = 0;
  setrlimit(RLIMIT_NOFILE, &forTheScanAlone);
  result = CFG_VerifyFileFormat();
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_EQ(result, -1);
  EXPECT_THAT(log.texts(),
              testing::ElementsAre("DefCfgFileCnt =1,MainFileCnt =1,BackupFileCnt =1 \n"));
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kMain));
  EXPECT_EQ(CFG_VerifyFileFormat(), 0);
}

TEST_F(VerifyFaultsTest, FileSystemWithoutEntryTypesIsVerifiedLikeAnyOther) {
  calls->entryRead = [](dirent& entry) { entry.d_type = DT_UNKNOWN; };
  writeGood(kDefault);
  writeBroken(kMain);
  for (const char* directory : {kDefault, kMain, kBackup}) {
    device.write(path(directory, "nested.xml/inside.xml"), good(directory));
    ASSERT_EQ(symlink(path(kDefault).c_str(), path(directory, "link.xml").c_str()), 0);
    ASSERT_EQ(symlink("nowhere", path(directory, "dangling.xml").c_str()), 0);
  }
  expectVerified(
      0, "file /cfg0/x.xml \n",
      {counts(1, 1, 0), loadFailed("/cfg0/x.xml"), synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
}

TEST_F(VerifyFaultsTest, FileThatGoesWhileItsDirectoryIsReadIsPassedOver) {
  calls->entryRead = [](dirent& entry) {
    entry.d_type = DT_UNKNOWN;
    if (std::string(entry.d_name) == "gone.xml") entry.d_name[0] = 'd';
  };
  writeGood(kMain);
  device.write(path(kMain, "gone.xml"), broken(kMain));
  expectVerified(0, "file /cfg0/x.xml \n", {counts(0, 1, 0)});
}

TEST_F(VerifyFaultsTest, NoDescriptorIsLeftOpen) {
  const auto nextDescriptor = [] {
    const int fd = ::open("/", O_RDONLY);
    close(fd);
    return fd;
  };
  const int before = nextDescriptor();
  writeBroken(kMain);
  writeGood(kDefault);
  CFG_VerifyFileFormat();
  device.remove(kMain);
  CFG_VerifyFileFormat();
  device.remove(path(kDefault));
  CFG_VerifyFileFormat();
  EXPECT_EQ(nextDescriptor(), before);
}

class VerifyingWithoutMemory : public testing::Test {
 protected:
  void writeAll(const std::string& defaults, const std::string& main, const std::string& backup) {
    device.write("/app/resource/defcfg/x.xml", defaults);
    device.write("/cfg0/x.xml", main);
    device.write("/cfg1/x.xml", backup);
  }
  testkit::DeviceRoot device;
  const ExpectedLeaks textsOfErrors;
};

TEST_F(VerifyingWithoutMemory, FailsAndReplacesNoIntactCopy) {
  writeAll("<Default/>", "<Main/>", "<Backup/>");
  underEachShortage(CFG_VerifyFileFormat, [&](bool struck, int result) {
    EXPECT_EQ(result, struck ? -1 : 0);
    EXPECT_EQ(device.read("/cfg0/x.xml"), "<Main/>");
    EXPECT_EQ(device.read("/cfg1/x.xml"), "<Backup/>");
  });
}

TEST_F(VerifyingWithoutMemory, FailsAndTakesNoIntactBackupForABrokenOne) {
  writeAll("<Default/>", "<Main", "<Backup/>");
  underEachShortage(CFG_VerifyFileFormat, [&](bool struck, int result) {
    EXPECT_EQ(result, struck ? -1 : 0);
    EXPECT_EQ(device.read("/cfg0/x.xml"), struck ? "<Main" : "<Backup/>");
    EXPECT_EQ(device.read("/cfg1/x.xml"), "<Backup/>");
    device.write("/cfg0/x.xml", "<Main");
  });
}

TEST_F(VerifyingWithoutMemory, FailsAndReplacesNothingHalfway) {
  writeAll("<Default/>", "<Main", "<Backup");
  underEachShortage(CFG_VerifyFileFormat, [&](bool struck, int result) {
    EXPECT_EQ(result, struck ? -1 : 0);
    EXPECT_EQ(device.read("/cfg0/x.xml"), struck ? "<Main" : "<Default/>");
    EXPECT_EQ(device.read("/cfg1/x.xml"), struck ? "<Backup" : "<Default/>");
    writeAll("<Default/>", "<Main", "<Backup");
  });
}

}  // namespace
}  // namespace camcfg::tests
