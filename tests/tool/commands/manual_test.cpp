#include <fstream>
#include <regex>
#include <set>

#include "cli/command.h"
#include "cli/man_page.h"
#include "commands/groups.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using namespace tool::commands;
using testing::HasSubstr;

/// The page that the tool prints, in a file that programs of this system can read.
class ManualTest : public testing::Test {
 protected:
  ManualTest() { device.write("/camcfg.1", page); }

  /// What a program has to say of the page.
  void expectNoComplaint(std::vector<std::string> words) const {
    words.push_back(device.hostPath() + "/camcfg.1");
    const ToolRun run = runCommand(words);
    if (run.status == 127) GTEST_SKIP() << words.front() << " is not installed";
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_EQ(run.err, "");
  }

  testkit::DeviceRoot device{testkit::DeviceRoot::StayOut};
  const std::string page = runCamcfg({"man"}).out;
};

TEST_F(ManualTest, HasItsUsualSectionsInTheirOrder) {
  std::size_t place = 0;
  for (const char* heading :
       {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "EXIT STATUS", "ENVIRONMENT",
        "FILES", "EXAMPLES", "NOTES", "SEE ALSO"}) {
    const std::size_t found = page.find(std::string("\n.SH ") + heading + "\n", place);
    ASSERT_NE(found, std::string::npos) << heading;
    place = found;
  }
}

// The bold words of each term that is explained, as they are typed.
std::set<std::string> termsOf(const std::string& page) {
  std::set<std::string> terms;
  const std::regex term("\\.TP\n(.*)\n");
  const std::regex bold("\\\\fB(.*?)\\\\fR");
  for (std::sregex_iterator at(page.begin(), page.end(), term), end; at != end; ++at) {
    const std::string line = (*at)[1].str();
    std::string words;
    for (std::sregex_iterator word(line.begin(), line.end(), bold); word != end; ++word)
      words += (words.empty() ? "" : " ") + (*word)[1].str();
    terms.insert(words);
  }
  return terms;
}

TEST_F(ManualTest, EveryCommandAndWhatItTakesHasItsPlace) {
  const std::set<std::string> terms = termsOf(page);
  for (const CommandGroup& group : allGroups())
    for (const Command& command : group.commands) {
      if (command.hidden || !command.run) continue;
      EXPECT_EQ(terms.count(roffText(command.name)), 1U) << command.name;
      EXPECT_THAT(page, HasSubstr("\n" + roffParagraphs(std::string(command.help) + ".")));
      for (const Option& option : command.options) {
        const bool isTerm = option.name[0] != '-' || terms.count(roffText(option.name)) != 0;
        EXPECT_TRUE(isTerm) << option.name;
        EXPECT_THAT(page, HasSubstr("\n" + roffParagraphs(std::string(option.help) + ".")));
      }
    }
}

TEST_F(ManualTest, EveryTopicIsInIt) {
  for (const Topic& topic : allTopics())
    EXPECT_THAT(page, HasSubstr("\n" + roffParagraphs(topic.text)));
}

TEST_F(ManualTest, BuildHasWrittenTheSamePage) {
  std::ifstream built(CAMCFG_MANUAL);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(built), {}), page);
}

TEST_F(ManualTest, MandocHasNothingAgainstIt) {
  expectNoComplaint({"mandoc", "-T", "lint"});
}

TEST_F(ManualTest, GroffHasNothingAgainstIt) {
  expectNoComplaint({"groff", "-man", "-ww", "-Tutf8", "-z"});
}

}  // namespace
}  // namespace camcfg::tests
