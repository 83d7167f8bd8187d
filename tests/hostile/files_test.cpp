#include <memory>

#include "hostile/hostile_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using tinyxml2::XMLDocument;

using FilesTest = HostileTest;

constexpr char kFile[] = "/cfg0/mpp_cfg.xml";
constexpr char kBackup[] = "/cfg1/mpp_cfg.xml";

std::unique_ptr<XMLDocument> load() {
  return std::unique_ptr<XMLDocument>(CFG_GetDocByFileName(text(kFile), BU_TRUE));
}

// The deepest nesting that the parser puts up with.
int deepest() {
  int levels = 1;
  for (XMLDocument document; document.Parse(nested(levels + 1).c_str()) == tinyxml2::XML_SUCCESS;)
    ++levels;
  return levels;
}

TEST_F(FilesTest, AFileNestedAMillionLevelsDeepIsRefused) {
  device.write(kFile, nested(kMany));
  std::unique_ptr<XMLDocument> document;
  const Cost cost = costOf([&] { document = load(); });
  EXPECT_EQ(document, nullptr);
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n")));
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

TEST_F(FilesTest, AFileNestedDeeperThanTheParserGoesIsRestoredAtStart) {
  device.write(kFile, nested(deepest() + 1));
  device.write(kBackup, nested(deepest()));
  int result = -1;
  captureOutput([&] { result = CFG_VerifyFileFormat(); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(device.read(kFile), nested(deepest()));
}

TEST_F(FilesTest, AFileNestedAsDeepAsTheParserGoesIsSavedAndLoadedAgain) {
  device.write(kFile, nested(deepest()));
  const auto document = load();
  ASSERT_NE(document, nullptr);
  EXPECT_EQ(CFG_SaveFile(document.get(), text(kFile), BU_FALSE), 0);
  EXPECT_NE(load(), nullptr);
}

std::string entityBomb() {
  std::string declarations = "<!ENTITY l0 \"lol\">";
  for (int i = 1; i < 10; ++i)
    declarations += "<!ENTITY l" + std::to_string(i) + " \"" +
                    repeated("&l" + std::to_string(i - 1) + ";", 10) + "\">";
  return declarations;
}

TEST_F(FilesTest, EntitiesThatAFileDeclaresAreNotExpanded) {
  for (const std::string& document : {"<!DOCTYPE a [" + entityBomb() + "]><a b=\"&l9;\"/>",
                                      "<!DOCTYPE a>" + entityBomb() + "<a b=\"&l9;\"/>"}) {
    device.write(kFile, document);
    std::unique_ptr<XMLDocument> loaded;
    const Cost cost = costOf([&] { loaded = load(); });
    ASSERT_NE(loaded, nullptr);
    EXPECT_STREQ(loaded->RootElement()->Attribute("b"), "&l9;");
    EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
  }
}

TEST_F(FilesTest, AMillionElementsAreSearchedToTheLast) {
  device.write(kFile, "<r>" + repeated("<p Id=\"1\" Usage=\"u\"/>", kMany) +
                          "<p Id=\"2\" Usage=\"v\"/><q/></r>");
  const Cost cost = costOf([&] {
    const auto document = load();
    ASSERT_NE(document, nullptr);
    tinyxml2::XMLElement* root = document->RootElement();
    tinyxml2::XMLElement* last = root->LastChildElement("p");
    EXPECT_EQ(CFG_GetElementByNameId(root, "p", 2), last);
    EXPECT_EQ(CFG_GetElementByUsage(root, "p", text("v")), last);
    EXPECT_EQ(CFG_GetElementByName(root, "q"), last->NextSiblingElement());
    EXPECT_EQ(CFG_GetBrotherElementByName(root->FirstChildElement(), "q"),
              last->NextSiblingElement());
  });
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

TEST_F(FilesTest, VerificationChecksAMillionElements) {
  device.write(kFile, "<r>" + repeated("<p Id=\"1\"/>", kMany));
  device.write(kBackup, "<r>" + repeated("<p Id=\"1\"/>", kMany) + "</r>");
  const Cost cost = costOf([&] { captureOutput([] { EXPECT_EQ(CFG_VerifyFileFormat(), 0); }); });
  EXPECT_EQ(device.read(kFile), device.read(kBackup));
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

}  // namespace
}  // namespace camcfg::tests
