#include "commands/groups.h"

#include "cli/completion.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using namespace tool::commands;
using testing::ElementsAre;

Answer nothing(const Arguments& /*arguments*/) {
  return {};
}

/// A command as somebody may write it who gives no thought to completion.
std::vector<CommandGroup> groupsWith(const Option& option) {
  std::vector<CommandGroup> groups = {
      {"First",
       {{"work", "Works", {option, {Option::OptionalArgument, "NAME", "A name"}}, nothing}}}};
  addWords(groups);
  return groups;
}

std::vector<std::string> wordsAt(const std::vector<CommandGroup>& groups,
                                 const std::vector<std::string>& line) {
  std::vector<std::string> words;
  for (const Candidate& candidate : placeIn(groups, line).candidates())
    words.push_back(candidate.word);
  return words;
}

class VocabularyTest : public testing::Test {
 protected:
  VocabularyTest() { device.write(kBusiness, kParameters); }

  testkit::DeviceRoot device;
};

TEST_F(VocabularyTest, ArgumentsAreCompletedByTheirNames) {
  const auto groups = groupsWith({Option::Argument, "SECTION", "A section"});
  EXPECT_THAT(wordsAt(groups, {"work", ""}), ElementsAre("System", "Image", "NetWork"));
  EXPECT_THAT(wordsAt(groups, {"work", "Image", ""}), ElementsAre("Brightness", "Mode"));
}

TEST_F(VocabularyTest, OptionsAreCompletedByTheirNames) {
  const auto groups = groupsWith({Option::Value, "--section", "A section"});
  EXPECT_THAT(wordsAt(groups, {"work", "--section", ""}),
              testing::IsSupersetOf({"System", "Image", "NetWork", "live.srt", "presets"}));
}

TEST_F(VocabularyTest, WordsOfTheirOwnComeFirst) {
  const auto groups = groupsWith({Option::Argument, "SECTION", "A word", oneOf({"a", "b"})});
  EXPECT_THAT(wordsAt(groups, {"work", ""}), ElementsAre("a", "b"));
  EXPECT_THAT(wordsAt(groupsWith({Option::Argument, "NAME", "A name", anyWord}), {"work", ""}),
              ElementsAre());
}

TEST_F(VocabularyTest, FlagsHaveNoWords) {
  const auto groups = groupsWith({Option::Flag, "--section", "A flag"});
  EXPECT_FALSE(groups[0].commands[0].options[0].words);
}

TEST_F(VocabularyTest, NamesThatMeanNothingHaveNoWords) {
  const auto groups = groupsWith({Option::Argument, "PORT", "A port"});
  EXPECT_THAT(wordsAt(groups, {"work", ""}), ElementsAre());
}

}  // namespace
}  // namespace camcfg::tests
