#include "device/turn.h"

#include <camcfg/params.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <csignal>
#include <memory>

#include "base/outcome.h"
#include "base/progress.h"
#include "support/device_test.h"
#include "tool/background.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace std::chrono_literals;
using tool::device::Patience;
using tool::device::Turn;

/// Somebody else's turn, for as long as this object lives.
class OthersTurn {
 public:
  explicit OthersTurn(const std::string& directory)
      : directory_(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    EXPECT_EQ(flock(directory_.get(), LOCK_EX | LOCK_NB), 0);
  }

 private:
  tool::Descriptor directory_;
};

class WaitingTest : public testing::Test {
 protected:
  WaitingTest() {
    tool::announceBy([this](const std::string& line) { said.push_back(line); });
  }
  ~WaitingTest() override { tool::announceBy(nullptr); }

  testkit::DeviceRoot device;
  std::vector<std::string> said;
};

TEST_F(WaitingTest, LongWaitIsSaidAndThenRefused) {
  const OthersTurn other("/cfg0");
  try {
    const Turn turn({"/cfg0/x.xml"}, Patience{20ms, 2000ms});
    FAIL();
  } catch (const tool::Refusal& refusal) {
    EXPECT_STREQ(refusal.what(),
                 "another camcfg is changing the device and did not finish within 2 s; nothing was "
                 "changed");
  }
  EXPECT_THAT(said,
              testing::ElementsAre("waiting for another camcfg, which is changing the device"));
}

TEST_F(WaitingTest, TurnsWithinOneAreTheSameAndTheRootServesWithoutTheDirectory) {
  device.remove("/cfg0");
  const auto first = std::make_unique<Turn>(Turn::allFiles());
  const Turn inner(Turn::allFiles());
  const tool::Descriptor root(open("/", O_RDONLY | O_DIRECTORY));
  EXPECT_NE(flock(root.get(), LOCK_EX | LOCK_NB), 0);
}

TEST_F(WaitingTest, WhoChangesNothingWaitsForNobody) {
  const OthersTurn other("/cfg0");
  const Turn turn(Turn::Files{}, Patience{0ms, 0ms});
  EXPECT_THAT(said, testing::IsEmpty());
}

class TurnTest : public ParametersTest {
 protected:
  std::vector<std::string> line(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--root", device.hostPath()});
    return arguments;
  }
};

TEST_F(TurnTest, ChangesWaitWhileReadersDoNot) {
  auto other = std::make_unique<OthersTurn>(device.hostPath() + "/cfg0");
  Background change(line({"set", "System", "Rtsp", "8554"}));
  ASSERT_TRUE(change.says("camcfg: set: waiting for another camcfg"));
  EXPECT_EQ(run({"get", "System", "Rtsp"}), (ToolRun{0, "554\n", ""}));
  EXPECT_EQ(run({"reset", "System", "Rtsp", "--dry-run"}).status, 0);
  other.reset();
  EXPECT_TRUE(change.shows("System/Rtsp: 554 -> 8554\n"));
  EXPECT_EQ(change.end(), 0);
}

TEST_F(TurnTest, HolderThatIsKilledLosesItsTurn) {
  auto other = std::make_unique<OthersTurn>(device.hostPath() + "/cfg0");
  Background first(line({"set", "System", "Rtsp", "8554"}));
  ASSERT_TRUE(first.says("waiting"));
  other.reset();
  first.end(SIGKILL);
  EXPECT_EQ(run({"set", "System", "Rtsp", "8555"}).status, 0);
}

/// Processes that do something again and again; each has a file that it notes failures in.
class Crowd {
 public:
  ~Crowd() {
    for (const pid_t process : processes_) waitpid(process, nullptr, 0);
  }
  void add(const std::function<bool()>& work) {
    const pid_t process = fork();
    if (process == 0) _exit(work() ? 0 : 1);
    processes_.push_back(process);
  }
  int failures() {
    int failures = 0;
    for (const pid_t process : processes_) {
      int status = 0;
      waitpid(process, &status, 0);
      failures += WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1;
    }
    processes_.clear();
    return failures;
  }

 private:
  std::vector<pid_t> processes_;
};

bool isRefused(const ToolRun& run) {
  if (run.status == 0) return false;
  std::cerr << testing::PrintToString(run);
  return true;
}

TEST_F(TurnTest, ManyRunsSideBySideLoseNothingAndFindNoDamage) {
  constexpr int kRounds = 40;
  Crowd crowd;
  for (const char* name : {"WebHttp", "WebHttps", "Rtsp"})
    crowd.add([this, name] {
      for (int i = 1; i <= kRounds; ++i) {
        const std::string value = std::to_string(1000 + i);
        if (isRefused(run({"set", "System", name, value}))) return false;
        if (run({"get", "System", name}).out != value + "\n") return false;
      }
      return true;
    });
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"get", "Image", "Mode"}, {"verify"}, {"list"}})
    crowd.add([this, words] {
      for (int i = 0; i < kRounds; ++i)
        if (isRefused(run(words))) return false;
      return true;
    });
  EXPECT_EQ(crowd.failures(), 0);
}

/// A device whose programs are kept apart.
class KeptApartTest : public TurnTest {
 protected:
  KeptApartTest() { device.makeDirectory("/run/camcfg"); }
};

TEST_F(KeptApartTest, ProgramsAndTheToolLoseNothingOfEachOther) {
  Crowd crowd;
  for (const char* name : {"WebHttp", "WebHttps"})
    crowd.add([this, name] {
      device.enter();
      for (int i = 1; i <= 200; ++i) {
        int value = 0;
        if (CFG_COM_SetIntParam(text("System"), text(name), i) != 0) return false;
        usleep(5'000);
        if (CFG_COM_GetIntParam(text("System"), text(name), &value) != 0 || value != i)
          return false;
      }
      return true;
    });
  crowd.add([this] {
    for (int i = 1; i <= 15; ++i) {
      const std::string value = std::to_string(1000 + i);
      if (isRefused(run({"set", "System", "Rtsp", value}))) return false;
      if (run({"get", "System", "Rtsp"}).out != value + "\n") return false;
    }
    return true;
  });
  crowd.add([this] {
    for (int i = 0; i < 15; ++i)
      if (isRefused(run({"verify"})) || isRefused(run({"reset", "System", "RtspOverHttp"})))
        return false;
    return true;
  });
  EXPECT_EQ(crowd.failures(), 0);
}

// A change of several saves is one to programs: none of them saves in between.
TEST_F(KeptApartTest, TheToolHoldsAFileOverItsWholeChange) {
  device.enter();
  Crowd crowd;
  {
    const Turn turn({kBusiness});
    const auto save = [] {
      return CFG_COM_SetIntParam(text("System"), text("Rtsp"), 1) == 0 &&
             CFG_COM_SetIntParam(text("System"), text("WebHttp"), 2) == 0;
    };
    crowd.add([] { return CFG_COM_SetIntParam(text("System"), text("Rtsp"), 3) == 0; });
    EXPECT_TRUE(save());
    usleep(300'000);
    EXPECT_TRUE(save());
    int value = 0;
    EXPECT_EQ(CFG_COM_GetIntParam(text("System"), text("Rtsp"), &value), 0);
    EXPECT_EQ(value, 1);
  }
  EXPECT_EQ(crowd.failures(), 0);
  EXPECT_THAT(device.read(kBusiness), testing::HasSubstr("Rtsp Cur=\"3\""));
}

}  // namespace
}  // namespace camcfg::tests
