#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "tool/small_disk.h"
#include "tool/trial_device.h"
#include "tool/unread_pipe.h"

namespace camcfg::tests {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;

constexpr char kRolledBack[] = "rolled back change 1, since it was not confirmed in time: try";

/// The ways in which a trial ends that nobody confirms or cancels.
class TrialEndsTest : public TrialTest {
 protected:
  /// The change is over, and nobody waits for it.
  void leaveExpired() const {
    leaveOnTrial("1s");
    std::this_thread::sleep_for(1100ms);
  }
  void expectRolledBackBy(const Words& line) const {
    const ToolRun result = run(line);
    EXPECT_THAT(result.err, HasSubstr("camcfg: " + line.front() + ": " + kRolledBack));
    EXPECT_TRUE(isOld());
    EXPECT_EQ(history().size(), 2U);
  }
};

TEST_F(TrialEndsTest, InterruptedWaitRollsBackAtOnce) {
  for (const int number : {SIGINT, SIGTERM}) {
    OnTrial trial(device, trying());
    EXPECT_EQ(trial.end(number), 6);
    EXPECT_TRUE(trial.says("since it was interrupted: try"));
    EXPECT_TRUE(isOld());
  }
}

TEST_F(TrialEndsTest, WhatTheStartSalvagesOfATriedChangeIsRolledBack) {
  device.write(kBusinessDefault, kParameters);
  ASSERT_EQ(run({"set", "Image", "Brightness", "20"}).status, 0);
  leaveOnTrial();
  const std::string text = device.read(kBusiness);
  writeBoth(text.substr(0, text.find("<NetWork")) + "<Net");
  EXPECT_EQ(run({"salvage", "--apply"}).status, 1);
  EXPECT_THAT(run({"boot"}).out, AllOf(HasSubstr("was salvaged"), HasSubstr("rolled back")));
  EXPECT_EQ(port(), "554\n");
  EXPECT_EQ(run({"get", "Image", "Brightness"}).out, "20\n");
}

TEST_F(TrialEndsTest, WaitGoesOnWhereTheConnectionBreaks) {
  OnTrial trial(device, trying("4s"));
  EXPECT_TRUE(trial.shows("8554\n"));
  trial.stopReading();
  trial.signal(SIGHUP);
  EXPECT_EQ(port(), "8554\n");
  EXPECT_EQ(trial.end(), 6);
  EXPECT_TRUE(isOld());
  OnTrial confirmed(device, trying());
  EXPECT_TRUE(confirmed.shows("8554\n"));
  confirmed.stopReading();
  confirmed.signal(SIGHUP);
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_EQ(confirmed.end(), 0);
}

TEST_F(TrialEndsTest, AnswerThatCannotBePrintedEndsNoTrial) {
  const auto inChild = [] {
    close(STDOUT_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
  };
  EXPECT_EQ(run(trying("1s"), inChild).status, 6);
  EXPECT_TRUE(isOld());
  OnTrial trial(device, trying(), inChild);
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_TRUE(trial.says("the change is confirmed, but could not be printed: standard output"));
  EXPECT_EQ(trial.end(), 5);
  EXPECT_EQ(port(), "8554\n");
}

TEST_F(TrialEndsTest, MessagesThatNobodyReadsEndNoTrial) {
  const ToolRun result = run(trying("1s"), [] { leaveAPipeUnread(STDERR_FILENO); });
  EXPECT_EQ(result, (ToolRun{6, "System/Rtsp: 554 -> 8554\n", ""}));
  EXPECT_TRUE(isOld());
}

TEST_F(TrialEndsTest, ReaderWhoHasStoppedReadingStopsNoRollback) {
  for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
    const ToolRun result = run(trying("1s"), [&] {
      int ends[2];
      if (pipe2(ends, O_NONBLOCK) != 0) _exit(1);
      while (write(ends[1], "x", 1) == 1) continue;
      fcntl(ends[1], F_SETFL, O_WRONLY);
      dup2(ends[1], descriptor);
    });
    EXPECT_EQ(result.status, 6);
    EXPECT_TRUE(isOld());
  }
}

TEST_F(TrialEndsTest, ChangeWhoseWaitWasKilledStaysOnTrial) {
  leaveOnTrial();
  EXPECT_EQ(port(), "8554\n");
  EXPECT_EQ(run({"set", "Image", "Mode", "Manual"}).status, 1);
  EXPECT_EQ(run({"confirm"}).status, 0);
  EXPECT_EQ(port(), "8554\n");
}

TEST_F(TrialEndsTest, NextCommandRollsBackWhatNobodyWaitsFor) {
  leaveExpired();
  expectRolledBackBy({"get", "System", "Rtsp"});
}

TEST_F(TrialEndsTest, NextCommandShowsWhatIsRolledBack) {
  leaveExpired();
  EXPECT_EQ(port(), "554\n");
}

TEST_F(TrialEndsTest, NextChangeRollsBackFirst) {
  leaveExpired();
  const ToolRun result = run({"set", "Image", "Mode", "Manual"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr(kRolledBack));
  EXPECT_EQ(port(), "554\n");
  EXPECT_EQ(run({"get", "Image", "Mode"}).out, "Manual\n");
}

TEST_F(TrialEndsTest, NextTrialRollsBackFirst) {
  leaveExpired();
  const ToolRun result = run({"try", "--for", "1s", "--", "set", "Image", "Mode", "Manual"});
  EXPECT_EQ(result.status, 6);
  EXPECT_THAT(result.err, AllOf(HasSubstr(kRolledBack), HasSubstr("rolled back change 3")));
  EXPECT_TRUE(isOld());
}

TEST_F(TrialEndsTest, VerificationRollsBackToo) {
  leaveExpired();
  expectRolledBackBy({"verify"});
}

TEST_F(TrialEndsTest, ConfirmationThatIsTooLateRollsBack) {
  leaveExpired();
  const ToolRun result = run({"confirm"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err,
              AllOf(HasSubstr(kRolledBack), HasSubstr("too late: change 1 was rolled back")));
  EXPECT_TRUE(isOld());
}

TEST_F(TrialEndsTest, BootRollsBackWhatNobodyWaitsForWhateverItsTime) {
  leaveOnTrial();
  const ToolRun result = run({"boot"});
  EXPECT_THAT(result.out, HasSubstr(kRolledBack));
  EXPECT_THAT(result.err, HasSubstr(std::string("camcfg: boot: ") + kRolledBack));
  EXPECT_TRUE(isOld());
  EXPECT_EQ(run({"boot"}).out, "");
}

TEST_F(TrialEndsTest, BootLeavesATrialThatSomebodyWaitsFor) {
  OnTrial trial(device, trying());
  EXPECT_EQ(run({"boot"}).out, "");
  EXPECT_EQ(port(), "8554\n");
  EXPECT_EQ(run({"cancel"}).status, 0);
}

TEST_F(TrialEndsTest, TrialOfAnEarlierStartIsOver) {
  for (const Words& line : {Words{"get", "System", "Rtsp"}, Words{"boot"}, Words{"status"}}) {
    device.remove("/cfg1/.camcfg");
    leaveOnTrial();
    editRecord(recorded("boot"), R"("boot": "another")");
    expectRolledBackBy(line);
  }
}

TEST_F(TrialEndsTest, ClockThatIsSetEndsNoTrialAndKeepsNone) {
  for (const char* time : {"0", "4102444800"}) {
    leaveOnTrial("4s");
    editRecord(recorded("time"), std::string("\"time\": ") + time);
    EXPECT_EQ(port(), "8554\n");
    EXPECT_LE(pending()["secondsLeft"].get<int>(), 4);
    std::this_thread::sleep_for(4100ms);
    EXPECT_EQ(port(), "554\n");
  }
}

// As where the kernel does not say which run this is.
TEST_F(TrialEndsTest, TrialThatHasNotBegunYetIsOver) {
  leaveOnTrial();
  editRecord(recorded("begin"), "\"begin\": " + std::string(15, '9'));
  expectRolledBackBy({"get", "System", "Rtsp"});
}

TEST_F(TrialEndsTest, WaitGoesOnUntilTheFilesCanBeChanged) {
  OnTrial trial(device, trying("1s"));
  device.write(kBusiness, "<Sys");
  EXPECT_TRUE(trial.says("change 1 could not be rolled back yet: /cfg0/business_param.xml"));
  EXPECT_EQ(run({"verify"}).status, 0);
  EXPECT_EQ(trial.end(), 6);
  EXPECT_EQ(port(), "554\n");
}

TEST_F(TrialEndsTest, WaitThatIsStoppedWhereNothingCanBeChangedFails) {
  OnTrial trial(device, trying());
  device.write(kBusiness, "<Sys");
  trial.signal(SIGTERM);
  EXPECT_TRUE(trial.says("could not be rolled back yet"));
  EXPECT_EQ(trial.end(SIGTERM), 1);
  EXPECT_TRUE(device.exists(kTrial));
}

TEST_F(TrialEndsTest, ReaderSaysWhatItCannotRollBack) {
  leaveExpired();
  const SmallDisk disk(device.hostPath() + "/cfg0", "1m");
  if (!disk.fault().empty()) GTEST_SKIP() << disk.fault();
  device.write(kBusiness, device.read(kBusinessBackup));
  ASSERT_TRUE(disk.makeReadOnly());
  const ToolRun result = run({"get", "System", "Rtsp"});
  EXPECT_EQ(result.out, "8554\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.err, HasSubstr("camcfg: get: a change on trial could not be rolled back: "));
  EXPECT_THAT(run({"set", "Image", "Mode", "Manual"}).err, HasSubstr("change 1 is on trial"));
  EXPECT_TRUE(device.exists(kTrial));
}

TEST_F(TrialEndsTest, RecordOfNoUseIsPutAsideAndNotApplied) {
  const auto expectPutAside = [this](const std::string& why) {
    const ToolRun result = run({"set", "Image", "Mode", "Manual"});
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, HasSubstr("/cfg1/.camcfg/trial " + why +
                                      "; it was put aside as /cfg1/.camcfg/aside-1"));
    EXPECT_EQ(port(), "8554\n");
    EXPECT_FALSE(device.exists(kTrial));
    device.remove("/cfg1/.camcfg");
    writeBoth(kParameters);
  };
  leaveOnTrial();
  device.write(kTrial, with(device.read(kTrial), "business", "busyness"));
  expectPutAside("is damaged: its checksum is wrong");
  leaveOnTrial();
  device.write(kTrial, "camcfg-change 2 in another way\n");
  expectPutAside("was written by a later version of this program");
  leaveOnTrial();
  editRecord("/cfg0/business_param.xml", "/etc/passwd.xml");
  expectPutAside("is about /etc/passwd.xml, which is no main copy of a device");
  leaveOnTrial();
  editRecord("\"trial\"", "\"nothing\"");
  expectPutAside("is damaged: it is about no trial");
  leaveOnTrial();
  device.remove("/cfg1/.camcfg/contents");
  expectPutAside("is damaged: contents are missing");
}

TEST_F(TrialEndsTest, RollbackIsInTheSystemsLog) {
  if (std::filesystem::exists("/dev/log")) GTEST_SKIP() << "this system has a log of its own";
  device.makeDirectory("/dev");
  sockaddr_un address{AF_UNIX, ""};
  const std::string path = device.hostPath() + "/dev/log";
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  const tool::Descriptor log(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  ASSERT_EQ(bind(log.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(run(trying("1s")).status, 6);
  char text[1024] = {};
  ASSERT_GT(recv(log.get(), text, sizeof text - 1, MSG_DONTWAIT), 0);
  EXPECT_THAT(text, AllOf(HasSubstr("camcfg["), HasSubstr(kRolledBack)));
  EXPECT_LT(recv(log.get(), text, sizeof text - 1, MSG_DONTWAIT), 0);
}

}  // namespace
}  // namespace camcfg::tests
