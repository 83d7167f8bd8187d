#include "base/markup.h"

#include <gtest/gtest.h>

#include <string>

namespace camcfg::tests {
namespace {

using tool::Markup;
using tool::markupIn;
using tool::offsetOf;
using Kind = Markup::Kind;

// "KIND:part" for each, with what is between them.
std::string shown(std::string_view bytes) {
  std::string text;
  for (const Markup& piece : markupIn(bytes))
    text += std::to_string(static_cast<int>(piece.kind)) + std::string(piece.all) + "|";
  return text;
}

TEST(MarkupTest, PiecesFollowOneAnotherWithoutAGap) {
  const std::string bytes =
      "\xef\xbb\xbf<?xml a?>\r\n<!-- <b> --><!DOCTYPE a>\n<a b = 'x>\"' \n c=\"<'\" "
      "><![CDATA[</a>]]>t "
      "< d /></a\n>\n";
  std::string all;
  for (const Markup& piece : markupIn(bytes)) {
    EXPECT_EQ(offsetOf(piece.all, bytes), all.size());
    all += piece.all;
  }
  EXPECT_EQ(all, bytes);
}

TEST(MarkupTest, TagsHaveTheirKindsAndNames) {
  EXPECT_EQ(shown("<a><b/>t</a>"), "1<a>|2<b/>|0t|3</a>|");
  EXPECT_EQ(shown("<?x?><!--c--><![CDATA[t]]><!D>"), "6<?x?>|4<!--c-->|5<![CDATA[t]]>|7<!D>|");
  EXPECT_EQ(markupIn("< a.b:c-d />").front().name, "a.b:c-d");
}

TEST(MarkupTest, AttributesAreWhereTheyAreWritten) {
  const std::string bytes = "<a\n\tb = '1\"'c=\"&#10;\"/>";
  const Markup tag = markupIn(bytes).front();
  ASSERT_EQ(tag.attributes.size(), 2U);
  EXPECT_EQ(tag.attributes[0].name, "b");
  EXPECT_EQ(tag.attributes[0].value, "1\"");
  EXPECT_EQ(tag.attributes[0].all, "b = '1\"'");
  EXPECT_EQ(tag.attributes[1].value, "&#10;");
  EXPECT_EQ(offsetOf(tag.attributes[1].name, bytes), bytes.find("c="));
}

TEST(MarkupTest, EndsWhereTheLibraryEnds) {
  EXPECT_EQ(shown(std::string("<a/>\0<b/>", 9)), "2<a/>|");
  for (const char* cut : {"<a/><", "<a/><b", "<a/><b c", "<a/><b c=", "<a/><b c='", "<a/><!-- ->",
                          "<a/><b c=1>", "<a/><b / >", "<a/><1/>"})
    EXPECT_EQ(shown(cut), "2<a/>|") << cut;
}

TEST(MarkupTest, AByteOrderMarkMayComeAfterWhiteSpace) {
  EXPECT_EQ(tool::lengthToMark("\xef\xbb\xbf<a/>"), 3U);
  EXPECT_EQ(tool::lengthToMark(" \n\xef\xbb\xbf<a/>"), 5U);
  EXPECT_EQ(tool::lengthToMark("<a/>\xef\xbb\xbf"), 0U);
  EXPECT_EQ(tool::lengthToMark(""), 0U);
}

}  // namespace
}  // namespace camcfg::tests
