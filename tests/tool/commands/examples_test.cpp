#include <unistd.h>

#include <sstream>

#include "commands/groups.h"
#include "tool/commands/every_command.h"
#include "tool/sample_test.h"
#include "tool/typed_input.h"

namespace camcfg::tests {
namespace {

using tool::cli::Command;

struct Example {
  std::string command;
  std::string line;
};

void PrintTo(const Example& example, std::ostream* stream) {
  *stream << example.line;
}

std::vector<Example> allExamples() {
  std::vector<Example> examples;
  for (const tool::cli::CommandGroup& group : tool::commands::allGroups())
    for (const Command& command : group.commands)
      for (const char* example : command.examples) examples.push_back({command.name, example});
  return examples;
}

class ExampleTest : public SampleTest, public testing::WithParamInterface<Example> {};

TEST_P(ExampleTest, WorksOnTheSampleDevice) {
  std::istringstream words(GetParam().line);
  device.write("/device.json", run({"export"}).out);
  const ToolRun result = run({std::istream_iterator<std::string>(words), {}}, [this] {
    if (chdir(device.hostPath().c_str()) != 0) _exit(99);
    withInput("secret\n")();
  });
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(result.out, "");
}

TEST_P(ExampleTest, IsAtTheEndOfTheHelp) {
  std::istringstream words("help " + GetParam().command);
  const std::string help = runCamcfg({std::istream_iterator<std::string>(words), {}}).out;
  const std::size_t heading = help.rfind("\n\nExamples:\n");
  ASSERT_NE(heading, std::string::npos);
  EXPECT_NE(help.find("\n  camcfg " + GetParam().line + "\n", heading), std::string::npos);
  EXPECT_EQ(help.find("\n\n", heading + 2), std::string::npos) << help;
}

INSTANTIATE_TEST_SUITE_P(Commands, ExampleTest, testing::ValuesIn(allExamples()));

TEST(ExamplesTest, CommandsThatChangeEntriesHaveSome) {
  for (const char* name :
       {"list", "get", "set", "describe", "find", "explain", "reset", "export", "import", "diff",
        "stream cache add", "stream source set", "live rtmp delete", "live srt"}) {
    const auto groups = tool::commands::allGroups();
    const Command* command = tool::cli::findCommand(groups, name);
    ASSERT_NE(command, nullptr) << name;
    EXPECT_FALSE(command->examples.empty()) << name;
    EXPECT_LE(command->examples.size(), 3U) << name;
  }
}

}  // namespace
}  // namespace camcfg::tests
