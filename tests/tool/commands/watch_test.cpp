#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/inotify.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "tool/background.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

constexpr char kTime[] = "....-..-..T..:..:..\\....Z ";

std::string withRtsp(int port) {
  return with(kParameters, "Rtsp Cur=\"554\"", "Rtsp Cur=\"" + std::to_string(port) + "\"");
}

// For a child process: the kernel has no inotify from now on.
bool forgetInotify() {
  sock_filter program[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                           BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_inotify_init1, 0, 1),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
                           BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog filter{sizeof program / sizeof *program, program};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

class WatchTest : public MediaToolTest {
 protected:
  WatchTest() { writeBoth(kParameters); }

  std::vector<std::string> line(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--root", device.hostPath(), "watch"});
    return arguments;
  }

  // Changes a setting to and fro until a change is seen. What is seen after this is what a test does.
  void awaitStart(Background& watch) const {
    for (int port = 600; port < 900; ++port) {
      device.write(kBusiness, withRtsp(port));
      if (watch.shows("\n", 300)) break;
    }
    device.write(kBusiness, withRtsp(10000));
    ASSERT_TRUE(watch.shows("10000\n"));
    device.write(kBusiness, kParameters);
    ASSERT_TRUE(watch.shows("10000 -> 554\n"));
    watch.taken();
  }

  // Whether nothing but a last change is printed, which this makes.
  bool isSilentUntilChange(Background& watch) const {
    run({"set", "Image", "Brightness", "50"});
    EXPECT_TRUE(watch.shows("parameters.Image.Brightness: 0 -> 50\n"));
    return watch.taken().find("System") == std::string::npos;
  }

  std::string hostPath(const std::string& path) const { return device.hostPath() + path; }
};

TEST_F(WatchTest, PrintsAChangeMadeInPlaceOrByRename) {
  Background watch(line({}));
  awaitStart(watch);
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}).status, 0);
  ASSERT_TRUE(watch.shows("\n"));
  EXPECT_THAT(watch.taken(),
              MatchesRegex(kTime + std::string("parameters.System.Rtsp: 554 -> ") + "8554\n"));
  device.write("/cfg0/new", withRtsp(7000));
  fs::rename(hostPath("/cfg0/new"), hostPath(kBusiness));
  ASSERT_TRUE(watch.shows("\n"));
  EXPECT_THAT(watch.taken(), HasSubstr(" parameters.System.Rtsp: 8554 -> 7000\n"));
  // The file is another one now.
  device.write(kBusiness, withRtsp(7001));
  ASSERT_TRUE(watch.shows("\n"));
  EXPECT_THAT(watch.taken(), HasSubstr(" parameters.System.Rtsp: 7000 -> 7001\n"));
  EXPECT_EQ(watch.end(SIGTERM), 0);
}

TEST_F(WatchTest, AnswersInJsonAnObjectALine) {
  Background watch(line({"--json"}));
  for (int port = 600; port < 900 && !watch.shows("\n", 300); ++port)
    device.write(kBusiness, withRtsp(port));
  // A slow machine may show the next one as well, or begin with one.
  const std::string shown = watch.taken();
  EXPECT_THAT(shown.substr(0, shown.find('\n')),
              MatchesRegex("\\{\"time\":\"....-..-..T..:..:..\\....Z\",\"place\":"
                           "\"parameters.System.Rtsp\",\"before\":...,\"after\":...\\}"));
  EXPECT_EQ(watch.end(SIGINT), 0);
}

TEST_F(WatchTest, SaysNothingWhereOnlyBytesDiffer) {
  Background watch(line({}));
  awaitStart(watch);
  device.write(kBusiness, "<!-- seen -->\n\n" + std::string(kParameters) + "\n\n");
  EXPECT_FALSE(watch.shows("\n", 500));
  EXPECT_TRUE(isSilentUntilChange(watch));
}

