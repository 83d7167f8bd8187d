#include "tool/sample_test.h"
#include "tool/terminal.h"
#include "tool/typed_input.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
/// Secrets that are given as "-".
class SecretInputTest : public SampleTest {
 protected:
  const Words kLine = {"live", "srt", "set", "1", "password=-"};

  ToolRun typed(const Words& words, const std::string& input) const {
    return run(words, withInput(input));
  }

  std::string phrase() const { return run({"export", "live.srt"}).out; }

  /// Types keys at the prompts of a terminal.
  /// @return what the terminal showed, and the exit status
  ToolRun typedAtTerminal(Words words,
                          const std::vector<std::pair<std::string, std::string>>& keys) {
    words.insert(words.begin(), {"--root", device.hostPath()});
    Terminal terminal([&] { becomeCamcfg(words); });
    for (const auto& [prompt, typed] : keys) {
      terminal.readUntil(prompt);
      terminal.type(typed);
    }
    const std::string shown = terminal.readToEnd();
    return {terminal.status(), shown, ""};
  }
};

TEST_F(SecretInputTest, FirstLineOfStandardInputIsTheSecret) {
  const ToolRun result = typed(kLine, "open sesame\nmore\n");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("live.srt[1].password  ********  ********\n"));
  EXPECT_THAT(phrase(), HasSubstr("\"password\": \"open sesame\""));
  EXPECT_EQ(typed(kLine, "without line end").status, 0);
  EXPECT_THAT(phrase(), HasSubstr("\"password\": \"without line end\""));
}

TEST_F(SecretInputTest, TwoSecretsAreTwoLines) {
  EXPECT_EQ(typed({"live", "rtmp", "set", "0", "url=-", "password=-"},
                  "rtmp://live.example/app/key\nopen sesame\n")
                .status,
            0);
  EXPECT_THAT(run({"live", "rtmp", "--show-secrets"}).out,
              HasSubstr("rtmp://live.example/app/key   encoder  open sesame"));
  EXPECT_EQ(
      typed({"set", "live.srt[1].password=-", "live.rtmp[0].password=-"}, "one\ntwo\n").status, 0);
  EXPECT_THAT(phrase(), HasSubstr("\"password\": \"one\""));
  EXPECT_THAT(run({"export", "live.rtmp"}).out, HasSubstr("\"password\": \"two\""));
}

TEST_F(SecretInputTest, InputThatEndsWithoutOneIsRefused) {
  const std::string before = phrase();
  EXPECT_EQ(typed(kLine, ""),
            (ToolRun{1, "", "camcfg: live srt set: standard input has ended without a secret\n"}));
  EXPECT_EQ(typed({"live", "rtmp", "set", "0", "url=-", "password=-"}, "rtmp://h/a/b\n").status, 1);
  EXPECT_EQ(typed(kLine, std::string(5000, 'x') + "\n"),
            (ToolRun{1, "", "camcfg: live srt set: the secret on standard input is too long\n"}));
  EXPECT_EQ(phrase(), before);
}

TEST_F(SecretInputTest, EmptyLineIsNoSecret) {
  Words line = kLine;
  line.emplace_back("--force");
  EXPECT_EQ(typed(line, "\n").status, 0);
  EXPECT_THAT(phrase(), HasSubstr("\"password\": \"\""));
}

TEST_F(SecretInputTest, NothingIsAskedForWhereAnotherWordIsFaulty) {
  Words line = kLine;
  line.emplace_back("prt=1");
  EXPECT_EQ(typed(line, ""),
            (ToolRun{1, "",
                     "camcfg: live srt set: live.srt[1]: there is no member 'prt'; did you mean "
                     "'port'?\n"}));
}

TEST_F(SecretInputTest, OtherMembersAndParametersTakeTheWordAsItIs) {
  EXPECT_EQ(typed({"live", "rtmp", "set", "0", "username=-"}, "").status, 0);
  EXPECT_THAT(run({"export", "live.rtmp"}).out, HasSubstr("\"username\": \"-\""));
}

TEST_F(SecretInputTest, TerminalAsksAndShowsNothingOfIt) {
  const ToolRun result =
      typedAtTerminal({"live", "rtmp", "set", "0", "url=-", "password=-"},
                      {{"url: ", "rtmp://h/a/zq7key\r"}, {"password: ", "zq7\r"}});
  EXPECT_EQ(result.status, 0) << result.out;
  EXPECT_THAT(result.out, Not(HasSubstr("zq7")));
  EXPECT_THAT(run({"live", "rtmp", "--show-secrets"}).out, HasSubstr("rtmp://h/a/zq7key"));
}

