#include <unistd.h>

#include <algorithm>
#include <new>
#include <stdexcept>

#include "base/json.h"
#include "cli/command_line.h"
#include "tool/commands/every_command.h"

namespace camcfg::tests {
namespace {

using tool::Json;
using tool::JsonText;
using tool::cli::Command;
using tool::cli::Option;

class RefusalsInJsonTest : public EveryCommandTest {
 protected:
  // What was printed, which has to be one value.
  static Json answerOf(const ToolRun& result) {
    const JsonText text = tool::readJson(result.out);
    EXPECT_EQ(text.fault, 0U) << result.out;
    EXPECT_TRUE(text.value.is_structured()) << result.out;
    return text.value;
  }

  // Bytes that are not UTF-8 stay what they are on standard error.
  static void expectSameText(const std::string& err, const Json& error) {
    EXPECT_EQ(Json(err).dump(), Json("camcfg: " + error["text"].text() + "\n").dump());
  }

  // Makes sure that a refusal is an answer, too, and nothing else is.
  static void expectError(const ToolRun& result, int status) {
    EXPECT_EQ(result.status, status) << result.err;
    const Json answer = answerOf(result);
    ASSERT_EQ(answer.names(), std::vector<std::string>{"error"});
    const Json& error = answer["error"];
    EXPECT_EQ(error.names(), (std::vector<std::string>{"status", "place", "text"}));
    EXPECT_EQ(error["status"].get<int>(), status);
    EXPECT_TRUE(error["place"].is_null() ||
                error["text"].text().find(error["place"].text()) != std::string::npos);
    expectSameText(result.err, error);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 1);
  }

  static Words withWord(Words line, std::size_t at, const std::string& word) {
    line.insert(line.begin() + static_cast<std::ptrdiff_t>(at), word);
    return line;
  }

