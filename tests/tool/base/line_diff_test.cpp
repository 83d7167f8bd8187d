#include "base/line_diff.h"

#include <gtest/gtest.h>

namespace camcfg::tests {
namespace {

using tool::lineDiff;

TEST(LineDiffTest, SaysNothingOfTextsThatAreTheSame) {
  EXPECT_EQ(lineDiff("f", "", ""), "");
  EXPECT_EQ(lineDiff("f", "a\n", "a\n"), "");
}

TEST(LineDiffTest, ShowsEachPlaceWithItsLines) {
  EXPECT_EQ(lineDiff("f", "a\nb\nc\nd\ne\n", "a\nB\nc\nd\ne\nf\n"),
            "--- f\n+++ f\n@@ -2,1 +2,1 @@\n-b\n+B\n@@ -5,0 +6,1 @@\n+f\n");
  EXPECT_EQ(lineDiff("f", "x\na\nb\n", "a\nb\n"), "--- f\n+++ f\n@@ -1,1 +0,0 @@\n-x\n");
}

TEST(LineDiffTest, ShowsAMovedLineWhereItGoesAndWhereItComes) {
  EXPECT_EQ(lineDiff("f", "a\nlonger\nb\nshort\nc\n", "a\nshort\nlonger\nb\nc\n"),
            "--- f\n+++ f\n@@ -1,0 +2,1 @@\n+short\n@@ -4,1 +4,0 @@\n-short\n");
}

TEST(LineDiffTest, WritesControlCharactersOut) {
  EXPECT_EQ(lineDiff("f", "a \r\n", "a\r\n"), "--- f\n+++ f\n@@ -1,1 +1,1 @@\n-a \\x0d\n+a\\x0d\n");
}

TEST(LineDiffTest, TakesAllThatIsBetweenTheChangesOfLongTexts) {
  std::string before;
  std::string after;
  for (int i = 0; i < 3000; ++i) {
    before += "a" + std::to_string(i) + "\n";
    after += "b" + std::to_string(i) + "\n";
  }
  EXPECT_EQ(lineDiff("f", before + "same\n", after + "same\n").substr(0, 36),
            "--- f\n+++ f\n@@ -1,3000 +1,3000 @@\n-a");
}

}  // namespace
}  // namespace camcfg::tests
