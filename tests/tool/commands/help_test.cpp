#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

#include "cli/command.h"
#include "cli/command_line.h"
#include "commands/groups.h"
#include "tool/json_in.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using namespace tool::commands;

std::vector<Command> commandsOfAllGroups() {
  std::vector<Command> commands;
  for (const CommandGroup& group : allGroups())
    commands.insert(commands.end(), group.commands.begin(), group.commands.end());
  return commands;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void expectHelpText(const std::string& what, const std::string& help) {
  EXPECT_TRUE(std::regex_match(help, std::regex(".*[^. ]"))) << what << ": " << help;
  EXPECT_EQ(help.find('\n'), std::string::npos) << what << ": " << help;
}

// Command lines within a text, without what the shell makes of their output.
std::vector<std::vector<std::string>> commandLinesIn(const std::string& text) {
  std::vector<std::vector<std::string>> found;
  for (const std::string& line : linesOf(text)) {
    std::smatch match;
    const std::regex call("(?:^  |\\$\\(|ssh spare )camcfg ([^|>)]*?)(?: {2,}.*|[|>)].*|$)");
    for (std::sregex_iterator at(line.begin(), line.end(), call), end; at != end; ++at) {
      std::istringstream words((*at)[1].str());
      found.push_back({std::istream_iterator<std::string>(words), {}});
    }
  }
  return found;
}

TEST(GroupsTest, CommandIsTheSameInItsGroupAsAmongAll) {
  const std::vector<CommandGroup> all = allGroups();
  for (const Command* command : commandsIn(all)) {
    const std::string name = command->name;
    const std::vector<CommandGroup> groups = groupsFor(name.substr(0, name.find(' ')));
    EXPECT_EQ(groups.size(), command->takesCommand ? all.size() : 1) << name;
    ASSERT_NE(findCommand(groups, name), nullptr) << name;
    EXPECT_EQ(helpText(groups, name), helpText(all, name));
  }
}

TEST(GroupsTest, AllAreThereForAWordThatIsNoCommand) {
  for (const char* word : {"", "no", "verif", "cached", "--help"})
    EXPECT_EQ(groupsFor(word).size(), allGroups().size()) << word;
}

TEST(HelpTest, EveryCommandAndWhatItTakesHasHelp) {
  for (const Command& command : commandsOfAllGroups()) {
    expectHelpText(command.name, command.help);
    for (const Option& option : command.options)
      expectHelpText(std::string(command.name) + " " + option.name, option.help);
  }
}

TEST(HelpTest, EveryCommandIsExplainedAsByItsHelpOption) {
  const auto groups = allGroups();
  for (const Command& command : commandsOfAllGroups()) {
    std::istringstream words(command.name);
    std::vector<std::string> line{std::istream_iterator<std::string>(words), {}};
    line.insert(line.begin(), "help");
    EXPECT_EQ(runCamcfg(line), (ToolRun{0, helpText(groups, command.name), ""})) << command.name;
  }
}

TEST(HelpTest, UsageNamesWhatTheCommandsAboveTake) {
  EXPECT_EQ(linesOf(runCamcfg({"help", "stream", "cache", "select"}).out)[1],
            "Usage: camcfg stream cache ID select [OPTIONS] SOURCE");
}

TEST(HelpTest, HelpByItselfListsCommandsAndTopics) {
  const std::string help = runCamcfg({"help"}).out;
  EXPECT_EQ(help.find(runCamcfg({"--help"}).out), 0U);
  for (const Topic& topic : allTopics())
    EXPECT_THAT(help, testing::ContainsRegex("\n" + std::string(topic.name) + " +" + topic.title));
}

TEST(HelpTest, ProgramsOwnCommandsAreNotListed) {
  const Json list = jsonIn(runCamcfg({"--json", "help"}).out)["commands"];
  for (const Command& command : commandsOfAllGroups()) {
    const Json entry = {{"name", command.name}, {"help", command.help}};
    const bool listed = std::find(list.begin(), list.end(), entry) != list.end();
    EXPECT_EQ(listed, !command.hidden) << command.name;
  }
}

TEST(HelpTest, TopicIsPrintedAsItIsWritten) {
  for (const Topic& topic : allTopics())
    EXPECT_EQ(runCamcfg({"help", topic.name}),
              (ToolRun{0, std::string(topic.title) + "\n\n" + topic.text, ""}));
}

TEST(HelpTest, TopicsFitATerminalAndHaveNamesOfTheirOwn) {
  std::set<std::string> names;
  for (const Command& command : commandsOfAllGroups()) names.insert(command.name);
  EXPECT_GE(allTopics().size(), 8U);
  for (const Topic& topic : allTopics()) {
    EXPECT_TRUE(names.insert(topic.name).second) << topic.name;
    expectHelpText(topic.name, topic.title);
    EXPECT_THAT(topic.text, testing::EndsWith("\n"));
    for (const std::string& line : linesOf(topic.text)) EXPECT_LE(line.size(), 79U) << line;
  }
}

TEST(HelpTest, CommandLinesInTopicsMakeSense) {
  const testkit::DeviceRoot device;
  const auto groups = allGroups();
  int checked = 0;
  for (const Topic& topic : allTopics())
    for (std::vector<std::string> words : commandLinesIn(topic.text)) {
      words.insert(words.begin(), "camcfg");
      std::vector<const char*> pointers;
      pointers.reserve(words.size());
      for (const std::string& word : words) pointers.push_back(word.c_str());
      try {
        readCommandLine(groups, static_cast<int>(pointers.size()), pointers.data());
      } catch (const Refusal& refusal) {
        EXPECT_NE(refusal.status(), Status::Usage) << topic.name << ": " << refusal.what();
      }
      ++checked;
    }
  EXPECT_GE(checked, 20);
}

TEST(HelpTest, UnknownTopicIsRefusedWithASuggestion) {
  EXPECT_EQ(runCamcfg({"help", "lokup"}),
            (ToolRun{2, "",
                     "camcfg: help: there is neither a command nor a topic 'lokup'; did you mean "
                     "'lookup'?\n"}));
  EXPECT_EQ(runCamcfg({"help", "stream", "cahce"}),
            (ToolRun{2, "",
                     "camcfg: help: there is neither a command nor a topic 'stream cahce'; did you "
                     "mean 'stream cache'?\n"}));
  EXPECT_EQ(runCamcfg({"help", "xyzxyz"}),
            (ToolRun{2, "",
                     "camcfg: help: there is neither a command nor a topic 'xyzxyz'; 'camcfg help' "
                     "lists them\n"}));
}

std::vector<std::string> exitStatusesOf(const std::string& command) {
  std::vector<std::string> lines = linesOf(helpText(allGroups(), command));
  const auto heading = std::find(lines.begin(), lines.end(), "Exit status:");
  lines.erase(lines.begin(), heading == lines.end() ? heading : heading + 1);
  lines.erase(std::find(lines.begin(), lines.end(), ""), lines.end());
  return lines;
}

TEST(HelpTest, CommandsEndWithTheStatusesThatTheyCanEndWith) {
  const std::string done = "  0  done";
  const std::string refused = "  1  refused, not found, or not carried out";
  const std::string usage = "  2  the command line is wrong";
  const std::string unusable = "  3  the device's files are unusable";
  using Lines = std::vector<std::string>;
  EXPECT_EQ(exitStatusesOf("preset set"),
            (Lines{done, refused, usage, unusable,
                   "  5  the change is in force, but could not be printed"}));
  EXPECT_EQ(exitStatusesOf("preset get"), (Lines{done, refused, usage, unusable}));
  EXPECT_EQ(exitStatusesOf("help"), (Lines{done, refused, usage}));
  EXPECT_EQ(exitStatusesOf("status"),
            (Lines{done, refused, usage, unusable,
                   "  4  it works, but a copy or a section is not as it should be"}));
  EXPECT_EQ(exitStatusesOf("live srt"), (Lines{done, refused, usage, unusable,
                                               "  4  a part could not be read and is left out"}));
  EXPECT_EQ(exitStatusesOf("lint"),
            (Lines{done, "  1  there is an error, or it was refused", usage, unusable,
                   "  5  the change is in force, but could not be printed"}));
  EXPECT_EQ(exitStatusesOf("diff"),
            (Lines{done, "  1  something differs",
                   "  2  the command line is wrong, or it was refused", unusable}));
}

TEST(HelpTest, MembersOfMediaEntriesAreListedWithWhatTheyPermit) {
  const std::string srt = helpText(allGroups(), "live srt");
  for (const char* line :
       {"\nEach SRT instance (live.srt in documents):\n  NAME ",
        "\n  mode        caller, listener             Whether it waits for calls or calls itself\n",
        "\n  port        1..65535                     Port to listen on, or to call\n",
        "\n  latency     0..2147483647 ms             Time for sending lost packets again\n",
        "\n  streams     ID:CHANNELS+...:DEFAULT,...  What the instance sends\n    id        text "
        " "})
    EXPECT_THAT(srt, testing::HasSubstr(line));
  for (const char* place : {"live.websocket", "live.rtsp", "live.rtmp", "live.ndi", "live.srt"})
    EXPECT_THAT(helpText(allGroups(), "live"), testing::HasSubstr(place));
  for (const char* place : {"stream.sources", "stream.caches"})
    EXPECT_THAT(helpText(allGroups(), "stream"), testing::HasSubstr(place));
}

TEST(HelpTest, FieldsOfACardAreListedWhereTheyAreSet) {
  EXPECT_THAT(helpText(allGroups(), "network"),
              testing::HasSubstr("\n  MTU        68..9216 bytes        Largest packet"));
  const std::string help = helpText(allGroups(), "network set");
  for (const char* line : {"\n  mtu        68..9216 bytes             Largest packet",
                           "\n  mode       dhcp, static               Where its address comes from",
                           "\n  enable     no, yes                    Whether it is in use",
                           "\n  address    ADDRESS or ADDRESS/PREFIX  Address\n",
                           "\n  dns        ADDRESS,ADDRESS            Name servers set by hand\n"})
    EXPECT_THAT(help, testing::HasSubstr(line));
}

TEST(HelpTest, AnswersInJsonHaveTheirDocumentedShapes) {
  const Json list = jsonIn(runCamcfg({"--json", "help"}).out);
  EXPECT_EQ(list["topics"][0],
            (Json{{"name", "completion"}, {"title", "Completing words in bash and zsh"}}));
  EXPECT_EQ(jsonIn(runCamcfg({"--json", "help", "list"}).out),
            (Json{{"command", "list"},
                  {"help", "List the parameters and their current values"},
                  {"text", helpText(allGroups(), "list")}}));
  const Topic& first = allTopics().front();
  EXPECT_EQ(jsonIn(runCamcfg({"--json", "help", first.name}).out),
            (Json{{"topic", first.name}, {"title", first.title}, {"text", first.text}}));
}

}  // namespace
}  // namespace camcfg::tests