TEST_F(WatchTest, NeverReportsAHalfWrittenFile) {
  Background watch(line({}));
  awaitStart(watch);
  const std::string changed = withRtsp(8554);
  // Also one that is well-formed as far as it was written.
  for (const std::size_t half : {changed.size() / 2, changed.find("<NetWork"), std::size_t{0}}) {
    device.write(kBusiness, changed.substr(0, half));
    EXPECT_FALSE(watch.shows("\n", 500));
  }
  device.write(kBusiness, changed);
  ASSERT_TRUE(watch.shows("\n"));
  EXPECT_THAT(watch.taken(),
              MatchesRegex(kTime + std::string("parameters.System.Rtsp: 554 -> ") + "8554\n"));
}

TEST_F(WatchTest, WaitsForTheEndOfASlowSave) {
  Background watch(line({}));
  awaitStart(watch);
  const std::string changed = with(withRtsp(8554), "<NetWork", "<Last/>\n<NetWork");
  const std::size_t whole = changed.find("<Last/>");
  device.remove(kBusinessBackup);
  std::ofstream file(hostPath(kBusiness), std::ios::trunc);
  file << changed.substr(0, whole) << std::flush;
  EXPECT_FALSE(watch.shows("\n", 500));
  file << changed.substr(whole) << std::flush;
  file.close();
  ASSERT_TRUE(watch.shows("\n"));
  EXPECT_THAT(watch.taken(),
              MatchesRegex(kTime + std::string("parameters.System.Rtsp: 554 -> ") + "8554\n"));
}

// For three seconds after a change a file that is kept open counts as being written.
TEST_F(WatchTest, ReadsAFileThatAProgramKeepsOpenFromBeforeItsStart) {
  std::ofstream file(hostPath(kBusiness), std::ios::trunc);
  file << kParameters << std::flush;
  Background watch(line({}));
  std::this_thread::sleep_for(std::chrono::seconds(6));
  watch.taken();
  file.seekp(0);
  file << withRtsp(555) << std::flush;
  EXPECT_TRUE(watch.shows("parameters.System.Rtsp: 554 -> 555\n", 10000));
}

TEST_F(WatchTest, SurvivesADirectoryThatGoesAndComesBack) {
  Background watch(line({}));
  awaitStart(watch);
  fs::rename(hostPath("/cfg0"), hostPath("/away"));
  EXPECT_TRUE(watch.says("business_param.xml is missing; waiting until it can be read\n"));
  device.write("/away/business_param.xml", withRtsp(8554));
  fs::rename(hostPath("/away"), hostPath("/cfg0"));
  EXPECT_TRUE(watch.shows("554 -> 8554\n"));
  device.remove("/cfg0");
  EXPECT_FALSE(watch.shows("8555", 300));
  device.write(kBusiness, withRtsp(8555));
  EXPECT_TRUE(watch.shows("8554 -> 8555\n"));
  device.write(kBusiness, withRtsp(8556));
  EXPECT_TRUE(watch.shows("8555 -> 8556\n"));
}

TEST_F(WatchTest, SeesWhatIsRestoredAndReset) {
  device.write(kBusinessDefault, withRtsp(777));
  Background watch(line({}));
  awaitStart(watch);
  device.write(kBusinessBackup, withRtsp(8554));
  device.write(kBusiness, "<Sys");
  EXPECT_EQ(run({"verify"}).status, 0);
  EXPECT_TRUE(watch.shows("parameters.System.Rtsp: 554 -> 8554\n"));
  EXPECT_EQ(run({"reset", "System", "Rtsp"}).status, 0);
  EXPECT_TRUE(watch.shows("parameters.System.Rtsp: 8554 -> 777\n"));
}

TEST_F(WatchTest, JoinsTheSavesOfABurst) {
  Background watch(line({"--exec", "echo burst"}));
  awaitStart(watch);
  device.write(kBusiness, withRtsp(555));
  ASSERT_TRUE(watch.shows("554 -> 555\nburst\n"));
  watch.taken();
  watch.signal(SIGSTOP);
  for (const int port : {1, 2, 3}) device.write(kBusiness, withRtsp(port));
  device.write(kBusiness, with(withRtsp(3), "Brightness Cur=\"0\"", "Brightness Cur=\"5\""));
  watch.signal(SIGCONT);
  ASSERT_TRUE(watch.shows("burst\n"));
  EXPECT_THAT(watch.taken(),
              MatchesRegex(kTime + std::string("parameters.System.Rtsp: 555 -> 3\n") + kTime +
                           "parameters.Image.Brightness: 0 -> 5\nburst\n"));
}

