#include "frame/printable.h"

#include <gmock/gmock.h>

namespace camcfg::tests {
namespace {

TEST(PrintableTest, ControlCharactersAreWrittenOut) {
  EXPECT_EQ(tool::printable("a\nb\tc\x1b[2J\r\x7f"), "a\\nb\\tc\\x1b[2J\\x0d\\x7f");
}

TEST(PrintableTest, OtherCharactersStay) {
  EXPECT_EQ(tool::printable("Zur\xc3\xbc"
                            "ck \xe9 \\n"),
            "Zur\xc3\xbc"
            "ck \xe9 \\n");
}

TEST(PrintableTest, CharactersAreNotBytes) {
  EXPECT_EQ(tool::characters(""), 0U);
  EXPECT_EQ(tool::characters("abc"), 3U);
  EXPECT_EQ(tool::characters("Zur\xc3\xbc"
                             "ck"),
            6U);
}

TEST(PrintableTest, EndlessWordsAreCutBetweenTwoCharacters) {
  const std::string longest(512, 'x');
  EXPECT_EQ(tool::withShortWords("a " + longest + " b"), "a " + longest + " b");
  EXPECT_EQ(tool::withShortWords("a '" + longest + " b"), "a '" + std::string(63, 'x') + "... b");
  std::string accents(63, 'x');
  for (int i = 0; i < 300; ++i) accents += "\xc3\xa9";
  EXPECT_EQ(tool::withShortWords(accents), std::string(63, 'x') + "...");
  EXPECT_EQ(tool::withShortWords(""), "");
  EXPECT_EQ(tool::withShortWords("  a  "), "  a  ");
}

}  // namespace
}  // namespace camcfg::tests
