#include <csignal>
#include <filesystem>

#include "tool/as_nobody.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;

class RunTest : public ParametersTest {
 protected:
  void SetUp() override {
    const ToolRun sample = run({"run", "true"});
    if (sample.status != 0) GTEST_SKIP() << sample.err;
  }

  ToolRun runShell(const std::string& script) const { return run({"run", "sh", "-c", script}); }
};

// Also where nothing may be mounted.
class RunRefusalTest : public ParametersTest {};

TEST_F(RunTest, ProgramSeesTheDevicesSettingsInTheirPlaces) {
  EXPECT_EQ(run({"run", "cat", kBusiness}), (ToolRun{0, kParameters, ""}));
  device.write("/run/camcfg/lock", "device's");
  EXPECT_EQ(run({"run", "cat", "/run/camcfg/lock"}), (ToolRun{0, "device's", ""}));
}

TEST_F(RunTest, ChangesArriveInTheDevice) {
  EXPECT_EQ(runShell("echo changed > /cfg1/note").status, 0);
  EXPECT_EQ(device.read("/cfg1/note"), "changed\n");
}

// The tool itself is such a program: it finds its library, and no "--root" is needed any more.
TEST_F(RunTest, ProgramFindsItsLibraries) {
  std::vector<std::string> words = camcfgCommand({"set", "System", "Rtsp", "8554"});
  words.insert(words.begin(), "run");
  EXPECT_EQ(run(words), (ToolRun{0, "System/Rtsp: 554 -> 8554\n", ""}));
  EXPECT_EQ(run({"get", "System", "Rtsp"}).out, "8554\n");
}

TEST_F(RunTest, EverythingElseIsThisSystems) {
  device.write("/app/own", "");
  const testkit::DeviceRoot other(testkit::DeviceRoot::StayOut);
  other.write("/file", "host's");
  EXPECT_EQ(run({"run", "cat", other.hostPath() + "/file"}).out, "host's");
  EXPECT_EQ(run({"run", "cat", device.hostPath() + kBusiness}).out, kParameters);
  EXPECT_EQ(runShell("ls -A / | grep -vxE 'cfg0|cfg1|app'").out,
            runCommand({"sh", "-c", "ls -A / | grep -vxE 'cfg0|cfg1|app'"}).out);
}

TEST_F(RunTest, UserAndDirectoryStay) {
  EXPECT_EQ(runShell("pwd; id -u; id -g").out, runCommand({"sh", "-c", "pwd; id -u; id -g"}).out);
}

TEST_F(RunTest, NothingStaysMountedOrIsLeft) {
  const std::vector<std::string> list = {"sh", "-c", "cat /proc/self/mounts; ls -A /"};
  const std::string before = runCommand(list).out;
  EXPECT_THAT(runShell("cat /proc/self/mounts").out, HasSubstr(" /cfg0 "));
  EXPECT_EQ(runCommand(list).out, before);
  EXPECT_THAT(device.list("/"), testing::ElementsAre("app", "cfg0", "cfg1"));
}

TEST_F(RunTest, ExitStatusAndOutputsAreThePrograms) {
  EXPECT_EQ(runShell("echo out; echo err >&2; exit 42"), (ToolRun{42, "out\n", "err\n"}));
}

TEST_F(RunTest, SignalEndsItAsItEndsTheProgram) {
  EXPECT_EQ(runShell("kill -TERM $$").status, 128 + SIGTERM);
}

TEST_F(RunTest, SignalsAreNotIgnored) {
  EXPECT_EQ(runShell("kill -XFSZ $$").status, 128 + SIGXFSZ);
}

TEST_F(RunTest, StandardInputIsThePrograms) {
  std::vector<std::string> words = camcfgCommand({"--root", device.hostPath(), "run", "cat"});
  words.insert(words.begin(), {"sh", "-c", "echo words | \"$@\"", "-"});
  EXPECT_EQ(runCommand(words), (ToolRun{0, "words\n", ""}));
}

