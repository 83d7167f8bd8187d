#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "base/outcome.h"
#include "support/random_cases.h"
#include "tool/background.h"
#include "tool/commands/every_command.h"
#include "tool/unread_pipe.h"

namespace camcfg::tests {
namespace {

using tool::cli::Command;

void fillStandardOutput() {
  dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
}

void closeStandardOutput() {
  close(STDOUT_FILENO);
}

/// A standard output that nothing can be written to.
struct Broken {
  void (*inChild)();
  const char* reason;
};

constexpr Broken kFull = {fillStandardOutput, "No space left on device"};
constexpr Broken kClosed = {closeStandardOutput, "Bad file descriptor"};
constexpr Broken kUnread = {[] { leaveAPipeUnread(STDOUT_FILENO); }, "Broken pipe"};
constexpr Broken kBroken[] = {kFull, kClosed, kUnread};

constexpr char kTrialRecord[] = "/cfg1/.camcfg/trial";

class UnprintedTest : public EveryCommandTest {
 protected:
  std::string contents() const {
    std::string contents;
    for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml", "own.xml"})
      for (const std::string directory : {"/cfg0/", "/cfg1/"})
        if (device.exists(directory + name)) contents += device.read(directory + name);
    return contents + (device.exists(kTrialRecord) ? device.read(kTrialRecord) : "");
  }

  void expectInForce(const Command& command, const char* option, const Broken& output) const {
    Words line = lineFor(command);
    line.emplace_back(option);
    SCOPED_TRACE(lineOf(line));
    renewFor(command);
    const std::string renewed = contents();
    const ToolRun result = run(line, output.inChild);
    EXPECT_EQ(result.status, 5) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err,
                testing::HasSubstr(std::string("camcfg: ") + command.name +
                                   ": the change is in force, but could not be printed: standard "
                                   "output: " +
                                   output.reason + "\n"));
    EXPECT_TRUE(contents() != renewed);
  }

  void expectUnchanged(const Command& command) const {
    const Words line = lineFor(command);
    SCOPED_TRACE(lineOf(line));
    for (const Broken& output : {kFull, kClosed})
      EXPECT_EQ(runOnRenewed(line, output.inChild).status, static_cast<int>(command.whenRefused));
    EXPECT_EQ(runOnRenewed(line, kUnread.inChild).status, 128 + SIGPIPE);
    EXPECT_EQ(contents(), renewed_);
  }

  // A run on a device that is as it was.
  ToolRun runOnRenewed(const Words& line, const std::function<void()>& inChild) const {
    renew();
    return run(line, inChild);
  }

