#include "fuzz/input.h"

#include <gmock/gmock.h>

#include <climits>

namespace camcfg::fuzz {
namespace {

using testing::ElementsAre;

TEST(InputTest, PartsAreBetweenLinesOfTwoPercentSigns) {
  EXPECT_THAT(split("a\n%%\nb\n\n%%\n"), ElementsAre("a", "b\n", ""));
  EXPECT_THAT(split(""), ElementsAre(""));
  EXPECT_THAT(split("a%%\n%%"), ElementsAre("a%%\n%%"));
}

TEST(InputTest, JoinedPartsAreTheInputAgain) {
  for (const char* input : {"", "a", "\n%%\n", "a\n%%\n\n%%\nb"})
    EXPECT_EQ(join(split(input)), input);
}

TEST(InputTest, APartThatIsMissingIsEmpty) {
  const Input input("a\n%%\nb");
  EXPECT_EQ(input.part(1), "b");
  EXPECT_EQ(input.part(2), "");
}

TEST(InputTest, LinesAreThoseOfTheFirstPart) {
  const Input input("a\n\nc\n%%\nd");
  EXPECT_EQ(input.line(0), "a");
  EXPECT_EQ(input.line(1), "");
  EXPECT_EQ(input.line(2), "c");
  EXPECT_EQ(input.line(3), "");
}

TEST(InputTest, ALineEndsAtAZeroByte) {
  EXPECT_EQ(Input(std::string("a\0b\nc", 5)).line(0), "a");
  EXPECT_EQ(Input(std::string("a\0b\nc", 5)).line(1), "c");
}

TEST(InputTest, ANumberIsTheNearestThatFits) {
  const Input input("-5x\n99999999999\n-99999999999\nx");
  EXPECT_EQ(input.number(0), -5);
  EXPECT_EQ(input.number(1), INT_MAX);
  EXPECT_EQ(input.number(2), INT_MIN);
  EXPECT_EQ(input.number(3), 0);
}

TEST(InputTest, AFileThatCannotBeReadAgainOnceItIsWrittenIsNotStable) {
  EXPECT_TRUE(Input("<a/>\n%%\n{}\n%%\n<a>").isStable());
  EXPECT_FALSE(Input("x\n%%\n<a/>text</b>").isStable());
}

}  // namespace
}  // namespace camcfg::fuzz
