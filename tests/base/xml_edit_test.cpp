#include "base/xml_edit.h"

#include <gtest/gtest.h>

#include <string>

#include "support/each_shortage.h"

namespace camcfg::tests {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

class XmlEditTest : public testing::Test {
 protected:
  XMLDocument document;
  XMLElement* root = document.NewElement("A");
  void SetUp() override { document.InsertEndChild(root); }
};

// Longer than any block of memory that the document may have at hand.
const std::string kLong(100000, 'x');

TEST_F(XmlEditTest, AttributesAreAddedAndReplaced) {
  EXPECT_TRUE(setAttribute(*root, "Cur", "a"));
  EXPECT_STREQ(root->Attribute("Cur"), "a");
  EXPECT_TRUE(setAttribute(*root, "Cur", -5));
  EXPECT_STREQ(root->Attribute("Cur"), "-5");
}

TEST_F(XmlEditTest, NewElementHasNoPlaceYet) {
  XMLElement* element = newElement(document, "B");
  ASSERT_NE(element, nullptr);
  EXPECT_STREQ(element->Name(), "B");
  EXPECT_EQ(element->Parent(), nullptr);
  EXPECT_EQ(element->GetDocument(), &document);
}

TEST_F(XmlEditTest, NewDocumentIsEmptyAndKeepsEntities) {
  const auto made = newDocument();
  ASSERT_NE(made, nullptr);
  EXPECT_TRUE(made->NoChildren());
  EXPECT_TRUE(made->ProcessEntities());
  EXPECT_EQ(made->WhitespaceMode(), tinyxml2::PRESERVE_WHITESPACE);
}

// Does one change to a document of its own, since one that memory ran out over is fit to be deleted
// only.
template <typename Change>
bool change(Change set) {
  const auto made = newDocument();
  XMLElement* element = made == nullptr ? nullptr : newElement(*made, kLong.c_str());
  return element != nullptr && set(*element);
}

TEST(XmlEditFaultsTest, ShortageOfMemoryIsReported) {
  const auto setText = [](XMLElement& element) {
    return setAttribute(element, "Text", kLong.c_str());
  };
  const auto setNumber = [](XMLElement& element) { return setAttribute(element, "Number", 1); };
  const auto checked = [](bool struck, bool done) { EXPECT_EQ(done, !struck); };
  underEachShortage([&] { return change(setText); }, checked);
  underEachShortage([&] { return change(setNumber); }, checked);
}

}  // namespace
}  // namespace camcfg::tests