 private:
  const std::string renewed_ = contents();
};

// Others keep rules of their own.
bool answersOnce(const Command& command) {
  return !command.goesOn && !command.becomesProgram;
}

TEST_F(UnprintedTest, ChangeThatIsInForceHasAStatusOfItsOwn) {
  int number = 0;
  for (const Command* command : commands()) {
    if (!command->changesDevice || command->goesOn) continue;
    for (const Broken& output : kBroken)
      for (const char* option : {"--json", "-v"})
        if (isTried(++number)) expectInForce(*command, option, output);
  }
}

TEST_F(UnprintedTest, CommandThatChangesNothingIsRefusedOrEndedByTheSignal) {
  int number = 0;
  for (const Command* command : commands())
    if (!command->changesDevice && answersOnce(*command) && isTried(++number))
      expectUnchanged(*command);
}

// Its lines do not fit into the pipe, and nobody reads them.
TEST_F(UnprintedTest, InterruptedPrintingOfAChangeThatIsInForceHasThatStatusToo) {
  std::string presets = "id,description\n";
  for (int id = 10; id < 120; ++id)
    presets += std::to_string(id) + "," + std::string(60, 'x') + std::to_string(id) + "\n";
  const std::string path = device.hostPath() + "/long.csv";
  device.write("/long.csv", presets);
  const std::string document = run({"export"}).out;
  EXPECT_EQ(run({"preset", "import", path}).status, 0);
  const std::string changed = run({"export", "presets"}).out;
  device.write("/long.json", changed);
  device.write("/before.json", document);
  EXPECT_EQ(run({"import", device.hostPath() + "/before.json"}).status, 0);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    Background import({"--root", device.hostPath(), "import", device.hostPath() + "/long.json"},
                      [] {
                        for (const int ignored : {SIGINT, SIGTERM, SIGHUP})
                          std::signal(ignored, SIG_DFL);
                        int ends[2];
                        if (pipe(ends) != 0 || fcntl(ends[1], F_SETPIPE_SZ, 4096) < 0) _exit(1);
                        dup2(ends[1], STDOUT_FILENO);
                        close(ends[1]);
                      });
    for (int look = 0; look < 600 && run({"export", "presets"}).out != changed; ++look)
      usleep(20'000);
    usleep(300'000);
    EXPECT_EQ(import.end(number), 5);
    EXPECT_EQ(run({"export", "presets"}).out, changed);
    EXPECT_EQ(run({"import", device.hostPath() + "/before.json"}).status, 0);
  }
}

TEST_F(UnprintedTest, DryRunHasChangedNothing) {
  int number = 0;
  for (const Command* command : commands()) {
    Words line = lineFor(*command);
    for (const tool::cli::Option& option : command->options)
      if (option.name == std::string("--dry-run")) line.emplace_back(option.name);
    if (line.back() != "--dry-run" || !isTried(++number)) continue;
    SCOPED_TRACE(lineOf(line));
    EXPECT_EQ(runOnRenewed(line, fillStandardOutput).status, 1);
  }
}

TEST_F(UnprintedTest, ValueThatIsOnlyShownHasChangedNothing) {
  EXPECT_EQ(run({"system", "rtsp-port"}, fillStandardOutput).status, 1);
  EXPECT_EQ(run({"network", "hostname"}, fillStandardOutput).status, 1);
}

TEST_F(UnprintedTest, VerificationThatHasNothingToRestoreHasChangedNothing) {
  EXPECT_EQ(run({"verify", "--resync"}).status, 0);
  EXPECT_EQ(run({"verify", "--resync"}, fillStandardOutput).status, 1);
}

TEST_F(UnprintedTest, ChangeThatFailedInAnotherWayKeepsItsStatus) {
  for (const char* directory : {"/cfg0", "/cfg1", "/app/resource/defcfg"})
    device.write(std::string(directory) + "/preset_cfg.xml", "<Preset");
  const ToolRun result = run({"verify"}, fillStandardOutput);
  EXPECT_TRUE(device.exists("/cfg0/own.xml"));
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.err, testing::HasSubstr("camcfg: verify: /cfg0/preset_cfg.xml "));
  EXPECT_THAT(result.err, testing::EndsWith("camcfg: verify: standard output: No space left on "
                                            "device\n"));
}

TEST_F(UnprintedTest, RefusedChangeKeepsItsStatus) {
  for (const Broken& output : kBroken)
    for (const char* option : {"--json", "--color=never"})
      EXPECT_EQ(run({option, "set", "System", "Rtsp", "0"}, output.inChild),
                (ToolRun{1, "",
                         "camcfg: set: System/Rtsp: 0 is outside 1..65535; the nearest permitted "
                         "is 1\n"}));
}

TEST_F(UnprintedTest, StandardErrorThatCannotBeWrittenToChangesNoStatus) {
  const std::function<void()> broken[] = {[] { dup2(open("/dev/full", O_WRONLY), STDERR_FILENO); },
                                          [] { close(STDERR_FILENO); },
                                          [] { leaveAPipeUnread(STDERR_FILENO); }};
  for (const auto& inChild : broken) {
    EXPECT_EQ(run({"-v", "set", "System", "Rtsp", "8554"}, inChild).status, 0);
    EXPECT_EQ(run({"-v", "set", "System", "Rtsp", "0"}, inChild).status, 1);
    EXPECT_EQ(run({"status", "--bogus"}, inChild).status, 2);
    renew();
    const ToolRun unprinted = run({"-v", "set", "System", "Rtsp", "8554"}, [&] {
      inChild();
      fillStandardOutput();
    });
    EXPECT_EQ(unprinted, (ToolRun{5, "", ""}));
    renew();
  }
}

TEST_F(UnprintedTest, ProgramThatIsRunEndsByTheSignalAsEver) {
  EXPECT_EQ(
      run({"run", "sh", "-c", "kill -PIPE $$"}, [] { leaveAPipeUnread(STDERR_FILENO); }).status,
      128 + SIGPIPE);
  EXPECT_EQ(
      runCamcfg({"run", "sh", "-c", "kill -PIPE $$; exit 3"}, [] { std::signal(SIGPIPE, SIG_IGN); })
          .status,
      3);
}

}  // namespace
}  // namespace camcfg::tests
