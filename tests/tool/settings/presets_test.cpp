#include "settings/presets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "settings/value.h"

namespace camcfg::tool::settings {
namespace {

TEST(PresetSettingsTest, AreTheMembersOfADocument) {
  EXPECT_THAT(membersOf(presetSettings()), testing::ElementsAre("id", "description", "pan", "tilt",
                                                                "zoom", "focus", "focusMode"));
}

TEST(PresetSettingsTest, HelpSaysWhatTheLimitsAre) {
  const Setting& id = presetSettings()[0];
  const Setting& description = presetSettings()[1];
  EXPECT_EQ(permittedFor(id), "0..128");
  EXPECT_STREQ(id.help, "Id from 0 to 128");
  EXPECT_EQ(description.field.room, 64U);
  EXPECT_STREQ(description.help, "Text of up to 63 bytes");
}

TEST(PresetSettingsTest, AllButTheIdAreOptions) {
  for (const Setting& setting : presetSettings())
    EXPECT_EQ(setting.option == nullptr, setting.need == Need::Required) << setting.member;
}

}  // namespace
}  // namespace camcfg::tool::settings