TEST_F(SecretInputTest, LineCanBeEditedAtATerminal) {
  const std::string erase = "\x7f";
  const std::string kill = "\x15";
  EXPECT_EQ(
      typedAtTerminal(kLine, {{"password: ", "wrong" + kill + "r\xc3\xa4" + erase + "ight\r"}})
          .status,
      0);
  EXPECT_THAT(phrase(), HasSubstr("\"password\": \"right\""));
  EXPECT_EQ(typedAtTerminal(kLine, {{"password: ", "ended\x04"}}).status, 0);
  EXPECT_THAT(phrase(), HasSubstr("\"password\": \"ended\""));
}

TEST_F(SecretInputTest, InterruptAtATerminalChangesNothingAndLeavesItAsItWas) {
  const std::string before = phrase();
  const ToolRun result = typedAtTerminal(kLine, {{"password: ", "zq7\x03"}});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.out, HasSubstr("interrupted; nothing was changed"));
  EXPECT_EQ(phrase(), before);

  Words words = kLine;
  words.insert(words.begin(), {CAMCFG_TOOL, "--root", device.hostPath()});
  std::string command;
  for (const std::string& word : words) command += word + " ";
  Terminal terminal([&] {
    const std::string line = command + "; stty -a";
    execl("/bin/sh", "sh", "-c", line.c_str(), static_cast<char*>(nullptr));
    _exit(127);
  });
  terminal.readUntil("password: ");
  terminal.type("\x03");
  const std::string shown = terminal.readToEnd();
  for (const char* flag : {" echo ", " icanon ", "isig "}) EXPECT_THAT(shown, HasSubstr(flag));
}

TEST_F(SecretInputTest, HistoryDoesNotHaveIt) {
  EXPECT_EQ(run({"live", "srt", "set", "1", "password=zq7"}).status, 0);
  EXPECT_EQ(run({"live", "rtmp", "set", "0", "url=rtmp://h/a/zq7"}).status, 0);
  EXPECT_EQ(run({"set", "live.rtmp[0].url=rtmp://h/a/zq7b"}).status, 0);
  const std::string history = run({"history"}).out + run({"history", "2"}).out;
  EXPECT_THAT(history, HasSubstr("password=***"));
  EXPECT_THAT(history, HasSubstr("url=rtmp://h/a/***"));
  EXPECT_THAT(history, Not(HasSubstr("zq7")));
}

TEST_F(SecretInputTest, FaultySecretIsNotRepeated) {
  const std::vector<Words> lines = {{"live", "srt", "set", "1", "--password=zq7"},
                                    {"live", "srt", "set", "1", "password=zq7\x01"},
                                    {"live", "srt", "set", "1", "=zq7"},
                                    {"live", "srt", "set", "1", "pasword=zq7"},
                                    {"live", "srt", "set", "1", "password=zq7", "password=zq7"},
                                    {"live", "srt", "add", "1", "password=zq7"},
                                    {"live", "rtmp", "add", "9", "password=zq7", "video=99"},
                                    {"set", "live.srt[1].password=zq7\x01"},
                                    {"set", "live.srt[1].pasword=zq7"},
                                    {"live", "srt", "set", "1", "password=zq7\xff", "port=0"}};
  for (const Words& line : lines)
    for (const char* option : {"--json", "--verbose"}) {
      Words words = line;
      words.insert(words.begin(), option);
      const ToolRun result = run(words);
      EXPECT_NE(result.status, 0) << testing::PrintToString(line);
      EXPECT_THAT(result.out + result.err, Not(HasSubstr("zq7"))) << testing::PrintToString(line);
    }
}

TEST_F(SecretInputTest, KeyOfAStreamIsLeftOutOfADocumentAndKeptByItsImport) {
  const ToolRun document = run({"export", "--no-secrets"});
  for (const char* key : {"event/program", "backup/ch1", "change-me"})
    EXPECT_THAT(document.out, Not(HasSubstr(key)));
  EXPECT_EQ(document.err, "");
  device.write("/document.json", with(document.out, "\"encoder\"", "\"other\""));
  const std::string before = run({"export"}).out;
  EXPECT_EQ(run({"import", device.hostPath() + "/document.json"}).status, 0);
  EXPECT_EQ(run({"export"}).out, with(before, "\"encoder\"", "\"other\""));
}

TEST_F(SecretInputTest, DocumentWithAFaultySecretIsRefusedWithoutIt) {
  const std::string document = run({"export", "live"}).out;
  for (const char* fault : {"12345678", "[12345678]", "{\"12345678\": 1}", "true", "1.2345678e3"}) {
    device.write("/document.json", with(document, "\"change-me\"", fault));
    const ToolRun result = run({"import", device.hostPath() + "/document.json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "camcfg: import: live.rtmp[0].password: it must be a text\n"
              "camcfg: import: nothing was changed\n");
  }
}

}  // namespace
}  // namespace camcfg::tests
