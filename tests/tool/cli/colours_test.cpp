#include <cstdlib>
#include <regex>

#include "tool/terminal.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kEscape[] = "\x1b";

class ColoursTest : public ParametersTest {
 protected:
  /// What the tool shows at a terminal; each variable is set or, without "=", taken away.
  std::string shown(const std::vector<std::string>& arguments,
                    const std::vector<const char*>& variables = {}) const {
    Terminal terminal([&] {
      setenv("TERM", "xterm", 1);
      unsetenv("NO_COLOR");
      for (const char* variable : variables) putenv(const_cast<char*>(variable));
      becomeCamcfg(with(arguments));
    });
    return terminal.readToEnd();
  }

  std::vector<std::string> with(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--root", device.hostPath()});
    return arguments;
  }
};

TEST_F(ColoursTest, ChangesStatesAndRefusalsAreColouredAtATerminal) {
  EXPECT_EQ(shown({"set", "System", "Rtsp", "8554"}),
            "System/Rtsp: \x1b[2m554\x1b[0m -> \x1b[1m8554\x1b[0m\r\n");
  EXPECT_EQ(shown({"set", "System", "Rtsp", "0"}),
            "\x1b[31mcamcfg:\x1b[0m set: System/Rtsp: 0 is outside 1..65535; the nearest permitted "
            "is 1\r\n");
  device.write(kBusiness, "<System");
  EXPECT_THAT(shown({"verify"}),
              HasSubstr("\x1b[31mdamaged\x1b[0m -> \x1b[32mgood\x1b[0m  \x1b[32mgood\x1b[0m"));
}

TEST_F(ColoursTest, UsageErrorsAreColouredToo) {
  EXPECT_EQ(shown({"sett"}),
            "\x1b[31mcamcfg:\x1b[0m unknown command 'sett'; did you mean 'set'?\r\n");
  const std::string plain = "camcfg: unknown command 'sett'; did you mean 'set'?\r\n";
  EXPECT_EQ(shown({"sett", "--color", "never"}), plain);
  EXPECT_EQ(shown({"sett", "--color=never"}), plain);
}

TEST_F(ColoursTest, LayoutIsTheSameWithoutThem) {
  const std::string coloured = run({"--color", "always", "verify"}).out;
  EXPECT_THAT(coloured, HasSubstr(kEscape));
  EXPECT_EQ(std::regex_replace(coloured, std::regex("\x1b\\[[0-9]+m"), ""), run({"verify"}).out);
}

TEST_F(ColoursTest, NothingIsColouredWhereItIsNotWanted) {
  const std::string plain = "System/Rtsp: 554 -> 555\r\nnothing was written\r\n";
  const std::vector<std::string> set = {"set", "--dry-run", "System", "Rtsp", "555"};
  EXPECT_EQ(shown(set, {"NO_COLOR=1"}), plain);
  EXPECT_EQ(shown(set, {"TERM=dumb"}), plain);
  EXPECT_EQ(shown(set, {"TERM"}), plain);
  EXPECT_EQ(shown({"--color=never", "set", "--dry-run", "System", "Rtsp", "555"}), plain);
  EXPECT_THAT(shown(set, {"NO_COLOR="}), HasSubstr(kEscape));
  EXPECT_THAT(shown({"--color=always", "set", "System", "Rtsp", "555"}, {"NO_COLOR=1"}),
              HasSubstr(kEscape));
}

TEST_F(ColoursTest, PipesGetNoneUnlessTheyAreWanted) {
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554"}), (ToolRun{0, "System/Rtsp: 554 -> 8554\n", ""}));
  EXPECT_EQ(run({"--color", "always", "set", "System", "Rtsp", "0"}),
            (ToolRun{1, "",
                     "\x1b[31mcamcfg:\x1b[0m set: System/Rtsp: 0 is outside 1..65535; the nearest "
                     "permitted is 1\n"}));
}

TEST_F(ColoursTest, JsonIsNeverColoured) {
  EXPECT_THAT(shown({"--json", "verify"}), Not(HasSubstr(kEscape)));
  EXPECT_THAT(shown({"--json", "--color", "always", "verify"}), Not(HasSubstr(kEscape)));
  EXPECT_THAT(shown({"--json", "get", "System", "Nothing"}), Not(HasSubstr(kEscape)));
}

TEST_F(ColoursTest, UnknownChoiceIsRefused) {
  EXPECT_EQ(run({"--color", "alwys", "list"}),
            (ToolRun{2, "",
                     "camcfg: list: --color: 'alwys' is none of auto, always, never; did you mean "
                     "'always'?\n"}));
}

TEST_F(ColoursTest, NothingInAFileSteersTheTerminal) {
  writeBoth(tests::with(kParameters, "Cur=\"Auto\"", "Cur=\"A&#27;[2J\xc2\x9b&#127;&#7;\""));
  EXPECT_EQ(shown({"get", "Image", "Mode"}), "A\\x1b[2J\\u009b\\x7f\\x07\r\n");
  EXPECT_THAT(shown({"list", "Image"}), HasSubstr("A\\x1b[2J\\u009b\\x7f\\x07"));
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--json", "list"}, {"--json", "export", "parameters"}})
    EXPECT_THAT(shown(words), HasSubstr("\"A\\u001b[2J\\u009b\\u007f\\u0007\""));
}

TEST_F(ColoursTest, DocumentsForProgramsAreLeftAloneInPipes) {
  device.write("/cfg0/preset_cfg.xml",
               "<PresetCfg><preset Id=\"1\" Description=\"a&#27;b\"/></PresetCfg>");
  EXPECT_THAT(run({"preset", "export"}).out, HasSubstr("\n1,a\x1b"
                                                       "b,"));
  EXPECT_THAT(shown({"preset", "export"}), HasSubstr("\n1,a\\x1bb,"));
}

}  // namespace
}  // namespace camcfg::tests
