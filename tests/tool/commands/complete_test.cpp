#include <sys/stat.h>

#include <cstdlib>

#include "tool/media_tool_test.h"
#include "tool/terminal.h"

namespace camcfg::tests {
namespace {

constexpr char kBreaks[] = " \t\n\"'@><=;|&(:";
constexpr char kNamedPresets[] =
    "<PresetCfg>\n"
    "    <preset Id=\"3\" Description=\"Dock\"/>\n"
    "    <preset Id=\"7\" Description=\"North Gate\"/>\n"
    "    <preset Id=\"8\" Description=\"Joe&apos;s $5; &quot;x&quot;\"/>\n"
    "    <preset Id=\"9\" Description=\"a&#10;b\"/>\n"
    "</PresetCfg>\n";
constexpr char kTexts[] = "<Texts><MenuLive Txt=\"Live\"/><MenuSetup Txt=\"Setup\"/></Texts>\n";

/// A device with something of everything, and the tool under its own name in "/bin" there.
class CompleteTest : public MediaToolTest {
 protected:
  CompleteTest() {
    writeBoth(kParameters);
    device.write("/cfg0/preset_cfg.xml", kNamedPresets);
    device.write("/app/resource/language/English.xml", kTexts);
    device.write("/bin/camcfg",
                 "#!/bin/sh\n"
                 "if test \"$1\" != complete; then\n"
                 "  printf '%s\\n' \"$@\" >\"$RAN.new\" && mv \"$RAN.new\" \"$RAN\"; exit\n"
                 "fi\n"
                 "exec " CAMCFG_EMULATOR " " CAMCFG_TOOL " \"$@\"\n");
    chmod((device.hostPath() + "/bin/camcfg").c_str(), 0755);
  }

  /// What bash is given at the end of a line after "camcfg --root DEVICE ".
  std::string atBash(const std::string& line) const {
    return runCamcfg({"complete", "bash", "--", "camcfg --root " + device.hostPath() + " " + line,
                      kBreaks})
        .out;
  }

  /// For the child process of a shell: the tool by its name, quiet and without anybody's settings.
  void prepareShell() const {
    const std::string path = device.hostPath() + "/bin:" + getenv("PATH");
    setenv("PATH", path.c_str(), 1);
    setenv("HOME", device.hostPath().c_str(), 1);
    setenv("RAN", (device.hostPath() + "/ran").c_str(), 1);
    setenv("TERM", "dumb", 1);
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    if (chdir(device.hostPath().c_str()) != 0) _exit(1);
  }

  /// Types at an interactive shell, and returns the words that the tool was then run with.
  std::string ranAt(const std::vector<const char*>& shell, const std::string& keys) const {
    device.remove("/ran");
    Terminal terminal([&] {
      prepareShell();
      std::vector<char*> words;
      for (const char* word : shell) words.push_back(const_cast<char*>(word));
      words.push_back(nullptr);
      execvp(words.front(), words.data());
      _exit(127);
    });
    terminal.type(keys + "\rexit\r");
    const std::string shown = terminal.readToEnd();
    return device.exists("/ran") ? device.read("/ran") : "the tool was not run:\n" + shown;
  }

