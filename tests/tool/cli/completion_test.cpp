#include "cli/completion.h"

#include <gmock/gmock.h>

#include "base/outcome.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using testing::ElementsAre;
using testing::IsEmpty;

Answer nothing(const Arguments& /*arguments*/) {
  return {};
}

// What was given before the word.
std::vector<Candidate> echo(const Arguments& before) {
  std::vector<Candidate> candidates = {{"one=" + before.text("ONE")}};
  for (const std::string& text : before.texts("MORE")) candidates.push_back({"more=" + text});
  if (before.given("--pan")) candidates.push_back({"pan=" + before.text("--pan")});
  return candidates;
}

std::vector<Candidate> fixedWords(const Arguments& /*before*/) {
  return {{"a"}, {"tab\there"}, {""}, {"line\nbreak"}, {"b c", "help"}};
}

const std::vector<CommandGroup> kGroups = {
    {"First",
     {{"take",
       "Takes things",
       {{Option::Argument, "ONE", "A word", fixedWords},
        {Option::OptionalArguments, "MORE", "Words", echo},
        {Option::Flag, "--quick", "A flag"},
        {Option::Value, "--pan", "A value", fixedWords},
        {Option::HostDirectory, "--into", "A directory"}},
       nothing},
      {"read", "Reads", {{Option::HostFile, "IN", "A file"}}, nothing},
      {"look", "Looks", {{Option::HostFiles, "FILE", "Files"}}, nothing},
      {"secret",
       "For programs",
       {{Option::Argument, "ONE", "A word", fixedWords}},
       nothing,
       Status::Refused,
       true},
      {"show", "Shows", {{Option::OptionalArgument, "ONE", "A word", fixedWords}}, nothing},
      {"show all", "Shows all", {}, nothing},
      {"stream", "Has others below it", {}, nullptr},
      {"stream cache", "Below", {{Option::Argument, "ONE", "A number", fixedWords}}, nothing},
      {"stream cache select", "Below that", {{Option::Argument, "TWO", "A word", echo}}, nothing},
      {"stream cache hide", "For programs", {}, nothing, Status::Refused, true}}}};

std::vector<std::string> wordsAt(const std::vector<std::string>& line) {
  std::vector<std::string> words;
  for (const Candidate& candidate : placeIn(kGroups, line).candidates())
    words.push_back(candidate.word);
  return words;
}

TEST(CompletionTest, CommandsComeFirst) {
  EXPECT_THAT(wordsAt({}), ElementsAre("take", "read", "look", "show", "stream"));
  EXPECT_THAT(wordsAt({""}), ElementsAre("take", "read", "look", "show", "stream"));
  EXPECT_THAT(wordsAt({"stream", ""}), ElementsAre("cache"));
  EXPECT_EQ(placeIn(kGroups, {""}).candidates().front().help, "Takes things");
}

TEST(CompletionTest, WordsThatCannotBeTypedAreLeftOut) {
  EXPECT_THAT(wordsAt({"take", ""}), ElementsAre("a", "b c"));
}

TEST(CompletionTest, WordsKnowWhatComesBeforeThem) {
  EXPECT_THAT(wordsAt({"take", "x", ""}), ElementsAre("one=x"));
  EXPECT_THAT(wordsAt({"take", "--pan", "3", "x", "--quick", "y", "-4", ""}),
              ElementsAre("one=x", "more=y", "more=-4", "pan=3"));
  EXPECT_THAT(wordsAt({"take", "--pan=3", "--", "--quick", ""}),
              ElementsAre("one=--quick", "pan=3"));
}

TEST(CompletionTest, CommandsBelowFollowWhatTheOneAboveMustHave) {
  EXPECT_THAT(wordsAt({"stream", "cache", ""}), ElementsAre("a", "b c"));
  EXPECT_THAT(wordsAt({"stream", "cache", "7", ""}), ElementsAre("select"));
  EXPECT_THAT(wordsAt({"stream", "cache", "7", "select", ""}), ElementsAre("one=7"));
  EXPECT_THAT(wordsAt({"show", ""}), ElementsAre("all", "a", "b c"));
}

TEST(CompletionTest, OptionsAreOfferedAfterAHyphenUnlessTheyAreGiven) {
  EXPECT_THAT(wordsAt({"read", "-"}), testing::Contains("--root"));
  EXPECT_THAT(wordsAt({"read", "-"}), testing::Not(testing::Contains("--quick")));
  EXPECT_THAT(wordsAt({"take", "-"}), testing::IsSupersetOf({"--quick", "--pan", "--into"}));
  EXPECT_THAT(wordsAt({"take", "--pan", "1", "-"}), testing::Not(testing::Contains("--pan")));
  EXPECT_THAT(wordsAt({"take", "--", "-"}), ElementsAre("a", "b c"));
}

TEST(CompletionTest, ValuesFollowTheirOptions) {
  EXPECT_THAT(wordsAt({"take", "--pan", ""}), ElementsAre("a", "b c"));
  EXPECT_THAT(wordsAt({"take", "--pan=x"}), ElementsAre("--pan=a", "--pan=b c"));
  EXPECT_EQ(placeIn(kGroups, {"take", "--into", ""}).kind, CompletionPlace::OfDirectories);
  EXPECT_EQ(placeIn(kGroups, {"--root", ""}).kind, CompletionPlace::OfDirectories);
  EXPECT_EQ(placeIn(kGroups, {"take", "--root=x"}).kind, CompletionPlace::OfDirectories);
}

TEST(CompletionTest, FilesAreTheShells) {
  EXPECT_EQ(placeIn(kGroups, {"read", ""}).kind, CompletionPlace::OfFiles);
  EXPECT_EQ(placeIn(kGroups, {"look", "x", ""}).kind, CompletionPlace::OfFiles);
  EXPECT_THAT(wordsAt({"read", "x", ""}), IsEmpty());
}

TEST(CompletionTest, RootIsTakenFromTheLine) {
  EXPECT_EQ(placeIn(kGroups, {"take", ""}).root, std::nullopt);
  EXPECT_EQ(placeIn(kGroups, {"--root", "d", "take", ""}).root, "d");
  EXPECT_EQ(placeIn(kGroups, {"take", "--root=d", ""}).root, "d");
}

TEST(CompletionTest, LinesThatMakeNoSenseOfferNothing) {
  EXPECT_THAT(wordsAt({"nonsense", ""}), ElementsAre("take", "read", "look", "show", "stream"));
  EXPECT_THAT(wordsAt({"take", "--nonsense=", ""}), ElementsAre("a", "b c"));
  EXPECT_THAT(wordsAt({"take", "--nonsense="}), IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
