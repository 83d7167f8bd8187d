#include <gtest/gtest.h>

#include "lint/lint.h"
#include "tool/lint/cases.h"

namespace camcfg::tests {
namespace {

using tool::lint::FileKind;

FileKind kindOf(const std::string& contents) {
  return tool::lint::sourcesOf({{"any-name", contents, ""}}).front().kind;
}

TEST(LintKindTest, ContentsShowWhatAFileConfigures) {
  EXPECT_EQ(kindOf(kCleanParameters), FileKind::Parameters);
  EXPECT_EQ(kindOf(kCleanPresets), FileKind::Presets);
  EXPECT_EQ(kindOf(kCleanMedia), FileKind::Media);
  EXPECT_EQ(kindOf(kCleanTexts), FileKind::Language);
  EXPECT_EQ(kindOf("<A><B/></A>"), FileKind::Unknown);
}

TEST(LintKindTest, OneSectionIsEnough) {
  EXPECT_EQ(kindOf("<NetWork/>"), FileKind::Parameters);
  EXPECT_EQ(kindOf("<Own><Gain Cur=\"1\"/></Own>"), FileKind::Parameters);
  EXPECT_EQ(kindOf("<Other/><LiveMediaService/>"), FileKind::Media);
  EXPECT_EQ(kindOf("<Stream/>"), FileKind::Media);
  EXPECT_EQ(kindOf("<PresetCfg/>"), FileKind::Presets);
  EXPECT_EQ(kindOf("<Presets><preset Id=\"1\"/></Presets>"), FileKind::Presets);
}

TEST(LintKindTest, ParametersMayHaveNamesOfOtherKinds) {
  EXPECT_EQ(kindOf("<Stream><Bitrate Cur=\"1\"/></Stream>"), FileKind::Parameters);
  EXPECT_EQ(kindOf("<Ptz><presetSpeed Cur=\"1\"/></Ptz>"), FileKind::Parameters);
}

TEST(LintKindTest, DamagedAndEmptyFilesAreOfNoKind) {
  for (const char* contents : {"", "<System>", "<!-- -->"})
    EXPECT_EQ(kindOf(contents), FileKind::Unknown) << contents;
}

}  // namespace
}  // namespace camcfg::tests
