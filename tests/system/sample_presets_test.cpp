#include <algorithm>
#include <string>

#include "camcfg/preset.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::Ge;
using testing::IsEmpty;
using testing::SizeIs;

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
    EXPECT_THAT(id, testing::AllOf(Ge(0), testing::Le(127)));
    EXPECT_EQ(CFG_GetElementByNameId(group, "preset", id), preset) << id;
  }
}

TEST_F(SamplePresetsTest, HaveDescriptionsThatBothQueriesReturnAndNoOtherBegins) {
  for (const auto* preset : presets) {
    const std::string description = textOf(preset, "Description").value();
    EXPECT_THAT(description, testing::AllOf(testing::Not(IsEmpty()), SizeIs(testing::Le(31U))));
    const auto begun = [&](const tinyxml2::XMLElement* other) {
      return begins(description, textOf(other, "Description").value());
    };
    EXPECT_EQ(std::count_if(presets.begin(), presets.end(), begun), 1) << description;
  }
}

class SamplePresetsOnDevice : public SampleDeviceAfterStartUp {
 protected:
  static std::vector<int> numbersOf(const tinyxml2::XMLElement* preset) {
    std::vector<int> numbers;
    for (const char* name : {"Id", "PanPos", "TiltPos", "ZoomPos", "FocusPos", "FocusMode"})
      numbers.push_back(intOf(preset, name).value());
    return numbers;
  }

  static std::vector<int> numbersOf(const tagPRESET_CFG_S& record) {
    return {record.s32Id,      record.s32PanPos,   record.s32TiltPos,
            record.s32ZoomPos, record.s32FocusPos, record.s32FocusMode};
  }

  SampleDocument document{"/app/resource/defcfg/preset_cfg.xml", files};
  const std::vector<tinyxml2::XMLElement*> presets = childrenOf(document.element("PresetCfg"));
};

TEST_F(SamplePresetsOnDevice, AnswerToTheirIds) {
  for (const auto* preset : presets) {
    tagPRESET_CFG_S record{};
    EXPECT_EQ(CFG_PRESET_QueryOneById(intOf(preset, "Id").value(), &record), 0);
    EXPECT_EQ(numbersOf(record), numbersOf(preset));
    EXPECT_EQ(record.s8Description, textOf(preset, "Description"));
  }
}

TEST_F(SamplePresetsOnDevice, AnswerToTheirDescriptions) {
  for (const auto* preset : presets) {
    tagPRESET_CFG_S record{};
    EXPECT_EQ(CFG_PRESET_QueryOneByDesc(preset->Attribute("Description"), &record), 0);
    EXPECT_EQ(numbersOf(record), numbersOf(preset));
    EXPECT_EQ(record.s8Description, textOf(preset, "Description"));
  }
}

TEST_F(SamplePresetsOnDevice, AreCountedAndLeaveTheNextIdFree) {
  const int size = static_cast<int>(presets.size());
  int count = -1;
  int unused = -1;
  EXPECT_EQ(CFG_PRESET_GetCountNum(&count), 0);
  EXPECT_EQ(CFG_PRESET_GetUnusedId(&unused), 0);
  EXPECT_EQ(count, size);
  EXPECT_EQ(unused, size);
}

TEST_F(SamplePresetsOnDevice, StoredAsTheyWereReadKeepTheBytesOfTheFile) {
  tagPRESET_CFG_S record{};
  ASSERT_EQ(CFG_PRESET_QueryOneById(3, &record), 0);
  EXPECT_EQ(CFG_PRESET_SetParam(&record), 0);
  EXPECT_EQ(device.read(CFG_FILE_PRESET), files.at("/app/resource/defcfg/preset_cfg.xml"));
}

}  // namespace
}  // namespace camcfg::tests
