#include <gtest/gtest.h>

#include "lint/lint.h"
#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

using tool::lint::Kind;

Kind kindOf(const std::string& contents) {
  return tool::lint::sourcesOf({{"any-name", contents, ""}}).front().kind;
}

TEST(LintKindTest, ContentsShowWhatAFileConfigures) {
  EXPECT_EQ(kindOf(kCleanParameters), Kind::Parameters);
  EXPECT_EQ(kindOf(kCleanPresets), Kind::Presets);
  EXPECT_EQ(kindOf(kCleanMedia), Kind::Media);
  EXPECT_EQ(kindOf(kCleanTexts), Kind::Language);
  EXPECT_EQ(kindOf("<A><B/></A>"), Kind::Unknown);
}

TEST(LintKindTest, OneSectionIsEnough) {
  EXPECT_EQ(kindOf("<NetWork/>"), Kind::Parameters);
  EXPECT_EQ(kindOf("<Own><Gain Cur=\"1\"/></Own>"), Kind::Parameters);
  EXPECT_EQ(kindOf("<Other/><LiveMediaService/>"), Kind::Media);
  EXPECT_EQ(kindOf("<Stream/>"), Kind::Media);
  EXPECT_EQ(kindOf("<PresetCfg/>"), Kind::Presets);
  EXPECT_EQ(kindOf("<Presets><preset Id=\"1\"/></Presets>"), Kind::Presets);
}

TEST(LintKindTest, ParametersMayHaveNamesOfOtherKinds) {
  EXPECT_EQ(kindOf("<Stream><Bitrate Cur=\"1\"/></Stream>"), Kind::Parameters);
  EXPECT_EQ(kindOf("<Ptz><presetSpeed Cur=\"1\"/></Ptz>"), Kind::Parameters);
}

TEST(LintKindTest, DamagedAndEmptyFilesAreOfNoKind) {
  for (const char* contents : {"", "<System>", "<!-- -->"})
    EXPECT_EQ(kindOf(contents), Kind::Unknown) << contents;
}

}  // namespace
}  // namespace camcfg::tests