  static Json placeIn(const ToolRun& result) { return answerOf(result)["error"]["place"]; }
};

TEST_F(RefusalsInJsonTest, EveryCommandAnswersWithoutADevice) {
  const testkit::DeviceRoot empty(testkit::DeviceRoot::StayOut);
  const std::string root = empty.hostPath() + "/empty";
  empty.makeDirectory("/empty");
  int refused = 0;
  for (const Command* command : commands()) {
    if (command->goesOn) continue;
    const Words line = lineFor(*command);
    SCOPED_TRACE(lineOf(line));
    Words words = {"--json", "--root", root};
    words.insert(words.end(), line.begin(), line.end());
    const ToolRun result = runCamcfg(words);
    const Json answer = answerOf(result);
    if (result.status == 0 || !answer.contains("error")) continue;
    expectError(result, result.status);
    ++refused;
  }
  EXPECT_GT(refused, 30);
}

TEST_F(RefusalsInJsonTest, EveryCommandAnswersWhereTheRootIsMissing) {
  for (const Command* command : commands()) {
    const Words line = lineFor(*command);
    SCOPED_TRACE(lineOf(line));
    Words words = {"--json", "--root", device.hostPath() + "/none"};
    words.insert(words.end(), line.begin(), line.end());
    const ToolRun result = runCamcfg(words);
    expectError(result, static_cast<int>(command->whenRefused));
  }
}

TEST_F(RefusalsInJsonTest, EveryCommandAnswersToAWrongOptionWhereverJsonIsAskedFor) {
  for (const Command* command : commands()) {
    Words line = lineFor(*command);
    SCOPED_TRACE(lineOf(line));
    // A program's options are its own.
    line.insert(command->becomesProgram ? line.begin() + 1 : line.end(), "--bogus");
    for (const std::size_t at : {std::size_t(0), command->becomesProgram ? 1 : line.size()}) {
      const ToolRun result = run(withWord(line, at, "--json"));
      expectError(result, 2);
      EXPECT_EQ(placeIn(result).text(), "--bogus");
    }
  }
}

TEST_F(RefusalsInJsonTest, EveryCommandAnswersToAMissingArgument) {
  for (const Command* command : commands()) {
    const auto required = std::find_if(command->options.begin(), command->options.end(),
                                       [](const Option& option) { return option.isRequired(); });
    if (required == command->options.end() || !command->above().empty()) continue;
    SCOPED_TRACE(command->name);
    const ToolRun result = run({command->name, "--json"});
    expectError(result, 2);
    EXPECT_EQ(placeIn(result).text(), required->name);
  }
}

TEST_F(RefusalsInJsonTest, LineWithoutACommandIsAnswered) {
  expectError(run({"--json"}), 2);
  expectError(run({"sett", "--json"}), 2);
  expectError(run({"watch", "nowhere", "--json"}), 2);
  expectError(run({"stream", "--json"}), 2);
  expectError(run({"--json", "stream", "cahce"}), 2);
  expectError(run({"--color", "pink", "list", "--json"}), 2);
}

TEST_F(RefusalsInJsonTest, WordsThatAreNotTheToolsAskForNothing) {
  EXPECT_EQ(run({"set", "System", "--bogus", "--", "--json"}).out, "");
  EXPECT_EQ(runCamcfg({"--root", "--json", "list"}).out, "");
  EXPECT_EQ(run({"run", "sh", "-c", "exit 3", "--json"}).out, "");
}

TEST_F(RefusalsInJsonTest, PlaceIsWhatTheRefusalIsAbout) {
  EXPECT_EQ(placeIn(run({"--json", "set", "System", "Rtsp", "0"})).text(), "System/Rtsp");
  EXPECT_EQ(placeIn(run({"--json", "network", "set", "Lan0", "Speed", "x"})).text(), "Lan0/Speed");
  EXPECT_EQ(placeIn(run({"--json", "import", "/no/such"})).text(), "/no/such");
  EXPECT_EQ(placeIn(run({"--json", "preset", "export", "--format", "x"})).text(), "--format");
  EXPECT_EQ(placeIn(run({"--json", "sett"})).text(), "sett");
  EXPECT_TRUE(placeIn(run({"--json", "preset", "get", "99"})).is_null());
  device.remove("/cfg0/business_param.xml");
  EXPECT_EQ(placeIn(run({"--json", "list"})).text(), "/cfg0/business_param.xml");
}

TEST_F(RefusalsInJsonTest, AnyBytesBecomeJson) {
  for (const std::string word : {"\xff\xfe", "\"", "\\", "a\nb", "\x1b[31m", "\xc2\x9b", "\x7f"}) {
    SCOPED_TRACE(word);
    for (const Words& line : {Words{word}, Words{"list", word}, Words{"set", word, "Rtsp", "1"},
                              Words{"list", "--" + word}, Words{"import", "/no/" + word}}) {
      const ToolRun result = run(withWord(line, 0, "--json"));
      EXPECT_NE(result.status, 0);
      const Json answer = answerOf(result);
      EXPECT_EQ(answer["error"]["status"].get<int>(), result.status);
      expectSameText(result.err, answer["error"]);
    }
  }
}

TEST_F(RefusalsInJsonTest, FaultsOfTheToolAreAnswered) {
  using tool::cli::Answer;
  using tool::cli::Arguments;
  using tool::cli::Line;
  const std::vector<tool::cli::CommandGroup> groups = {
      {"First",
       {{"hungry",
         "",
         {},
         [](const Arguments&) -> Answer { throw std::bad_alloc(); },
         tool::Status::Usage},
        {"wrong", "", {}, [](const Arguments&) -> Answer { throw std::logic_error("a\xff"); }},
        {"late",
         "",
         {},
         [](const Arguments&) -> Answer {
           tool::noteChange();
           throw std::bad_alloc();
         }},
        {"shapeless", "", {}, [](const Arguments&) -> Answer {
           tool::noteChange();
           return {Json{{"a", 1}}, {Line{"{b}"}}};
         }}}}};
  const auto runFor = [&](const std::vector<const char*>& words) {
    return runCommand({"true"}, [&] {
      _exit(tool::cli::runProgram(groups, static_cast<int>(words.size()), words.data()));
    });
  };
  expectError(runFor({"camcfg", "hungry", "--json"}), 2);
  expectError(runFor({"camcfg", "wrong", "--json"}), 1);
  expectError(runFor({"camcfg", "late", "--json"}), 5);
  const std::string inForce = ": the change is in force, but could not be printed: ";
  EXPECT_EQ(runFor({"camcfg", "late"}),
            (ToolRun{5, "", "camcfg: late" + inForce + "out of memory\n"}));
  EXPECT_EQ(runFor({"camcfg", "shapeless"}),
            (ToolRun{5, "", "camcfg: shapeless" + inForce + "an answer has no b\n"}));
}

TEST_F(RefusalsInJsonTest, FaultsThatACommandFindsAreItsAnswer) {
  device.write("/cfg0/business_param.xml", "<System");
  for (const Words& line : {Words{"status"}, Words{"diff"}, Words{"lint"}}) {
    SCOPED_TRACE(lineOf(line));
    const ToolRun result = run(withWord(line, 0, "--json"));
    EXPECT_NE(result.status, 0);
    EXPECT_FALSE(answerOf(result).contains("error"));
  }
}

TEST_F(RefusalsInJsonTest, VersionIsAValue) {
  for (const Words& line : {Words{"--version", "--json"}, Words{"--json", "--version"}}) {
    const ToolRun result = run(line);
    EXPECT_EQ(result.status, 0);
    const Json answer = answerOf(result);
    EXPECT_EQ(answer["name"].text(), "camcfg");
    EXPECT_EQ("camcfg " + answer["version"].text() + "\n", run({"--version"}).out);
  }
}

TEST_F(RefusalsInJsonTest, HelpIsAValue) {
  const Json whole = answerOf(run({"--json", "--help"}));
  EXPECT_TRUE(whole["command"].is_null());
  EXPECT_EQ(whole["text"].text(), run({"--help"}).out);
  EXPECT_EQ(answerOf(run({"set", "--help", "--json"})), answerOf(run({"--json", "help", "set"})));
}

}  // namespace
}  // namespace camcfg::tests
