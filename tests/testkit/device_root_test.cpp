#include "camcfg/testkit/device_root.h"

#include <gmock/gmock.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

namespace camcfg::testkit {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

class DeviceRootTest : public testing::Test {
 protected:
  /// A directory of the host for the devices of this test to be laid out in.
  DeviceRootTest() {
    char pattern[] = "/tmp/camcfg-root-test-XXXXXX";
    scratch = mkdtemp(pattern);
    fs::permissions(scratch, fs::perms::all);
    setenv("TMPDIR", scratch.c_str(), 1);
  }
  ~DeviceRootTest() override { fs::remove_all(scratch); }

  std::vector<std::string> leftInScratch() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(scratch))
      names.push_back(entry.path().filename());
    return names;
  }

  std::string scratch;
};

TEST_F(DeviceRootTest, LaysOutADevicesDirectoriesInTheTemporaryDirectory) {
  const DeviceRoot device(DeviceRoot::StayOut);
  EXPECT_EQ(fs::path(device.hostPath()).parent_path(), scratch);
  EXPECT_THAT(leftInScratch(), testing::SizeIs(1));
  EXPECT_THAT(device.list("/"), ElementsAre("app", "cfg0", "cfg1"));
  EXPECT_THAT(device.list("/app/resource"), ElementsAre("defcfg", "language"));
  EXPECT_TRUE(fs::is_directory(device.hostPath() + "/cfg0"));
}

TEST_F(DeviceRootTest, StayingOutLeavesTheProcessWhereItWas) {
  const std::string before = fs::current_path();
  const DeviceRoot device(DeviceRoot::StayOut);
  device.write("/cfg0/x.xml", "<A/>");
  EXPECT_EQ(fs::current_path(), before);
  EXPECT_FALSE(fs::exists("/cfg0/x.xml"));
  EXPECT_TRUE(fs::exists(device.hostPath() + "/cfg0/x.xml"));
}

TEST_F(DeviceRootTest, EnteringMakesItTheRootUntilItGoes) {
  const std::string before = fs::current_path();
  {
    const DeviceRoot device;
    EXPECT_EQ(fs::current_path(), "/");
    device.write("/cfg0/x.xml", "<A/>");
    std::string contents;
    std::getline(std::ifstream("/cfg0/x.xml"), contents);
    EXPECT_EQ(contents, "<A/>");
    EXPECT_FALSE(fs::exists("/tmp"));
  }
  EXPECT_EQ(fs::current_path(), before);
  EXPECT_TRUE(fs::exists("/tmp"));
  EXPECT_FALSE(fs::exists("/cfg0/x.xml"));
}

TEST_F(DeviceRootTest, NothingIsLeftOfIt) {
  for (const auto entry : {DeviceRoot::Enter, DeviceRoot::StayOut}) {
    const DeviceRoot device(entry);
    device.write("/cfg0/deep/er/x.xml", "<A/>");
  }
  EXPECT_THAT(leftInScratch(), IsEmpty());
}

TEST_F(DeviceRootTest, DevicesFollowOneAnother) {
  for (int i = 0; i < 3; ++i) {
    const DeviceRoot device;
    EXPECT_THAT(device.list("/cfg0"), IsEmpty());
    device.write("/cfg0/x.xml", "<A/>");
  }
}

TEST_F(DeviceRootTest, DeviceFilledFromTheHostCanBeEntered) {
  const std::string host = scratch + "/host";
  fs::create_directories(host);
  std::ofstream(host + "/x.xml") << "<Sample/>";
  {
    DeviceRoot device(DeviceRoot::StayOut);
    device.copyFromHost(host, "/app/resource/defcfg");
    device.enter();
    device.enter();
    EXPECT_EQ(device.read("/app/resource/defcfg/x.xml"), "<Sample/>");
    EXPECT_TRUE(fs::exists("/app/resource/defcfg/x.xml"));
    EXPECT_FALSE(fs::exists(host));
    EXPECT_THROW(device.copyFromHost("/app", "/cfg0"), std::runtime_error);
  }
  EXPECT_TRUE(fs::exists(host));
}

// The members that work on files do the same entered or not.
class DeviceRootFiles : public DeviceRootTest,
                        public testing::WithParamInterface<DeviceRoot::Entry> {};

TEST_P(DeviceRootFiles, AreWrittenAndReadWhole) {
  const DeviceRoot device(GetParam());
  const std::string bytes("a\0b\r\n\xff", 6);
  device.write("/new/directory/x.xml", bytes);
  EXPECT_EQ(device.read("/new/directory/x.xml"), bytes);
  device.write("/new/directory/x.xml", "");
  EXPECT_EQ(device.read("/new/directory/x.xml"), "");
}

