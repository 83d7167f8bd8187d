#include "system/sample_set.h"

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>

#include "camcfg/params.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;
using testing::Not;
using testing::SizeIs;

std::string languagePath(const std::string& language) {
  return CFG_DIR_LANGUAGE + language + ".xml";
}

std::vector<std::string> languages() {
  std::vector<std::string> names;
  for (const auto& [path, contents] : readSampleFiles())
    if (begins(CFG_DIR_LANGUAGE, path)) names.push_back(std::filesystem::path(path).stem());
  return names;
}

std::vector<std::string> keysOf(const std::string& language) {
  SampleDocument document(languagePath(language));
  std::vector<std::string> keys;
  for (const auto* entry : childrenOf(document.root())) keys.emplace_back(entry->Name());
  return keys;
}

TEST(SampleFilesTest, AreThreeFactoryFilesAndThreeLanguages) {
  std::vector<std::string> paths;
  for (const auto& [path, contents] : readSampleFiles()) paths.push_back(path);
  EXPECT_THAT(paths,
              testing::ElementsAre(
                  "/app/resource/defcfg/business_param.xml", "/app/resource/defcfg/mpp_cfg.xml",
                  "/app/resource/defcfg/preset_cfg.xml", "/app/resource/language/English.xml",
                  "/app/resource/language/French.xml", "/app/resource/language/German.xml"));
}

TEST_F(SampleDevice, EveryFileKeepsItsBytesInASaveWithoutChanges) {
  for (const auto& [path, contents] : files) {
    const std::string name = std::filesystem::path(path).filename();
    SCOPED_TRACE(name);
    const std::string main = "/cfg0/" + name;
    device.write(main, contents);
    const std::unique_ptr<tinyxml2::XMLDocument> document(
        CFG_GetDocByFileName(text(main.c_str()), BU_FALSE));
    ASSERT_NE(document, nullptr);
    ASSERT_EQ(CFG_SaveFile(document.get(), text(main.c_str()), BU_TRUE), 0);
    EXPECT_EQ(device.read(main), contents);
    EXPECT_EQ(device.read("/cfg1/" + name), contents);
  }
}

TEST(SampleLanguagesTest, AreThoseThatTheLanguageParameterAllows) {
  SampleDocument document("/app/resource/defcfg/business_param.xml");
  const auto* parameter = document.element("System")->FirstChildElement("Language");
  std::set<std::string> allowed;
  std::stringstream options(textOf(parameter, "OptTxt").value());
  for (std::string option; std::getline(options, option, ',');) allowed.insert(option);
  EXPECT_THAT(languages(), testing::UnorderedElementsAreArray(allowed));
}

TEST(SampleLanguagesTest, HaveTheSameKeysInTheSameOrder) {
  const std::vector<std::string> keys = keysOf("English");
  EXPECT_THAT(keys, SizeIs(Ge(40U)));
  EXPECT_EQ(std::set<std::string>(keys.begin(), keys.end()).size(), keys.size());
  for (const std::string& language : languages()) EXPECT_EQ(keysOf(language), keys) << language;
}

class SampleTextsTest : public SampleDevice, public testing::WithParamInterface<const char*> {};

TEST_P(SampleTextsTest, AreLookedUpByTheirKeys) {
  SampleDocument document(languagePath(GetParam()), files);
  for (const auto* entry : childrenOf(document.root())) {
    char value[CFG_LANG_TEXT_SIZE] = {};
    EXPECT_EQ(CFG_LANG_GetString(text(GetParam()), text(entry->Name()), value), 0);
    EXPECT_EQ(value, textOf(entry, "Val")) << entry->Name();
    EXPECT_STRNE(value, "") << entry->Name();
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, SampleTextsTest, testing::Values("English", "German", "French"),
                         [](const auto& language) { return std::string(language.param); });

class SamplePresetsTest : public testing::Test {
 protected:
  SampleDocument document{"/app/resource/defcfg/preset_cfg.xml"};
  tinyxml2::XMLElement* group =
      CFG_GetBrotherElementByName(document.document().FirstChildElement(), "PresetCfg");
  const std::vector<tinyxml2::XMLElement*> presets = childrenOf(group);
};

TEST_F(SamplePresetsTest, HaveExactlyTheAttributesOfANewPresetInTheirOrder) {
  EXPECT_THAT(presets, SizeIs(Ge(5U)));
  for (const auto* preset : presets) {
    EXPECT_EQ(nameOf(preset), "preset");
    EXPECT_THAT(attributeNames(preset),
                testing::ElementsAre("Id", "Description", "PanPos", "TiltPos", "ZoomPos",
                                     "FocusPos", "FocusMode"));
  }
}

TEST_F(SamplePresetsTest, HaveIntegersForPositionsAndFocusMode) {
  for (const auto* preset : presets)
    for (const char* name : {"PanPos", "TiltPos", "ZoomPos", "FocusPos", "FocusMode"})
      EXPECT_TRUE(intOf(preset, name)) << name;
}

TEST_F(SamplePresetsTest, AreFoundByTheirIds) {
  for (auto* preset : presets) {
    const int id = intOf(preset, "Id").value();
    EXPECT_THAT(id, AllOf(Ge(0), Le(127)));
    EXPECT_EQ(CFG_GetElementByNameId(group, "preset", id), preset) << id;
  }
}

TEST_F(SamplePresetsTest, HaveDescriptionsThatBothQueriesReturnAndNoOtherBegins) {
  for (const auto* preset : presets) {
    const std::string description = textOf(preset, "Description").value();
    EXPECT_THAT(description, AllOf(Not(IsEmpty()), SizeIs(Le(31U))));
    const auto begun = [&](const tinyxml2::XMLElement* other) {
      return begins(description, textOf(other, "Description").value());
    };
    EXPECT_EQ(std::count_if(presets.begin(), presets.end(), begun), 1) << description;
  }
}

}  // namespace
}  // namespace camcfg::tests
