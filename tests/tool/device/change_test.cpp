#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <filesystem>

#include "tool/others_file.h"
#include "tool/small_disk.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;

class ChangeTest : public ParametersTest {
 protected:
  std::string hostPath(const std::string& path) const { return device.hostPath() + path; }

  ToolRun setRtsp() const { return run({"set", "System", "Rtsp", "8554"}); }

  // No file may grow beyond this size, which the tool does not know before it tries.
  ToolRun setRtspWithin(rlim_t bytes) const {
    return run({"set", "System", "Rtsp", "10554"}, [bytes] {
      const rlimit limit{bytes, bytes};
      setrlimit(RLIMIT_FSIZE, &limit);
    });
  }

  void expectUnchanged() const {
    EXPECT_EQ(device.read(kBusiness), kParameters);
    EXPECT_EQ(device.read(kBusinessBackup), kParameters);
  }
};

TEST_F(ChangeTest, WriteThatStopsShortIsNoSuccessAndChangesNothing) {
  EXPECT_EQ(setRtspWithin(sizeof kParameters - 1),
            (ToolRun{1, "",
                     "camcfg: set: System/Rtsp: the change is not in /cfg0/business_param.xml; "
                     "nothing was changed\n"}));
  expectUnchanged();
}

TEST_F(ChangeTest, MissingBackupDirectoryIsRefusedBeforehand) {
  device.remove("/cfg1");
  EXPECT_EQ(setRtsp(), (ToolRun{1, "",
                                "camcfg: set: System/Rtsp: cannot write "
                                "/cfg1/business_param.xml: No such file or directory\n"}));
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(ChangeTest, DirectoryInPlaceOfTheBackupIsRefusedBeforehand) {
  device.remove(kBusinessBackup);
  device.makeDirectory(kBusinessBackup);
  EXPECT_EQ(setRtsp(), (ToolRun{1, "",
                                "camcfg: set: System/Rtsp: cannot write /cfg1/business_param.xml: "
                                "it is not a regular file; move it away\n"}));
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(ChangeTest, FileThatTheUserMayNotWriteIsRefusedBeforehand) {
  const std::string why = giveToAnother(hostPath(kBusinessBackup));
  if (!why.empty()) GTEST_SKIP() << why;
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}, obeyPermissions),
            (ToolRun{1, "",
                     "camcfg: set: System/Rtsp: cannot write /cfg1/business_param.xml: Permission "
                     "denied\n"}));
  expectUnchanged();
}

TEST_F(ChangeTest, DirectoryThatTheUserMayNotWriteToIsRefusedBeforehand) {
  device.remove(kBusinessBackup);
  const std::string why = giveToAnother(hostPath("/cfg1"));
  if (!why.empty()) GTEST_SKIP() << why;
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}, obeyPermissions),
            (ToolRun{1, "",
                     "camcfg: set: System/Rtsp: cannot write /cfg1/business_param.xml: Permission "
                     "denied\n"}));
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(ChangeTest, FullFileSystemIsRefusedBeforehandWithTheFigures) {
  const SmallDisk disk(hostPath("/cfg1"), "16k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  struct statvfs space {};
  ASSERT_EQ(statvfs(hostPath("/cfg1").c_str(), &space), 0);
  device.write(kBusinessBackup, kParameters);
  device.write("/cfg1/big", std::string((space.f_bavail - 1) * space.f_frsize, 'x'));
  const std::string block = std::to_string(space.f_frsize);
  EXPECT_EQ(setRtsp(), (ToolRun{1, "",
                                "camcfg: set: System/Rtsp: no room for /cfg1/business_param.xml: " +
                                    block + " bytes are needed and 0 are free\n"}));
  expectUnchanged();
}

TEST_F(ChangeTest, OneFileSystemMustHaveRoomForBothCopies) {
  const SmallDisk disk(hostPath("/cfg0"), "16k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  struct statvfs space {};
  ASSERT_EQ(statvfs(hostPath("/cfg0").c_str(), &space), 0);
  device.write(kBusiness, kParameters);
  device.makeDirectory("/cfg0/backup");
  device.remove("/cfg1");
  fs::create_directory_symlink("/cfg0/backup", hostPath("/cfg1"));
  device.write("/cfg0/big", std::string((space.f_bavail - 2) * space.f_frsize, 'x'));
  ASSERT_EQ(statvfs(hostPath("/cfg0").c_str(), &space), 0);
  ASSERT_EQ(space.f_bavail, 1U);
  EXPECT_EQ(setRtsp(), (ToolRun{1, "",
                                "camcfg: set: System/Rtsp: no room for /cfg0/business_param.xml "
                                "and /cfg1/business_param.xml: " +
                                    std::to_string(2 * space.f_frsize) + " bytes are needed and " +
                                    std::to_string(space.f_frsize) + " are free\n"}));
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

TEST_F(ChangeTest, ReadOnlyFileSystemIsRefusedBeforehand) {
  const SmallDisk disk(hostPath("/cfg0"), "64k");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  device.write(kBusiness, kParameters);
  ASSERT_TRUE(disk.makeReadOnly());
  EXPECT_EQ(setRtsp(), (ToolRun{1, "",
                                "camcfg: set: System/Rtsp: cannot write /cfg0/business_param.xml: "
                                "Read-only file system\n"}));
  EXPECT_EQ(run({"get", "System", "Rtsp"}), (ToolRun{0, "554\n", ""}));
  expectUnchanged();
}

}  // namespace
}  // namespace camcfg::tests