TEST_P(DeviceRootFiles, ExistUntilTheyAreRemoved) {
  const DeviceRoot device(GetParam());
  const std::string host = GetParam() == DeviceRoot::Enter ? "" : device.hostPath();
  device.write("/cfg0/deep/x.xml", "");
  ASSERT_EQ(symlink("nowhere", (host + "/cfg0/dangling").c_str()), 0);
  EXPECT_TRUE(device.exists("/cfg0/deep/x.xml"));
  EXPECT_TRUE(device.exists("/cfg0/deep"));
  EXPECT_TRUE(device.exists("/cfg0/dangling"));
  EXPECT_FALSE(device.exists("/cfg0/none"));
  EXPECT_THAT(device.list("/cfg0"), ElementsAre("dangling", "deep"));
  device.remove("/cfg0/deep");
  device.remove("/cfg0/dangling");
  device.remove("/cfg0/none");
  EXPECT_THAT(device.list("/cfg0"), IsEmpty());
}

TEST_P(DeviceRootFiles, ErrorsAreThrown) {
  const DeviceRoot device(GetParam());
  device.write("/cfg0/file", "");
  EXPECT_THROW(device.read("/cfg0/none"), std::runtime_error);
  EXPECT_THROW(device.list("/none"), std::runtime_error);
  EXPECT_THROW(device.write("/cfg0", ""), std::runtime_error);
  EXPECT_THROW(device.write("/cfg0/file/x.xml", ""), std::runtime_error);
  EXPECT_THROW(device.makeDirectory("/cfg0/file/deeper"), std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(Entries, DeviceRootFiles,
                         testing::Values(DeviceRoot::Enter, DeviceRoot::StayOut),
                         [](const auto& test) {
                           return test.param == DeviceRoot::Enter ? "Entered" : "StayedOut";
                         });

TEST_F(DeviceRootTest, DirectoryOfTheHostIsCopiedInWhole) {
  const std::string host = scratch + "/host";
  fs::create_directories(host + "/deep");
  std::ofstream(host + "/x.xml") << "<New/>";
  std::ofstream(host + "/deep/y.xml") << "<Deep/>";
  const DeviceRoot device(DeviceRoot::StayOut);
  device.write("/app/resource/defcfg/x.xml", "<Older/>");
  device.write("/app/resource/defcfg/kept.xml", "<Kept/>");
  device.copyFromHost(host, "/app/resource/defcfg");
  EXPECT_EQ(device.read("/app/resource/defcfg/x.xml"), "<New/>");
  EXPECT_EQ(device.read("/app/resource/defcfg/deep/y.xml"), "<Deep/>");
  EXPECT_EQ(device.read("/app/resource/defcfg/kept.xml"), "<Kept/>");
  EXPECT_THROW(device.copyFromHost(scratch + "/none", "/cfg0"), std::runtime_error);
}

TEST_F(DeviceRootTest, NothingIsCopiedInOnceEntered) {
  const DeviceRoot device;
  EXPECT_THROW(device.copyFromHost("/cfg0", "/cfg1"), std::runtime_error);
}

TEST_F(DeviceRootTest, MissingTemporaryDirectoryIsThrown) {
  setenv("TMPDIR", (scratch + "/none").c_str(), 1);
  EXPECT_THROW(DeviceRoot(DeviceRoot::StayOut), std::runtime_error);
}

// Runs something in a child process that is no longer root, and returns what it returned.
int asOrdinaryUser(const std::function<int()>& run) {
  const pid_t child = fork();
  if (child == 0) {
    constexpr uid_t kNobody = 65534;
    if (geteuid() == 0 && (setgid(kNobody) != 0 || setuid(kNobody) != 0)) _exit(99);
    prctl(PR_SET_DUMPABLE, 1);  // a process that gave up root may not write to its own /proc else
    int result = 98;
    try {
      result = run();
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
    _exit(result);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool mayMakeUserNamespaces() {
  return asOrdinaryUser([] { return unshare(CLONE_NEWUSER) == 0 ? 0 : 1; }) == 0;
}

TEST_F(DeviceRootTest, OrdinaryUserEntersThroughAUserNamespace) {
  if (!mayMakeUserNamespaces()) GTEST_SKIP() << "needs user namespaces, and no chroot around them";
  EXPECT_EQ(asOrdinaryUser([] {
              for (int i = 0; i < 2; ++i) {
                const DeviceRoot device;
                device.write("/cfg0/x.xml", "<A/>");
                if (!fs::exists("/cfg0/x.xml") || fs::exists("/tmp")) return 1;
              }
              return fs::exists("/tmp") ? 0 : 2;
            }),
            0);
  EXPECT_THAT(leftInScratch(), IsEmpty());
}

// A process with several threads cannot make a user namespace.
TEST_F(DeviceRootTest, WhereItCannotBeEnteredThatIsSaidAndNothingIsLeft) {
  EXPECT_EQ(asOrdinaryUser([] {
              std::thread other([] { pause(); });
              other.detach();
              try {
                const DeviceRoot device;
              } catch (const std::runtime_error& error) {
                const std::string what = error.what();
                const std::string why = "needs root, or permission to make a user namespace";
                return what.find(why) == std::string::npos ? 1 : 0;
              }
              return 2;
            }),
            0);
  EXPECT_THAT(leftInScratch(), IsEmpty());
}

}  // namespace
}  // namespace camcfg::testkit
