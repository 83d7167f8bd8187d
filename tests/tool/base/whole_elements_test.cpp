#include "base/whole_elements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using tool::FoundElement;

// "NAME" of a whole element, "NAME..." of one that is not; with the names of what it is in, "?" where
// that is not known: "b/a" is <b> in <a>.
std::vector<std::string> foundIn(const std::string& bytes) {
  const std::vector<FoundElement> elements = tool::elementsIn(bytes);
  std::vector<std::string> names;
  for (const FoundElement& element : elements) {
    if (element.tag.empty()) continue;
    std::string name = std::string(element.name) + (element.isWhole() ? "" : "...");
    int parent = element.parent;
    for (; parent >= 0; parent = elements[parent].parent)
      name += "/" + std::string(elements[parent].name);
    names.push_back(name + (parent == FoundElement::Unknown ? "/?" : ""));
  }
  return names;
}

const std::string kZeroes(5, '\0');

TEST(WholeElementsTest, AWholeDocumentIsKnownThroughout) {
  EXPECT_THAT(
      foundIn("<?xml version='1.0'?><!DOCTYPE a>\n<a x='1'>\n <b/><!-- <c/> --><d >\n</d></a><e/>"),
      ElementsAre("a", "b/a", "d/a", "e"));
}

TEST(WholeElementsTest, ElementsHaveTheirTextTagAndLine) {
  const std::string bytes = "<a>\n <b c=\"1\">\n <d/>\n </b>\n</a>";
  const std::vector<FoundElement> elements = tool::elementsIn(bytes);
  ASSERT_EQ(elements.size(), 3U);
  EXPECT_EQ(elements[1].tag, "<b c=\"1\">");
  EXPECT_EQ(elements[1].all, "<b c=\"1\">\n <d/>\n </b>");
  EXPECT_EQ(elements[1].line, 2);
  EXPECT_EQ(elements[2].line, 3);
  EXPECT_EQ(elements[2].parent, 1);
}

TEST(WholeElementsTest, ACutLeavesWhatIsBeforeIt) {
  EXPECT_THAT(foundIn("<a><b/><c d='1"), ElementsAre("a...", "b/a"));
  EXPECT_THAT(foundIn("<a><b/><c d='1'>"), ElementsAre("a...", "b/a", "c.../a"));
  EXPECT_THAT(foundIn("<a><b/></a"), ElementsAre("a...", "b/a"));
  EXPECT_THAT(foundIn("<a><b/><!-- <c/>"), ElementsAre("a...", "b/a"));
}

TEST(WholeElementsTest, AfterADamageEndTagsSayWhatElementsAreIn) {
  EXPECT_THAT(foundIn("<a><b/>" + kZeroes + "<c/></a><d/>"),
              ElementsAre("a...", "b/a", "c/a/?", "d/?"));
  EXPECT_THAT(foundIn("<a><b/>" + kZeroes + "<c/></z></y><d/>"),
              ElementsAre("a...", "b/a", "c/z/y/?", "d/?"));
  EXPECT_THAT(foundIn("<a>" + kZeroes + "<b><c/></b>"), ElementsAre("a...", "b/?", "c/b/?"));
}

TEST(WholeElementsTest, BetweenTwoDamagesNothingSaysIt) {
  EXPECT_THAT(foundIn("<a>" + kZeroes + "<b/>" + kZeroes + "<c/></a>"),
              ElementsAre("a...", "b/?", "c/a/?"));
}

TEST(WholeElementsTest, ATagIsWholeOrNothing) {
  EXPECT_THAT(foundIn("<a><b c='" + kZeroes + "'/></a>"), ElementsAre("a..."));
  EXPECT_THAT(foundIn("<a><b c='1/><d e='2'/></a>"), ElementsAre("a...", "d/a/?"));
  EXPECT_THAT(foundIn("<a><b c=1/><d/></a>"), ElementsAre("a...", "d/a/?"));
  EXPECT_THAT(foundIn("<a><b c='1'd='2'/><e/></a>"), ElementsAre("a...", "e/a/?"));
  EXPECT_THAT(foundIn("<a>b c='1'/><d/></a>"), ElementsAre("a...", "d/a/?"));
}

TEST(WholeElementsTest, AnElementWithDamageInItIsNotWhole) {
  EXPECT_THAT(foundIn("<a><b><c/>" + kZeroes + "</b></a>"), ElementsAre("a...", "b.../a", "c/b/a"));
  EXPECT_THAT(foundIn("<a><b></c></b></a>"), ElementsAre("a...", "b.../a"));
}

TEST(WholeElementsTest, WhereTagsDisagreeNothingSaysWhatElementsAreIn) {
  EXPECT_THAT(foundIn("<a><b><c/><d/></e><f/></a>"),
              ElementsAre("a...", "b.../a", "c/?", "d/?", "f/a/?"));
}

TEST(WholeElementsTest, WhatMayHaveBeenInACommentIsLeftOut) {
  EXPECT_THAT(foundIn("<a/>" + kZeroes + " <b/> old: <c/> --><d/>"), ElementsAre("a", "d/?"));
  EXPECT_THAT(foundIn("<a/><!-- " + kZeroes + " <b/> --><d/>"), ElementsAre("a", "d/?"));
  EXPECT_THAT(foundIn("<a/><!-- x " + kZeroes + "<b/><!-- y --><d/>"),
              ElementsAre("a", "b/?", "d/?"));
  EXPECT_THAT(foundIn("<a/><!-- x <b/> <!-- y --><d/>"), ElementsAre("a", "d/?"));
}

TEST(WholeElementsTest, WhatIsInACommentWithADamagedBeginningIsLeftOut) {
  EXPECT_THAT(foundIn("<a><!-, <b/> <c/> --><d/></a>"), ElementsAre("a...", "d/a/?"));
  EXPECT_THAT(foundIn("<!-- x --><a/> <b/> --><d/>"), ElementsAre("d/?"));
  EXPECT_THAT(foundIn("<a/><!-- x --><b/> --><d/>"), ElementsAre("a", "d/?"));
}

TEST(WholeElementsTest, WhatIsInATextIsLeftOut) {
  EXPECT_THAT(foundIn("<a><![CDATA[<b/> > <c/>]]><d/></a>"), ElementsAre("a", "d/a"));
  EXPECT_THAT(foundIn("<a>" + kZeroes + "<b/> > <c/>]]><d/></a>"), ElementsAre("a...", "d/a/?"));
}

TEST(WholeElementsTest, AnythingIsRead) {
  for (const std::string bytes : {"", "<", "</", "<a", "<!", "<!--", "<?", "</a>", "<a b",
                                  "<a b=", "<a b='", "<!-->", "<a/", "-->", "<a><"})
    EXPECT_LE(tool::elementsIn(bytes).size(), 1U) << bytes;
}

}  // namespace
}  // namespace camcfg::tests
