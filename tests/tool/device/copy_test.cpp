#include "device/files.h"

#include <sys/stat.h>

#include "tool/others_file.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

// Every command that reads parameters, against a file that cannot be used.
class UnusableFileTest : public ToolTest,
                         public testing::WithParamInterface<std::vector<std::string>> {
 protected:
  std::string verb() const {
    std::string words = GetParam().front();
    if (words == "system" && GetParam().size() > 1) words += " " + GetParam()[1];
    return words;
  }

  void expectUnusable(const std::string& fault) const {
    EXPECT_EQ(run(GetParam()), (ToolRun{3, "", "camcfg: " + verb() + ": " + fault + "\n"}));
  }
};

TEST_P(UnusableFileTest, MissingFileIsNamed) {
  expectUnusable("/cfg0/business_param.xml is missing; run 'camcfg verify' to repair it");
}

TEST_P(UnusableFileTest, MissingDirectoryIsAMissingFile) {
  device.remove("/cfg0");
  expectUnusable("/cfg0/business_param.xml is missing; run 'camcfg verify' to repair it");
}

TEST_P(UnusableFileTest, ComputerThatIsNoDeviceIsReportedWithWhereToFindOne) {
  for (const char* directory : {"/cfg0", "/cfg1", "/app"}) device.remove(directory);
  expectUnusable(
      "there is no device here: /cfg0, /cfg1 and /app do not exist; '--root DIR' works on a device "
      "below DIR, and the demo (scripts/demo.sh) lays one out in build/device");
}

TEST_P(UnusableFileTest, DamagedFileIsNamedAndLeftAsItIs) {
  for (const char* contents : {"", "<System><Rtsp Cur=", "no markup at all", "<A></B>"}) {
    device.write(kBusiness, contents);
    expectUnusable(
        "/cfg0/business_param.xml is not well-formed XML; run 'camcfg verify' to repair "
        "it");
    EXPECT_EQ(device.read(kBusiness), contents);
  }
}

TEST_P(UnusableFileTest, FileWithoutAnyElementIsNamed) {
  device.write(kBusiness, "<!-- nothing -->\n");
  expectUnusable(
      "/cfg0/business_param.xml holds no element; move it away and run 'camcfg verify' "
      "to repair it");
}

TEST_P(UnusableFileTest, DirectoryInItsPlaceIsNamed) {
  device.makeDirectory(kBusiness);
  expectUnusable(
      "/cfg0/business_param.xml is a directory; move it away and run 'camcfg verify' "
      "to repair it");
}

TEST_P(UnusableFileTest, PipeInItsPlaceIsNotWaitedFor) {
  ASSERT_EQ(mkfifo((device.hostPath() + kBusiness).c_str(), 0600), 0);
  expectUnusable(
      "/cfg0/business_param.xml is not a regular file; move it away and run 'camcfg "
      "verify' to repair it");
}

TEST_P(UnusableFileTest, FileThatTheUserMayNotReadIsNamed) {
  device.write(kBusiness, kParameters);
  const std::string why = giveToAnother(device.hostPath() + kBusiness);
  if (!why.empty()) GTEST_SKIP() << why;
  EXPECT_EQ(run(GetParam(), obeyPermissions),
            (ToolRun{3, "",
                     "camcfg: " + verb() +
                         ": /cfg0/business_param.xml cannot be read: Permission denied\n"}));
}

INSTANTIATE_TEST_SUITE_P(Commands, UnusableFileTest,
                         testing::Values(std::vector<std::string>{"list"},
                                         std::vector<std::string>{"list", "System"},
                                         std::vector<std::string>{"get", "System", "Rtsp"},
                                         std::vector<std::string>{"set", "System", "Rtsp", "8554"},
                                         std::vector<std::string>{"describe", "Rtsp"},
                                         std::vector<std::string>{"system"},
                                         std::vector<std::string>{"system", "rtsp-port"},
                                         std::vector<std::string>{"system", "http-port", "8080"}));

TEST_F(ToolTest, BytesThatAreNotUtf8DoNotStopJson) {
  device.write(kBusiness, "<A><B Cur=\"caf\xe9\"/></A>");
  EXPECT_EQ(run({"get", "A", "B"}), (ToolRun{0, "caf\xe9\n", ""}));
  EXPECT_THAT(run({"get", "A", "B", "--json"}).out,
              testing::HasSubstr("\"value\": \"caf\xef\xbf\xbd\""));
}

}  // namespace
}  // namespace camcfg::tests
