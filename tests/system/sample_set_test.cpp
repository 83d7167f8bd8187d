#include "system/sample_set.h"

#include <memory>
#include <set>
#include <sstream>

#include "camcfg/params.h"

namespace camcfg::tests {
namespace {

using testing::Ge;
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

}  // namespace
}  // namespace camcfg::tests
