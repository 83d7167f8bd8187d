#include "cli/terminal.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;

class WantsColoursTest : public testing::Test {
 protected:
  WantsColoursTest() {
    setenv("TERM", "xterm", 1);
    unsetenv("NO_COLOR");
  }
};

TEST_F(WantsColoursTest, TerminalsAreColoured) {
  EXPECT_TRUE(wantsColours("auto", true));
  EXPECT_FALSE(wantsColours("auto", false));
}

TEST_F(WantsColoursTest, NoColorForbidsThemUnlessItIsEmpty) {
  setenv("NO_COLOR", "", 1);
  EXPECT_TRUE(wantsColours("auto", true));
  setenv("NO_COLOR", "0", 1);
  EXPECT_FALSE(wantsColours("auto", true));
}

TEST_F(WantsColoursTest, DumbAndUnknownTerminalsAreNotColoured) {
  setenv("TERM", "dumb", 1);
  EXPECT_FALSE(wantsColours("auto", true));
  setenv("TERM", "", 1);
  EXPECT_FALSE(wantsColours("auto", true));
  unsetenv("TERM");
  EXPECT_FALSE(wantsColours("auto", true));
}

TEST_F(WantsColoursTest, AnExplicitChoiceCounts) {
  setenv("NO_COLOR", "1", 1);
  setenv("TERM", "dumb", 1);
  EXPECT_TRUE(wantsColours("always", false));
  unsetenv("NO_COLOR");
  setenv("TERM", "xterm", 1);
  EXPECT_FALSE(wantsColours("never", true));
}

TEST(ToneTest, ColoursTakeNoRoom) {
  EXPECT_EQ(shownWidth(coloured("good", Tone::Good)), 4U);
  EXPECT_EQ(shownWidth("a" + coloured("\xc3\xbc", Tone::Bad) + "b"), 3U);
  EXPECT_EQ(shownWidth(""), 0U);
}

TEST(ToneTest, PlainAndEmptyTextsStayAsTheyAre) {
  EXPECT_EQ(coloured("x", Tone::Plain), "x");
  EXPECT_EQ(coloured("", Tone::Bad), "");
  EXPECT_EQ(coloured("x", Tone::Bad), "\x1b[31mx\x1b[0m");
}

TEST(ToneTest, WordsForStatesHaveAMeaning) {
  EXPECT_EQ(toneOfState("good"), Tone::Good);
  EXPECT_EQ(toneOfState("out-of-step"), Tone::Warning);
  EXPECT_EQ(toneOfState("damaged"), Tone::Bad);
  EXPECT_EQ(toneOfState("-"), Tone::Plain);
}

}  // namespace
}  // namespace camcfg::tests
