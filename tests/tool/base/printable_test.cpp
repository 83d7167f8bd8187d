#include "base/plain_text.h"

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

TEST(PrintableTest, ControlCharactersBeyondAsciiAreWrittenOutToo) {
  EXPECT_EQ(tool::printable("a\xc2\x9b"
                            "2J"),
            "a\\u009b2J");
  EXPECT_EQ(tool::printable("\xc2\x80\xc2\x9f\xc2\xa0"), "\\u0080\\u009f\xc2\xa0");
  EXPECT_EQ(tool::printable("a\x9b\x9f"), "a\\x9b\\x9f");
}

TEST(PrintableTest, BytesWithinCharactersAreNoControlCharacters) {
  EXPECT_EQ(tool::printable("\xe2\x82\x9b \xf0\x9f\x98\x80 \xc4\x9b"),
            "\xe2\x82\x9b \xf0\x9f\x98\x80 \xc4\x9b");
  EXPECT_EQ(tool::printable("\xe2\x9b"), "\xe2\\x9b");
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
