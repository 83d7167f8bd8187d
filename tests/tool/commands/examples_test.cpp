#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "base/plain_text.h"
#include "cli/command_line.h"
#include "commands/groups.h"
#include "support/random_cases.h"
#include "tool/commands/every_command.h"
#include "tool/sample_test.h"
#include "tool/trial_device.h"
#include "tool/typed_input.h"

namespace camcfg::tests {
namespace {

namespace fs = std::filesystem;
using tool::cli::Command;

struct Example {
  std::string command;
  std::string line;
};

std::vector<const Command*> allCommands() {
  static const auto groups = tool::commands::allGroups();
  return commandsIn(groups);
}

std::vector<Example> allExamples() {
  std::vector<Example> examples;
  for (const Command* command : allCommands())
    for (const char* example : command->examples) examples.push_back({command->name, example});
  return examples;
}

// Each line once: a command and those above it may have the same.
std::vector<std::string> allLines() {
  std::vector<std::string> lines;
  for (const Example& example : allExamples())
    if (!tool::isAmong(lines, example.line)) lines.push_back(example.line);
  return lines;
}

/// A new device, whose user is in a directory with the files that the examples name.
class ExampleTest : public SampleTest, public testing::WithParamInterface<std::size_t> {
 protected:
  void renew() const {
    const fs::path root = device.hostPath();
    fs::remove_all(root / "cfg1/.camcfg");
    for (const char* copies : {"cfg0", "cfg1"})
      for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"})
        fs::copy_file(root / "app/resource/defcfg" / name, root / copies / name,
                      fs::copy_options::overwrite_existing);
  }

  std::string contentsOf(const std::string& file) const {
    const std::string settings = device.read(kBusinessDefault);
    if (file == "venue.json")
      return "{\"version\": 1, \"parameters\": {\"System\": {\"Rtsp\": 8554}}}";
    if (file == "device.json") return with(run({"export"}).out, "\"Rtsp\": 554", "\"Rtsp\": 8554");
    if (file == "presets.csv") return with(run({"preset", "export"}).out, "Lectern", "Desk");
    if (file == "damaged.xml")
      return with(settings.substr(0, settings.size() - 20), "<Rtsp Cur=\"554\"",
                  "<Rtsp Cur=\"8554\"");
    return with(settings, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"79\"");
  }

  // Files of the user's own that a line names.
  void makeFilesFor(const Words& line) const {
    for (const char* file : {"device.json", "venue.json", "presets.csv", "damaged.xml"})
      if (line.back() == file) own_.write(std::string("/") + file, contentsOf(file));
    if (line.back() == "old-set") own_.write("/old-set/business_param.xml", contentsOf("old-set"));
  }

  std::function<void()> there() const {
    const auto input = withInput("secret\n");
    return [input, directory = own_.hostPath()] {
      input();
      if (chdir(directory.c_str()) != 0) _exit(1);
    };
  }

  // History has a change for those who ask for one, and a change is on trial for those who end it.
  void prepareFor(const std::string& command) const {
    if (command == "confirm" || command == "cancel")
      OnTrial(device, {"try", "set", "System", "Rtsp", "8554"}).end(SIGKILL);
    if (command == "undo" || command == "history") run({"set", "System", "Rtsp", "8554"});
  }

  void expectWorks(const Words& line) const {
    if (line.front() == "try") {
      OnTrial trial(device, line);
      EXPECT_EQ(run({"confirm"}).status, 0);
      EXPECT_EQ(trial.end(), 0);
    } else if (line.front() == "watch") {
      Words words = line;
      words.insert(words.begin(), {"--root", device.hostPath()});
      Background watch(words);
      for (int port = 600; port < 900 && !watch.shows("Rtsp", 300); ++port)
        EXPECT_EQ(run({"set", "System", "Rtsp", std::to_string(port)}).status, 0);
      EXPECT_EQ(watch.end(SIGTERM), 0);
    } else {
      makeFilesFor(line);
      prepareFor(line.front());
      const ToolRun result = run(line, there());
      EXPECT_EQ(result.status, line == Words({"diff", "device.json"}) ? 1 : 0) << result.err;
    }
  }

 private:
  testkit::DeviceRoot own_{testkit::DeviceRoot::StayOut};
};

// Side by side in so many parts.
constexpr std::size_t kParts = 8;

TEST_P(ExampleTest, WorksOnTheSampleDevice) {
  const std::vector<std::string> lines = allLines();
  for (std::size_t i = GetParam(); i < lines.size(); i += kParts) {
    if (!isTried(static_cast<int>(i / kParts))) continue;
    SCOPED_TRACE(lines[i]);
    renew();
    expectWorks(wordsOf(lines[i]));
  }
}

INSTANTIATE_TEST_SUITE_P(Part, ExampleTest, testing::Range(std::size_t{0}, kParts));

TEST(ExamplesTest, EveryCommandHasOneToThree) {
  for (const Command* command : allCommands()) {
    EXPECT_GE(command->examples.size(), 1U) << command->name;
    EXPECT_LE(command->examples.size(), 3U) << command->name;
  }
}

// Those of a heading are of the commands below it.
TEST(ExamplesTest, ExamplesOfACommandAreOfThatCommand) {
  for (const auto& [name, line] : allExamples()) {
    for (const std::string& word : wordsOf(name))
      EXPECT_NE((" " + line + " ").find(" " + word + " "), std::string::npos)
          << name << ": " << line;
  }
}

TEST(ExamplesTest, TheyAreAtTheEndOfTheHelp) {
  const auto groups = tool::commands::allGroups();
  for (const Command* command : commandsIn(groups)) {
    std::string end = "\n\nExamples:\n";
    for (const char* line : command->examples) end += std::string("  camcfg ") + line + "\n";
    const std::string help = tool::cli::helpText(groups, command->name);
    ASSERT_GE(help.size(), end.size());
    EXPECT_EQ(help.substr(help.size() - end.size()), end) << command->name;
  }
}

}  // namespace
}  // namespace camcfg::tests