TEST_F(WatchTest, SurvivesAnOverflowOfTheKernelsQueue) {
  Background watch(line({}));
  awaitStart(watch);
  int most = 0;
  std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> most;
  if (most == 0 || most > 100'000) most = 100'000;
  watch.signal(SIGSTOP);
  // Two names by turns: events that are the same as the one before do not count.
  const int one = open(hostPath(kBusiness).c_str(), O_WRONLY);
  const int other = open(hostPath(kMpp).c_str(), O_WRONLY);
  for (int i = 0; i < most; ++i) {
    EXPECT_EQ(pwrite(i % 2 == 0 ? one : other, "<", 1, 0), 1);
  }
  close(one);
  close(other);
  device.write(kBusiness, withRtsp(8554));
  watch.signal(SIGCONT);
  EXPECT_TRUE(watch.shows("parameters.System.Rtsp: 554 -> 8554\n"));
  device.write(kBusiness, withRtsp(8555));
  EXPECT_TRUE(watch.shows("parameters.System.Rtsp: 8554 -> 8555\n"));
}

TEST_F(WatchTest, LooksOnceASecondWithoutInotify) {
  const pid_t tried = fork();
  if (tried == 0) _exit(forgetInotify() && inotify_init1(0) < 0 ? 0 : 1);
  int status = 0;
  waitpid(tried, &status, 0);
  if (status != 0) GTEST_SKIP() << "no system call can be taken away here";
  Background watch(line({}), [] { forgetInotify(); });
  awaitStart(watch);
  EXPECT_TRUE(isSilentUntilChange(watch));
  EXPECT_EQ(watch.end(SIGTERM), 0);
}

// What the kernel counted of a process: how often it waited and how long it worked.
std::string effortOf(pid_t process) {
  const std::string directory = "/proc/" + std::to_string(process);
  std::ifstream status(directory + "/status");
  std::string effort;
  for (std::string row; std::getline(status, row);)
    if (row.find("voluntary_ctxt_switches") == 0) effort = row;
  std::ifstream stat(directory + "/stat");
  std::string word;
  for (int i = 1; i <= 15 && stat >> word; ++i)
    if (i > 13) effort += " " + word;
  return effort;
}

TEST_F(WatchTest, DoesNothingWhileNothingHappens) {
  give(kMedia);
  device.write("/cfg0/preset_cfg.xml", "<PresetCfg/>\n");
  Background watch(line({}));
  awaitStart(watch);
  usleep(1'500'000);
  const std::string before = effortOf(watch.process());
  usleep(2'500'000);
  EXPECT_EQ(effortOf(watch.process()), before);
  device.write(kBusiness, withRtsp(8554));
  EXPECT_TRUE(watch.shows("554 -> 8554\n"));
  EXPECT_NE(effortOf(watch.process()), before);
}

TEST_F(WatchTest, MasksPasswordsUnlessAsked) {
  give(kMedia);
  Background watch(line({}));
  Background open(line({"--show-secrets", "live"}));
  awaitStart(watch);
  device.write("/new.json", with(run({"export", "live"}).out, "secret", "other"));
  EXPECT_EQ(run({"import", hostPath("/new.json")}).status, 0);
  EXPECT_TRUE(watch.shows("ssword: ******** -> ********\n"));
  EXPECT_TRUE(open.shows("ssword: secret -> other\n", 5000));
  EXPECT_THAT(watch.taken(), Not(HasSubstr("secret")));
}

TEST_F(WatchTest, GivesTheChangesToACommand) {
  Background watch(line({"--exec", "sed 's/^/got /'; exit 3"}));
  awaitStart(watch);
  EXPECT_TRUE(watch.says("camcfg: watch: 'sed 's/^/got /'; exit 3' ended with status 3\n"));
  device.write(kBusiness, withRtsp(8554));
  ASSERT_TRUE(watch.shows("got "));
  ASSERT_TRUE(watch.shows("8554\ngot "));
  EXPECT_TRUE(watch.shows("Rtsp: 554 -> 8554\n"));
  EXPECT_EQ(watch.end(SIGTERM), 0);
}

TEST_F(WatchTest, EndsWhileItsCommandGoesOn) {
  Background watch(line({"--exec", "echo begun; sleep 300"}));
  for (int port = 600; port < 900 && !watch.shows("begun\n", 300); ++port)
    device.write(kBusiness, withRtsp(port));
  EXPECT_EQ(watch.end(SIGTERM), 0);
}

TEST_F(WatchTest, EndsWhenNobodyReadsItAnyLonger) {
  Background watch(line({}));
  awaitStart(watch);
  watch.stopReading();
  EXPECT_EQ(watch.end(), 128 + SIGPIPE);
}

TEST_F(WatchTest, ReportsOnlyThePlacesThatAreNamed) {
  struct Case {
    std::vector<std::string> places;
    bool rtsp;
    bool brightness;
  };
  for (const Case& each :
       {Case{{"System"}, true, false}, Case{{"System", "Rtsp"}, true, false},
        Case{{"System Rtsp"}, true, false}, Case{{"System/Rtsp", "Image"}, true, true},
        Case{{"System", "RtspOverHttp", "Image", "Brightness"}, false, true},
        Case{{"parameters.Image.Brightness"}, false, true}, Case{{"parameters"}, true, true},
        Case{{"NetWork", "Image"}, false, true}}) {
    writeBoth(kParameters);
    std::vector<std::string> words = each.places;
    words.insert(words.begin(), "--json");
    words.push_back("NetWork");
    Background watch(line(words));
    const std::string hostname = "Hostname=\"gate";
    for (int i = 0; i < 300 && !watch.shows("network.hostname", 300); ++i)
      device.write(kBusiness, with(kParameters, hostname, hostname + std::to_string(i)));
    watch.taken();
    device.write(kBusiness,
                 with(with(withRtsp(8554), "Brightness Cur=\"0\"", "Brightness Cur=\"5\""),
                      hostname, hostname + "-end"));
    EXPECT_TRUE(watch.shows("-end\"}\n"));
    const std::string printed = watch.taken();
    EXPECT_EQ(printed.find("System.Rtsp") != std::string::npos, each.rtsp) << printed;
    EXPECT_EQ(printed.find("Brightness") != std::string::npos, each.brightness) << printed;
  }
}

TEST_F(WatchTest, RefusesAPlaceThatCannotBe) {
  EXPECT_EQ(
      run({"watch", "Sytem"}),
      (ToolRun{2, "", "camcfg: watch: there is no section 'Sytem'; did you mean 'System'?\n"}));
  EXPECT_EQ(run({"watch", "live.str"}),
            (ToolRun{2, "",
                     "camcfg: watch: there is no section 'live.str'; did you mean 'live.srt'?\n"}));
  EXPECT_EQ(
      run({"watch", "NetWork/Eth0"}),
      (ToolRun{2, "",
               "camcfg: watch: there is no section 'NetWork/Eth0'; did you mean 'NetWork'?\n"}));
  EXPECT_EQ(
      run({"watch", "System", "Rstp"}),
      (ToolRun{1, "",
               "camcfg: watch: section System has no parameter 'Rstp'; did you mean 'Rtsp'?\n"}));
}

TEST_F(WatchTest, WaitsForADeviceThatCannotBeRead) {
  device.remove("/cfg0");
  Background watch(line({}));
  EXPECT_TRUE(
      watch.says("camcfg: watch: /cfg0/business_param.xml is missing; waiting until it can "
                 "be read\n"));
  awaitStart(watch);
}

}  // namespace
}  // namespace camcfg::tests
