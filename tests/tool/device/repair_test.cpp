#include "device/repair.h"

#include <sys/resource.h>
#include <sys/statvfs.h>

#include "tool/others_file.h"
#include "tool/small_disk.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kMain[] = "/cfg0/x.xml";
constexpr char kBackup[] = "/cfg1/x.xml";
constexpr char kGood[] = "<A>\n    <B Cur=\"1\"/>\n</A>\n";
constexpr char kDamaged[] = "<A";

class RepairTest : public ToolTest {
 protected:
  RepairTest() { device.write("/app/resource/defcfg/x.xml", kGood); }

  std::string hostPath(const std::string& path) const { return device.hostPath() + path; }
};

TEST_F(RepairTest, BackupOnAFullFileSystemIsLeftAsItIsAndTheFiguresAreReported) {
  const SmallDisk disk(hostPath("/cfg1"), "16k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  struct statvfs space {};
  ASSERT_EQ(statvfs(hostPath("/cfg1").c_str(), &space), 0);
  device.write("/cfg1/big", std::string(space.f_bavail * space.f_frsize, 'x'));
  device.write(kMain, kGood);
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{1,
                     "FILE   MAIN  BACKUP   DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  missing  good     yes       -          -\n",
                     "camcfg: verify: /cfg1/x.xml was not replaced from /cfg0/x.xml: no room for "
                     "/cfg1/x.xml: " +
                         std::to_string(space.f_frsize) + " bytes are needed and 0 are free\n"}));
}

TEST_F(RepairTest, DamagedMainCopyIsRestoredInItsOwnPlaceOnAFullFileSystem) {
  const SmallDisk disk(hostPath("/cfg0"), "16k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  device.write(kMain, kDamaged);
  struct statvfs space {};
  ASSERT_EQ(statvfs(hostPath("/cfg0").c_str(), &space), 0);
  device.write("/cfg0/big", std::string(space.f_bavail * space.f_frsize, 'x'));
  device.write(kBackup, kGood);
  EXPECT_EQ(run({"verify"}).status, 0);
  EXPECT_EQ(device.read(kMain), kGood);
}

TEST_F(RepairTest, MainCopyWithoutRoomIsRefusedBeforeAnythingIsChanged) {
  const SmallDisk disk(hostPath("/cfg0"), "16k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  struct statvfs space {};
  ASSERT_EQ(statvfs(hostPath("/cfg0").c_str(), &space), 0);
  device.write("/cfg0/big", std::string(space.f_bavail * space.f_frsize, 'x'));
  device.write(kBackup, kGood);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{3, "",
                     "camcfg: verify: cannot restore main copies: no room for /cfg0/x.xml: " +
                         std::to_string(space.f_frsize) + " bytes are needed and 0 are free\n"}));
  EXPECT_FALSE(device.exists(kMain));
}

TEST_F(RepairTest, ReadOnlyMainDirectoryIsRefusedBeforeAnythingIsChanged) {
  const SmallDisk disk(hostPath("/cfg0"), "64k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  device.write(kMain, kDamaged);
  device.write(kBackup, kGood);
  ASSERT_TRUE(disk.makeReadOnly());
  EXPECT_EQ(run({"verify"}),
            (ToolRun{3, "",
                     "camcfg: verify: cannot restore main copies: cannot write /cfg0/x.xml: "
                     "Read-only file system\n"}));
}

TEST_F(RepairTest, SoundFilesOnAReadOnlyDeviceVerify) {
  const SmallDisk disk(hostPath("/cfg0"), "64k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  device.write(kMain, kGood);
  device.write(kBackup, kGood);
  ASSERT_TRUE(disk.makeReadOnly());
  EXPECT_EQ(run({"verify", "--resync"}).status, 0);
}

TEST_F(RepairTest, CopyThatStopsShortIsReportedAndLeavesTheMainCopyWhole) {
  device.write(kMain, kGood);
  device.write(kBackup, kDamaged);
  const ToolRun result = run({"verify", "--resync"}, [] {
    const rlimit limit{8, 8};
    setrlimit(RLIMIT_FSIZE, &limit);
  });
  EXPECT_EQ(result,
            (ToolRun{1,
                     "FILE   MAIN  BACKUP   DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  damaged  good     yes       -          -\n",
                     "camcfg: verify: /cfg1/x.xml was not replaced from /cfg0/x.xml: the copy is "
                     "incomplete\n"}));
  EXPECT_EQ(device.read(kMain), kGood);
}

TEST_F(RepairTest, UnreadableCopyIsDistinguishedFromADamagedOne) {
  device.write(kMain, kGood);
  device.write(kBackup, kGood);
  const std::string why = giveToAnother(hostPath(kBackup));
  if (!why.empty()) GTEST_SKIP() << why;
  EXPECT_EQ(run({"verify", "--resync"}, obeyPermissions),
            (ToolRun{1,
                     "FILE   MAIN  BACKUP      DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  unreadable  good     yes       -          -\n",
                     "camcfg: verify: /cfg1/x.xml was not replaced from /cfg0/x.xml: cannot write "
                     "/cfg1/x.xml: Permission denied\n"}));
}

}  // namespace
}  // namespace camcfg::tests
