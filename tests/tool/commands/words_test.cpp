#include "commands/groups.h"

#include "base/outcome.h"
#include "cli/completion.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;
using namespace tool::commands;
using testing::ElementsAre;
using testing::IsEmpty;

/// "WORD" or "WORD (HELP)" each.
std::vector<std::string> shown(const Candidates& candidates) {
  std::vector<std::string> words;
  for (const Candidate& candidate : candidates)
    words.push_back(candidate.word + (candidate.help.empty() ? "" : " (" + candidate.help + ")"));
  return words;
}

class WordsTest : public testing::Test {
 protected:
  WordsTest() {
    device.write(kBusiness, kParameters);
    device.write(kMpp, kMedia);
  }

  static Arguments nothing() { return placeIn(allGroups(), {""}).before; }
  static Arguments given(const std::string& name, const std::string& text) {
    Arguments arguments = nothing();
    arguments[name].texts = {text};
    return arguments;
  }
  static std::vector<std::string> idsOf(const std::string& kind) {
    return shown(wordsFor("ID")(given("KIND", kind)));
  }

  testkit::DeviceRoot device;
};

TEST_F(WordsTest, ParametersAreShownWithWhatTheyAreSetTo) {
  EXPECT_THAT(shown(wordsFor("NAME")(given("SECTION", "Image"))),
              ElementsAre("Brightness (0)", "Mode (Auto)"));
}

TEST_F(WordsTest, CardsAreShownWithTheirAddresses) {
  EXPECT_THAT(shown(wordsFor("CARD")(nothing())), ElementsAre("Eth0 (192.0.2.7)"));
}

TEST_F(WordsTest, MediaIdsAreThoseOfTheirKind) {
  EXPECT_THAT(idsOf("source"), ElementsAre("0 (main)", "1 (mic)", "2 (line)"));
  EXPECT_THAT(idsOf("cache"), ElementsAre("0 (program)", "7 (audio)"));
  EXPECT_THAT(idsOf("websocket"), ElementsAre("7 (listen)"));
  EXPECT_THAT(idsOf("rtsp"), ElementsAre("live", "empty"));
  EXPECT_THAT(idsOf("ndi"), ElementsAre("0 (One)"));
  EXPECT_THAT(idsOf("srt"), ElementsAre("0", "1 (example.com)"));
  EXPECT_THAT(idsOf("fax"), IsEmpty());
  EXPECT_THAT(shown(wordsFor("ID")(nothing())), IsEmpty());
}

TEST_F(WordsTest, AddressesThatMayHoldPasswordsAreNotShown) {
  EXPECT_THAT(idsOf("rtmp"), ElementsAre("0", "1"));
}

TEST_F(WordsTest, EveryKindHasIds) {
  for (const Candidate& kind : wordsFor("KIND")(nothing()))
    EXPECT_THAT(idsOf(kind.word), Not(IsEmpty()));
}

TEST_F(WordsTest, UnusableFilesAreRefused) {
  device.write(kBusiness, "<");
  EXPECT_THROW(wordsFor("SECTION")(nothing()), Refusal);
  EXPECT_THROW(wordsFor("KEY")(given("LANGUAGE", "None")), Refusal);
}

}  // namespace
}  // namespace camcfg::tests