  /// Types lines with the Tab key at an interactive shell.
  /// @param load  makes the shell know the completion
  void expectCompletes(const std::vector<const char*>& shell, const std::string& load) const {
    struct Typed {
      const char* keys;
      const char* ran;
    };
    constexpr Typed kTyped[] = {
        {"--root . get Sys\tRtspO\t", "--root\n.\nget\nSystem\nRtspOverHttp\n"},
        {"--root=. preset get Jo\t", "--root=.\npreset\nget\nJoe's $5; \"x\"\n"},
        {"--root . preset get 'Jo\t", "--root\n.\npreset\nget\nJoe's $5; \"x\"\n"},
        {"graph --format=s\t--ro\t./ap\tx", "graph\n--format=svg\n--root\n./app/x\n"},
        {"import my\t", "import\nmy document.json\n"}};
    device.write("/my document.json", "{}");
    for (const Typed& typed : kTyped)
      EXPECT_EQ(ranAt(shell, load + "\rcamcfg " + typed.keys), typed.ran) << typed.keys;
  }
};

struct Row {
  const char* line;
  const char* answer;
};

TEST_F(CompleteTest, WordsAreThoseOfTheDevice) {
  const Row rows[] = {
      {"get ", "words\nSystem\nImage\nNetWork\n"},
      {"get S", "words\nSystem\n"},
      {"get System Rt", "words\nRtsp\nRtspOverHttp\n"},
      {"get System 'Rtsp", "words\nRtsp\nRtspOverHttp\n"},
      {"get NetWork Eth0/", "words\nEth0/IpAddr\n"},
      {"get Nowhere ", "words\n"},
      {"describe B", "words\nBrightness\n"},
      {"set Image Mode ", "words\nAuto\nHalf-Auto\nManual\n"},
      {"set Image Brightness ", "words\n"},
      {"list I", "words\nImage\n"},
      {"network show ", "words\nEth0\n"},
      {"network set Eth0 Dns", "words\nDnsMode\nDns1\nDns2\nDnsSearch\n"},
      {"network set Eth0 ipmode ", "words\nDhcpIp\nStaticIp\n"},
      {"network set Eth0 mode=", "words\ndhcp\nstatic\n"},
      {"network set Eth0 mtu=1400 g", "words\ngateway=\n"},
      {"network hostname ", "words\n"},
      {"preset get ", "words\n3\n7\n8\n9\nDock\nNorth\\ Gate\nJoe\\'s\\ \\$5\\;\\ \\\"x\\\"\n"},
      {"preset get N", "words\nNorth\\ Gate\n"},
      {"preset get \"North G", "words\nNorth Gate\n"},
      {"preset get North\\ G", "words\nNorth\\ Gate\n"},
      {"preset get 'J", "words\nJoe'\\''s $5; \"x\"\n"},
      {"preset get \"J", "words\nJoe's \\$5; \\\"x\\\"\n"},
      {"preset set D", "words\nDock\n"},
      {"set Ima", "words\nImage\nImage/Brightness=\nImage/Mode=\n"},
      {"set Image/Mode=Auto System/Rts", "words\nSystem/Rtsp=\nSystem/RtspOverHttp=\n"},
      {"stream cache ", "words\nadd\nset\ndelete\n0\n7\n"},
      {"stream cache set ", "words\n0\n7\n"},
      {"stream cache set 0 s", "words\nsize=\n"},
      {"stream source add 9 k", "words\nkind=VENC\nkind=AI\nkind=AENC\n"},
      {"live srt delete ", "words\n0\n1\n"},
      {"live rtmp set 0 enabled=", "words\nyes\nno\n"},
      {"stream cache 0 ", "words\nselect\ndefault\nallow\n"},
      {"stream cache 0 select ", "words\n0\n2\n"},
      {"stream cache 7 default ", "words\n1\n2\n"},
      {"stream cache 7 allow 1 ", "words\n0\n1\n2\n"},
      {"live ", "words\nwebsocket\nrtsp\nrtmp\nndi\nsrt\n"},
      {"lang ", "words\nEnglish\n"},
      {"lang English MenuS", "words\nMenuSetup\n"},
      {"lang Latin ", "words\n"},
      {"export live.r", "words\nlive.rtsp\nlive.rtmp\n"},
      {"graph --format ", "words\ndot\nsvg\n"},
      {"graph --format=s", "words\nsvg\n"},
      {"graph --format='s", "words\nsvg\n"},
      {"preset export --format ", "words\ncsv\njson\n"},
      {"preset exp", "words\nexport\n"},
      {"preset set 3 --fo", "words\n--focus\n--focus-mode\n--force\n"},
      {"get --ver", "words\n--verbose\n--version\n"},
      {"help exit", "words\nexit-status\n"},
      {"help stream cache al", "words\nallow\n"},
      {"import ", "files\n"},
      {"try re", "words\nreset\n"},
      {"try ge", "words\n"},
      {"try --f", "words\n--for\n--force\n"},
      {"try --for 1s -- net", "words\nnetwork\n"},
      {"try --for 1s network h", "words\nhostname\n"},
      {"try -- set Image Mode M", "words\nManual\n"},
      {"try -- import --dry", "words\n--dry-run\n"},
      {"preset import pre", "files\n"},
      {"verify --keep-damaged ", "directories\n"},
      {"--root=/", "directories\n"},
      {"compl", "words\n"},
  };
  for (const Row& row : rows) EXPECT_EQ(atBash(row.line), row.answer) << row.line;
}

TEST_F(CompleteTest, DeviceThatCannotBeReadOffersNothingAndSaysNothing) {
  device.write(kBusiness, "<System>");
  const ToolRun nothing{0, "words\n", ""};
  EXPECT_EQ(runCamcfg({"complete", "bash", "--", "camcfg --root " + device.hostPath() + " get ",
                       kBreaks}),
            nothing);
  EXPECT_EQ(runCamcfg({"complete", "bash", "--", "camcfg --root /no/such get ", kBreaks}), nothing);
  EXPECT_EQ(runCamcfg({"complete", "zsh", "--", "--root", device.hostPath(), "get", ""}), nothing);
  device.remove(kBusiness);
  device.makeDirectory(kBusiness);
  EXPECT_EQ(runCamcfg({"complete", "zsh", "--", "--root", device.hostPath(), "get", ""}), nothing);
}

TEST_F(CompleteTest, CommandsAndOptionsNeedNoDevice) {
  EXPECT_EQ(runCamcfg({"complete", "bash", "--", "camcfg --root /no/such des", kBreaks}).out,
            "words\ndescribe\n");
  EXPECT_EQ(runCamcfg({"complete", "bash", "--", "camcfg --root /no/such lang --js", kBreaks}).out,
            "words\n--json\n");
}

TEST_F(CompleteTest, OnlyTheFileThatHoldsTheWordsIsLoaded) {
  device.write(kMpp, "<damaged");
  device.remove("/cfg0/preset_cfg.xml");
  EXPECT_EQ(atBash("get Im"), "words\nImage\n");
  EXPECT_EQ(atBash("preset get "), "words\n");
}

TEST_F(CompleteTest, DirectoryOfTheUserStandsForATilde) {
  const auto withHome = [this] { setenv("HOME", (device.hostPath() + "/..").c_str(), 1); };
  const std::string name = device.hostPath().substr(device.hostPath().rfind('/'));
  EXPECT_EQ(
      runCamcfg({"complete", "bash", "--", "camcfg --root ~" + name + " get Im", kBreaks}, withHome)
          .out,
      "words\nImage\n");
}

TEST_F(CompleteTest, ZshIsGivenEveryWordAndWhatItIs) {
  EXPECT_EQ(
      runCamcfg({"complete", "zsh", "--", "--root", device.hostPath(), "preset", "get", "N"}).out,
      "words\n3:Dock\n7:North Gate\n8:Joe's $5; \"x\"\n9:a\\nb\nDock\nNorth Gate\n"
      "Joe's $5; \"x\"\n");
  device.write("/cfg0/preset_cfg.xml",
               "<PresetCfg><preset Id=\"1\" Description=\"a:b\\c\"/></PresetCfg>");
  EXPECT_EQ(
      runCamcfg({"complete", "zsh", "--", "--root", device.hostPath(), "preset", "get", ""}).out,
      "words\n1:a:b\\c\na\\:b\\\\c\n");
}

TEST_F(CompleteTest, BashFunctionFillsItsReply) {
  const std::string script =
      "source " CAMCFG_COMPLETIONS
      "/camcfg.bash\n"
      "COMP_LINE=\"camcfg --root $PWD preset get N\" COMP_POINT=${#COMP_LINE}\n"
      "COMP_WORDS=(camcfg --root \"$PWD\" preset get N) COMP_CWORD=5\n"
      "_camcfg camcfg N get\n"
      "printf '<%s>\\n' \"${COMPREPLY[@]}\"\n"
      "complete -p camcfg\n";
  EXPECT_EQ(runCommand({"bash", "--norc", "-c", script}, [this] { prepareShell(); }),
            (ToolRun{0, "<North\\ Gate>\ncomplete -F _camcfg camcfg\n", ""}));
}

TEST_F(CompleteTest, BashCompletesWhatIsTyped) {
  expectCompletes({"bash", "--norc", "--noprofile", "-i"},
                  "source " CAMCFG_COMPLETIONS "/camcfg.bash");
}

TEST_F(CompleteTest, ZshCompletesWhatIsTyped) {
  if (runCommand({"zsh", "-fc", ":"}).status == 127) GTEST_SKIP() << "zsh is not installed";
  expectCompletes({"zsh", "-f", "-i"},
                  "fpath+=(" CAMCFG_COMPLETIONS "); autoload -U compinit; compinit -u -D");
}

TEST_F(CompleteTest, ScriptsAreWellFormed) {
  EXPECT_EQ(runCommand({"bash", "-n", CAMCFG_COMPLETIONS "/camcfg.bash"}), (ToolRun{0, "", ""}));
  const ToolRun zsh = runCommand({"zsh", "-n", CAMCFG_COMPLETIONS "/_camcfg"});
  if (zsh.status == 127) GTEST_SKIP() << "zsh is not installed";
  EXPECT_EQ(zsh, (ToolRun{0, "", ""}));
}

}  // namespace
}  // namespace camcfg::tests
