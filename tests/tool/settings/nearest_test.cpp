#include "settings/node.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace camcfg::tool::settings {
namespace {

TEST(OutsideTest, NearestOfANumberIsTheEndThatItPassed) {
  EXPECT_EQ(outside("70000", 70000, {1, 65535}),
            "70000 is outside 1..65535; the nearest permitted is 65535");
  EXPECT_EQ(outside("-7", -7, {1, 65535}), "-7 is outside 1..65535; the nearest permitted is 1");
}

TEST(OutsideTest, GreatestOneOnAStepIsTheNearestFromAbove) {
  EXPECT_EQ(outside("11", 11, {1, 10}, 4), "11 is outside 1..10; the nearest permitted is 9");
  EXPECT_EQ(outside("11", 11, {2, 10}, 4), "11 is outside 2..10; the nearest permitted is 10");
  EXPECT_EQ(outside("99", 99, {-50, 50}, 5), "99 is outside -50..50; the nearest permitted is 50");
  EXPECT_EQ(outside("0", 0, {1, 10}, 4), "0 is outside 1..10; the nearest permitted is 1");
}

TEST(OutsideTest, StepThatIsNoneIsPassedOver) {
  for (const int step : {0, 1, -3})
    EXPECT_EQ(outside("11", 11, {1, 10}, step), "11 is outside 1..10; the nearest permitted is 10");
}

TEST(OutsideTest, WidestRangeIsCountedWithoutOverflow) {
  EXPECT_EQ(outside("2147483648", 2147483648, {INT32_MIN, INT32_MAX}, INT32_MAX),
            "2147483648 is outside -2147483648..2147483647; the nearest permitted is 2147483646");
}

TEST(OutsideTest, EmptyRangePermitsNothing) {
  EXPECT_EQ(outside("5", 5, {9, 1}), "5 is outside 9..1");
}

TEST(NearestOfTest, TextIsNamedThatHoldsWhatWasWritten) {
  EXPECT_EQ(nearestOf("Man", {"Auto", "Manual"}), "; the nearest permitted is 'Manual'");
}

TEST(NearestOfTest, TextIsNamedThatIsSpeltMostLikeIt) {
  EXPECT_EQ(nearestOf("mnaual", {"Auto", "Manual"}), "; the nearest permitted is 'Manual'");
  EXPECT_EQ(nearestOf("auto", {"Auto", "Half-Auto"}), "; the nearest permitted is 'Auto'");
  EXPECT_EQ(nearestOf("mb", {"KB", "MB"}), "; the nearest permitted is 'MB'");
}

TEST(NearestOfTest, NothingIsNamedWhereNothingComesNear) {
  for (const char* written : {"", "Off", "GB", "A", "u"})
    EXPECT_EQ(nearestOf(written, {"Auto", "Manual", "KB", "MB", "AutoB"}), "") << written;
}

TEST(NearestOfLengthTest, TextIsCutBetweenTwoCharacters) {
  EXPECT_EQ(nearestOfLength("abcdef", 6), "");
  EXPECT_EQ(nearestOfLength("abcdef", 4), "; the nearest permitted is 'abcd'");
  EXPECT_EQ(nearestOfLength("abc\xc3\xa9", 4), "; the nearest permitted is 'abc'");
}

}  // namespace
}  // namespace camcfg::tool::settings
