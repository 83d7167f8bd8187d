#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tool/as_nobody.h"
#include "tool/cli/exit_statuses.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

TEST(ProgramTest, VersionIsAnAnswer) {
  EXPECT_EQ(runCamcfg({"--version"}), (ToolRun{0, "camcfg 1.0.0\n", ""}));
}

TEST(ProgramTest, HelpListsEveryCommandUnderItsGroup) {
  const ToolRun help = runCamcfg({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  for (const char* line :
       {"\nFiles:\n  status ", "\n  verify ", "\n  reset ", "\nParameters:\n  list ", "\n  get ",
        "\n  set ", "\n  describe ", "\nSystem:\n  system ", "\nStreams:\n  stream ",
        "\nLive media:\n  live ", "\n  graph ", "\nTexts:\n  lang ", "\n  --root DIR ",
        "\n  --json ", "\n  -v,--verbose ", "\n  --version "})
    EXPECT_THAT(help.out, testing::HasSubstr(line));
}

TEST(ProgramTest, HelpListsEveryExitStatus) {
  const std::string help = runCamcfg({"--help"}).out;
  for (const char* line :
       {"\nExit status:\n  0  done\n", "\n  1  refused", "\n  2  the command line",
        "\n  3  the device's files", "\n  4  status, boot: ", "\n  5  the change is in force"})
    EXPECT_THAT(help, testing::HasSubstr(line));
}

TEST(ProgramTest, HelpOfACommandListsThoseBelowIt) {
  EXPECT_EQ(runCamcfg({"system", "--help"}),
            (ToolRun{0,
                     "Show the device's name, language and ports\n"
                     "Usage: camcfg system [OPTIONS] [COMMAND]\n"
                     "\n"
                     "Options:\n"
                     "  -h,--help                   Show this help\n"
                     "\n"
                     "Commands:\n"
                     "  http-port                   Show or set the HTTP port\n"
                     "  https-port                  Show or set the HTTPS port\n"
                     "  rtsp-port                   Show or set the RTSP port\n"
                     "  rtsp-over-http-port         Show or set the port of RTSP over HTTP\n"
                     "\n" +
                         std::string(kHelpEnd) +
                         "\n"
                         "Examples:\n"
                         "  camcfg system\n",
                     ""}));
}

TEST(ProgramTest, UsageErrorsHaveStatusTwoAndAnswerNothing) {
  EXPECT_EQ(runCamcfg({}), (ToolRun{2, "", "camcfg: a command is missing; see 'camcfg --help'\n"}));
  EXPECT_EQ(runCamcfg({"sett"}),
            (ToolRun{2, "", "camcfg: unknown command 'sett'; did you mean 'set'?\n"}));
  EXPECT_EQ(runCamcfg({"set", "System"}),
            (ToolRun{2, "", "camcfg: set: which value? give System=VALUE\n"}));
  EXPECT_EQ(runCamcfg({"set"}),
            (ToolRun{2, "", "camcfg: set: PLACE=VALUE is required; see 'camcfg set --help'\n"}));
  EXPECT_EQ(
      runCamcfg({"list", "--frobnicate"}),
      (ToolRun{2, "", "camcfg: list: unknown option '--frobnicate'; see 'camcfg list --help'\n"}));
  EXPECT_EQ(runCamcfg({"list", "--colour"}),
            (ToolRun{2, "", "camcfg: list: unknown option '--colour'; did you mean '--color'?\n"}));
}

TEST(ProgramTest, LineBreaksInWhatWasTypedStayOnTheLine) {
  EXPECT_EQ(runCamcfg({"se\nt\x1b"}).err,
            "camcfg: unknown command 'se\\nt\\x1b'; see 'camcfg --help'\n");
}

TEST(ProgramTest, RootThatIsNoDirectoryIsRefused) {
  EXPECT_EQ(runCamcfg({"--root", "/no/such", "list"}),
            (ToolRun{1, "", "camcfg: --root /no/such: No such file or directory\n"}));
  EXPECT_EQ(runCamcfg({"--root", "/dev/null", "list"}),
            (ToolRun{1, "", "camcfg: --root /dev/null: Not a directory\n"}));
}

TEST(ProgramTest, EmptyRootIsNotTakenForTheRunningSystem) {
  EXPECT_EQ(runCamcfg({"--root", "", "list"}),
            (ToolRun{1, "", "camcfg: --root : No such file or directory\n"}));
}

TEST(ProgramTest, HelpOnACommandListsTheStatusesThatItCanEndWith) {
  const std::string changed = "\n  5  the change is in force, but could not be printed\n";
  EXPECT_THAT(runCamcfg({"set", "--help"}).out, testing::HasSubstr(changed + "\nExamples:\n"));
  EXPECT_THAT(runCamcfg({"graph", "--help"}).out,
              testing::HasSubstr("\n  4  a part could not be read and is left out\n"));
  EXPECT_THAT(runCamcfg({"network", "cards", "--help"}).out, testing::HasSubstr(kHelpEnd));
  EXPECT_THAT(runCamcfg({"lang", "--help"}).out, testing::Not(testing::HasSubstr(changed)));
}

TEST_F(ParametersTest, RootMayBeRelative) {
  EXPECT_EQ(runCamcfg({"--root", ".", "get", "System", "Rtsp"},
                      [this] {
                        if (chdir(device.hostPath().c_str()) != 0) _exit(1);
                      }),
            (ToolRun{0, "554\n", ""}));
}

TEST_F(ParametersTest, UserWithoutPrivilegesWorksOnADeviceOfHisOwn) {
  const Nobody nobody(device);
  const std::string why = nobody.whyNotEnter();
  if (!why.empty()) {
    EXPECT_EQ(nobody.run({"set", "System", "Rtsp", "8554"}),
              (ToolRun{1, "", "camcfg: --root " + device.hostPath() + ": " + why + "\n"}));
    return;
  }
  EXPECT_EQ(nobody.run({"set", "System", "Rtsp", "8554"}),
            (ToolRun{0, "System/Rtsp: 554 -> 8554\n", ""}));
  EXPECT_EQ(device.read(kBusinessBackup),
            with(kParameters, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\""));
}

TEST_F(ParametersTest, AnswerThatCannotBeWrittenIsNoSuccess) {
  EXPECT_EQ(run({"list"},
                [] {
                  const int full = open("/dev/full", O_WRONLY);
                  dup2(full, STDOUT_FILENO);
                }),
            (ToolRun{1, "", "camcfg: list: standard output: No space left on device\n"}));
}

TEST_F(ParametersTest, ClosedStandardOutputIsNotReplacedByAConfigurationFile) {
  EXPECT_EQ(run({"-v", "set", "System", "Rtsp", "8554"}, [] { close(STDOUT_FILENO); }),
            (ToolRun{5, "",
                     "camcfg: set: the change is in force, but could not be printed: standard "
                     "output: Bad file descriptor\n"}));
  EXPECT_EQ(device.read(kBusiness), with(kParameters, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\""));
}

TEST_F(ParametersTest, ClosedStandardErrorDoesNotHarm) {
  EXPECT_EQ(run({"-v", "get", "System", "Rtsp"}, [] { close(STDERR_FILENO); }),
            (ToolRun{0, "554\n", ""}));
}

}  // namespace
}  // namespace camcfg::tests