TEST_F(RunTest, ArgumentsAreNotTheTools) {
  EXPECT_EQ(run({"run", "printf", "[%s]", "--help", "--root", "", "a b", "--", "-v", "--json"}).out,
            "[--help][--root][][a b][--][-v][--json]");
}

TEST_F(RunTest, OptionsOfTheToolMayBeBeforeTheProgram) {
  EXPECT_EQ(runCamcfg({"run", "--root", device.hostPath(), "--", "cat", kBusiness}).out,
            kParameters);
}

TEST_F(RunTest, ScriptIsRunByItsInterpreter) {
  device.write("/script", "#!/bin/sh\necho \"$1\" of $0\n");
  const std::string script = device.hostPath() + "/script";
  EXPECT_EQ(run({"run", script, "one"}),
            (ToolRun{126, "", "camcfg: run: " + script + ": Permission denied\n"}));
  std::filesystem::permissions(script, std::filesystem::perms(0755));
  EXPECT_EQ(run({"run", script, "one"}), (ToolRun{0, "one of " + script + "\n", ""}));
}

TEST_F(RunTest, ProgramThatDoesNotExistIsReported) {
  EXPECT_EQ(run({"run", "no-such-program", "a"}),
            (ToolRun{127, "", "camcfg: run: no-such-program: No such file or directory\n"}));
  EXPECT_EQ(run({"run", "/tmp"}), (ToolRun{126, "", "camcfg: run: /tmp: Permission denied\n"}));
}

TEST_F(RunRefusalTest, WithoutARootThisSystemIsTheDevice) {
  EXPECT_EQ(runCamcfg({"run", "sh", "-c", "echo $1; exit 3", "-", "--json"}),
            (ToolRun{3, "--json\n", ""}));
}

TEST_F(RunRefusalTest, DirectoryThatIsNoDeviceIsRefused) {
  device.remove("/cfg0");
  device.remove("/app");
  EXPECT_EQ(run({"run", "true"}),
            (ToolRun{125, "",
                     "camcfg: run: --root " + device.hostPath() +
                         ": there is no device: neither cfg0 nor app is there\n"}));
  EXPECT_EQ(runCamcfg({"--root", "/no/such", "run", "true"}),
            (ToolRun{125, "", "camcfg: run: --root /no/such: No such file or directory\n"}));
}

TEST_F(RunRefusalTest, ProgramIsRequired) {
  EXPECT_EQ(run({"run"}),
            (ToolRun{2, "", "camcfg: run: PROGRAM is required; see 'camcfg run --help'\n"}));
}

TEST_F(RunRefusalTest, OrdinaryUserRunsPrograms) {
  const Nobody nobody(device);
  const std::string fault = nobody.whyNotEnter();
  const ToolRun ran = nobody.run({"run", "sh", "-c", "echo $1 > /cfg0/note; exit 5", "-", "word"});
  if (!fault.empty()) {
    EXPECT_EQ(ran,
              (ToolRun{125, "", "camcfg: run: --root " + device.hostPath() + ": " + fault + "\n"}));
    return;
  }
  EXPECT_EQ(ran, (ToolRun{5, "", ""}));
  EXPECT_EQ(device.read("/cfg0/note"), "word\n");
}

// Where namespaces have run out, it is said which setting gives them.
TEST_F(RunRefusalTest, WithoutUserNamespacesThatIsSaid) {
  const std::string script =
      "echo 0 > /proc/sys/user/max_user_namespaces && exec setpriv --bounding-set -all "
      "--inh-caps -all -- \"$@\"";
  const ToolRun ran = runCommand({"unshare", "--user", "--map-root-user", "sh", "-c", script, "-",
                                  CAMCFG_TOOL, "--root", device.hostPath(), "run", "true"});
  if (ran.status != 125) GTEST_SKIP() << "needs user namespaces, unshare and setpriv: " << ran.err;
  EXPECT_EQ(ran.err, "camcfg: run: --root " + device.hostPath() +
                         ": needs root, or permission to make a user namespace: 'sudo sysctl "
                         "user.max_user_namespaces=10000' gives it\n");
}

}  // namespace
}  // namespace camcfg::tests
