#include "settings/network.h"

#include <camcfg/network.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "settings/value.h"

namespace camcfg::tool::settings {
namespace {

TEST(CardSettingsTest, AreSixteenWithNamesAndHelpOfTheirOwn) {
  std::set<std::string> names;
  for (const Setting& setting : cardSettings()) {
    EXPECT_TRUE(names.insert(setting.member).second) << setting.member;
    EXPECT_TRUE(names.insert(elementOf(setting)).second) << elementOf(setting);
    EXPECT_STRNE(setting.help, "") << setting.member;
    EXPECT_EQ(&requireCardSetting(setting.member), &setting);
  }
  EXPECT_EQ(cardSettings().size(), 16U);
}

TEST(CardSettingsTest, WordsComeBackFromTheRecordAndFromADocument) {
  for (const Setting& setting : cardSettings())
    for (const std::string& word : wordsOf(setting)) {
      tagNETWORK_CFG_S record{};
      EXPECT_TRUE(put(setting, word, &record));
      EXPECT_EQ(take(setting, &record), word);
      EXPECT_EQ(inFile(setting, valueIn(setting, word)), word);
      EXPECT_EQ(objectionTo(setting, word).why, "");
    }
}

TEST(CardSettingsTest, WhatAFieldCannotHoldLeavesItAlone) {
  for (const Setting& setting : cardSettings()) {
    tagNETWORK_CFG_S record{};
    const std::string before = take(setting, &record);
    EXPECT_FALSE(put(setting, std::string(32, 'x'), &record)) << setting.member;
    EXPECT_EQ(take(setting, &record), before);
  }
}

TEST(CardSettingsTest, FileTextThatIsNoValueStaysAsItIs) {
  EXPECT_EQ(valueIn(requireCardSetting("Enable"), "On"), Json(true));
  EXPECT_EQ(valueIn(requireCardSetting("Enable"), "on"), Json("on"));
  EXPECT_EQ(valueIn(requireCardSetting("MTU"), "1500"), Json(1500));
  EXPECT_EQ(valueIn(requireCardSetting("MTU"), "1500B"), Json("1500B"));
  EXPECT_EQ(valueIn(requireCardSetting("IpAddr"), nullptr), Json());
}

TEST(CardSettingsTest, SettersOfWholeCardsTakeLongerNamesUnlessTheyCompareTheWhole) {
  EXPECT_EQ(cardSettingWrittenInto("EnableWifi"), cardSettingOf("Enable"));
  EXPECT_EQ(cardSettingWrittenInto("Enable"), nullptr);
  EXPECT_EQ(cardSettingWrittenInto("MTUs"), nullptr);
  EXPECT_EQ(cardSettingWrittenInto("Enabl"), nullptr);
}

TEST(CardSettingsTest, MtuIsPermittedWithinTheLimitsOfCards) {
  const std::string name = "mtu";
  const Setting& mtu = requireCardSetting(name);
  EXPECT_EQ(permittedFor(mtu), "68..9216");
  EXPECT_EQ(objectionTo(mtu, "68").why, "");
  EXPECT_EQ(objectionTo(mtu, "9217").why,
            "9217 is outside 68..9216; the nearest permitted is 9216");
  EXPECT_EQ(objectionTo(mtu, "9217", {1, 65535}).why, "");
}

}  // namespace
}  // namespace camcfg::tool::settings
