#include "cli/man_page.h"

#include <gmock/gmock.h>

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::cli;

TEST(RoffTest, CharactersThatRoffReadsItsOwnWayAreEscaped) {
  EXPECT_EQ(roffText("--a 'b' \"c\" \\d `^~"),
            "\\-\\-a \\(aqb\\(aq \\(dqc\\(dq \\ed \\(ga\\(ha\\(ti");
  EXPECT_EQ(roffText(".br"), "\\&.br");
  EXPECT_EQ(roffText("a.b"), "a.b");
  EXPECT_EQ(roffBold("-v"), "\\fB\\-v\\fR");
  EXPECT_EQ(roffItalic("DIR"), "\\fIDIR\\fR");
}

TEST(RoffTest, ParagraphsAreFilledAndIndentedLinesAreNot) {
  EXPECT_EQ(roffParagraphs("One\ntwo.\n\nThree:\n\n  a  b\n    c\n\n  d\n\nFour.\n"),
            "One\ntwo.\n.PP\nThree:\n.PP\n.RS 2\n.nf\na  b\n  c\n\nd\n.fi\n.RE\n.PP\nFour.\n");
}

TEST(RoffTest, TextMayBeginAndEndWithIndentedLines) {
  EXPECT_EQ(roffParagraphs("  .a\nText.\n\n  b\n"),
            ".RS 2\n.nf\n\\&.a\n.fi\n.RE\nText.\n.PP\n.RS 2\n.nf\nb\n.fi\n.RE\n");
}

TEST(RoffTest, LongLinesAreBrokenBetweenWords) {
  const std::string word(30, 'x');
  EXPECT_EQ(roffParagraphs(word + " " + word + " " + word),
            std::string(word).append(" ").append(word).append("\n").append(word).append("\n"));
  const std::string endless(200, 'x');
  EXPECT_EQ(roffParagraphs("a " + endless + " .b"), "a\n" + endless + "\n\\&.b\n");
}

}  // namespace
}  // namespace camcfg::tests
