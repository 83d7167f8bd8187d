#include "device/calm.h"

#include <camcfg/params.h>
#include <fcntl.h>
#include <sys/wait.h>

#include <thread>

#include "base/outcome.h"
#include "device/files.h"
#include "support/device_test.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using namespace std::chrono_literals;
using namespace tool::device;

class CalmTest : public testing::Test {
 protected:
  CalmTest() {
    for (const char* path : {kBusiness, kBusinessBackup}) device.write(path, kParameters);
  }

  static std::string rtsp(int port) {
    return with(kParameters, "Rtsp Cur=\"554\"", "Rtsp Cur=\"" + std::to_string(port) + "\"");
  }

  testkit::DeviceRoot device;
};

TEST_F(CalmTest, FilesThatStayTheSameAreNotReadAgain) {
  device.write(kBusiness, "<Sys");
  int reads = 0;
  EXPECT_EQ(calmly([&] { return ++reads; }, [](int) { return true; }), 1);
}

TEST_F(CalmTest, FilesThatChangeAreReadAgain) {
  device.write(kBusiness, "<Sys");
  const Copy copy = calmly(
      [&] {
        Copy loaded = loadCopy(kBusiness);
        device.write(kBusiness, kParameters);
        return loaded;
      },
      [](const Copy& loaded) { return loaded.state != State::Good; });
  EXPECT_EQ(copy.state, State::Good);
}

TEST_F(CalmTest, RefusalOfUnusableFilesIsInDoubtAndOthersAreNot) {
  for (const bool unusable : {true, false}) {
    int reads = 0;
    const auto read = [&]() -> int {
      device.write(kBusiness, rtsp(++reads));
      device.write(kBusinessBackup, rtsp(reads));
      if (reads < 3)
        throw tool::Refusal(unusable ? tool::Status::Unusable : tool::Status::Refused, "");
      return reads;
    };
    if (unusable)
      EXPECT_EQ(calmly(read, [](int) { return false; }), 3);
    else
      EXPECT_THROW(calmly(read, [](int) { return false; }), tool::Refusal);
  }
}

TEST_F(CalmTest, FileThatIsOpenForWritingIsKnown) {
  EXPECT_FALSE(isOpenForWriting(kBusiness));
  const tool::Descriptor reader(open(kBusiness, O_RDONLY));
  EXPECT_FALSE(isOpenForWriting(kBusiness));
  const tool::Descriptor writer(open(kBusiness, O_WRONLY));
  EXPECT_TRUE(isOpenForWriting(kBusiness));
  EXPECT_FALSE(isOpenForWriting("/cfg0"));
  EXPECT_FALSE(isOpenForWriting("/none"));
}

TEST_F(CalmTest, SaveThatIsUnderWayIsWaitedForAndFoundWhole) {
  const int writer = open(kBusiness, O_WRONLY | O_TRUNC);
  std::thread save([writer] {
    // Longer than a file has to be the same to count as it is.
    std::this_thread::sleep_for(600ms);
    EXPECT_GT(write(writer, kParameters, sizeof kParameters - 1), 0);
    close(writer);
  });
  const FileSet set = surveyFiles();
  save.join();
  EXPECT_EQ(set.find("business_param.xml")->main.state, State::Good);
  EXPECT_EQ(set.find("business_param.xml")->backup.state, State::Good);
}

TEST_F(CalmTest, WritersWaitForALease) {
  auto lease = std::make_unique<ReadLeases>(std::vector<std::string>{kBusiness});
  const int refused = open(kBusiness, O_WRONLY | O_NONBLOCK);
  EXPECT_EQ(refused, -1);
  EXPECT_EQ(errno, EWOULDBLOCK);
  lease.reset();
  const tool::Descriptor writer(open(kBusiness, O_WRONLY | O_NONBLOCK));
  EXPECT_TRUE(writer);
}

/// While a program of the device's own saves all the time.
TEST_F(ParametersTest, ReadersFindNoDamageWhileAProgramSaves) {
  for (const char* directory : {"/cfg0", "/cfg1"}) {
    device.write(directory + std::string("/mpp_cfg.xml"), kMedia);
    device.write(directory + std::string("/preset_cfg.xml"), "<PresetCfg>\n</PresetCfg>\n");
  }
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  const pid_t program = fork();
  if (program == 0) {
    device.enter();
    close(ends[1]);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    char byte;
    for (int i = 0; read(ends[0], &byte, 1) < 0; ++i) {
      CFG_COM_SetIntParam(text("System"), text("Rtsp"), 1 + i % 60000);
      usleep(20'000);
    }
    _exit(0);
  }
  close(ends[0]);
  for (int i = 0; i < 20; ++i) {
    const ToolRun got = run({"get", "Image", "Mode"});
    EXPECT_EQ(got, (ToolRun{0, "Auto\n", ""}));
    const ToolRun verified = run({"verify"});
    EXPECT_EQ(verified.status, 0) << testing::PrintToString(verified);
    EXPECT_EQ(verified.err, "");
    EXPECT_EQ(run({"diff"}).out, "nothing differs\n");
    EXPECT_EQ(run({"status"}).out.find("damaged"), std::string::npos);
  }
  close(ends[1]);
  waitpid(program, nullptr, 0);
}

}  // namespace
}  // namespace camcfg::tests
