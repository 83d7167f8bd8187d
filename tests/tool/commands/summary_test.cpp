#include "tool/json_in.h"
#include "tool/sample_test.h"
#include "tool/terminal.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
class SummaryTest : public SampleTest {
 protected:
  struct Shown {
    int status;
    std::string text;
  };

  Shown atTerminal(Words words) const {
    words.insert(words.begin(), {"--root", device.hostPath()});
    Terminal terminal([&] { becomeCamcfg(words); });
    std::string text = terminal.readToEnd();
    return {terminal.status(), std::move(text)};
  }
};

constexpr char kSummary[] =
    "health               well\n"
    "name                 Four-Channel Encoder\n"
    "model                E4-PTZ\n"
    "language             English\n"
    "HTTP port            80\n"
    "HTTPS port           443\n"
    "RTSP port            554\n"
    "RTSP over HTTP port  8080\n"
    "\n"
    "GO ON WITH                   \n"
    "camcfg status                Show the state of every copy and what the next start does to it\n"
    "camcfg find rtsp port        Find settings by a part of their place, value, help or name\n"
    "camcfg set System/Rtsp=8554  Set parameters and save them with their backup\n"
    "camcfg undo                  Bring settings back to what they were before a change\n"
    "camcfg help examples         Explain a command or a topic, or list them\n";

TEST_F(SummaryTest, ShowsHealthPortsAndWhatToGoOnWith) {
  EXPECT_EQ(run({"summary"}), (ToolRun{0, kSummary, ""}));
}

TEST_F(SummaryTest, IsWhatTheToolByItselfShowsAtATerminal) {
  const auto [status, text] = atTerminal({"--color", "never"});
  EXPECT_EQ(status, 0);
  std::string expected;
  for (const char* c = kSummary; *c != '\0'; ++c)
    expected += *c == '\n' ? std::string("\r\n") : std::string(1, *c);
  EXPECT_EQ(text, expected);
  EXPECT_EQ(jsonIn(atTerminal({"--json"}).text)["health"], "well");
}

TEST_F(SummaryTest, ElsewhereACommandIsMissing) {
  EXPECT_EQ(run({}), (ToolRun{2, "", "camcfg: a command is missing; see 'camcfg --help'\n"}));
}

TEST_F(SummaryTest, HeadingStillWantsACommandAtATerminal) {
  EXPECT_EQ(atTerminal({"stream"}).status, 2);
}

TEST_F(SummaryTest, AnswersInJson) {
  const tool::Json answer = jsonIn(run({"summary", "--json"}).out);
  EXPECT_EQ(answer["health"], "well");
  EXPECT_TRUE(answer["findings"].empty());
  EXPECT_EQ(answer["system"]["ports"]["rtsp"], 554);
  EXPECT_EQ(answer["goOnWith"].size(), 5U);
  EXPECT_EQ(answer["goOnWith"].at(2)["line"], "camcfg set System/Rtsp=8554");
}

TEST_F(SummaryTest, HasTheStatusAndTheFindingsOfStatus) {
  device.remove("/cfg1/mpp_cfg.xml");
  const ToolRun status = run({"status"});
  const ToolRun summary = run({"summary"});
  EXPECT_EQ(status.status, 4);
  EXPECT_EQ(summary.status, 4);
  EXPECT_THAT(summary.out, HasSubstr("health               degraded\n"));
  EXPECT_THAT(summary.err, HasSubstr("camcfg: summary: /cfg1/mpp_cfg.xml is missing"));
}

TEST_F(SummaryTest, UnusableDeviceIsSummedUpToo) {
  for (const char* copy : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"})
    device.write(copy + std::string("business_param.xml"), "<System");
  const ToolRun summary = run({"summary"});
  EXPECT_EQ(summary.status, 3);
  EXPECT_THAT(summary.out, HasSubstr("health  unusable\n"));
  EXPECT_THAT(summary.out, HasSubstr("camcfg boot "));
  EXPECT_THAT(summary.out, HasSubstr("camcfg help examples"));
  EXPECT_TRUE(jsonIn(run({"summary", "--json"}).out)["system"].is_null());
}

}  // namespace
}  // namespace camcfg::tests
