#include <camcfg/network.h>
#include <camcfg/params.h>
#include <camcfg/preset.h>

#include <memory>

#include "hostile/hostile_test.h"

namespace camcfg::tests {
namespace {

using ParametersTest = HostileTest;

constexpr char kParameterFile[] = "/cfg0/business_param.xml";
constexpr char kPresetFile[] = "/cfg0/preset_cfg.xml";

std::string huge() {
  return std::string(kHuge, 'h');
}

TEST_F(ParametersTest, ATextOfManyMegabytesIsCutToItsField) {
  device.write(kParameterFile, "<S><p Cur=\"" + huge() + "\" Def=\"" + huge() + "\" OptTxt=\"" +
                                   huge() + "\"/></S>");
  const auto value = std::make_unique<tagCFG_VALUE_TXT_S>();
  char current[CFG_TXT_CUR_SIZE] = {};
  const Cost cost = costOf([&] {
    EXPECT_EQ(CFG_COM_GetTxtParams(text("p"), value.get()), 0);
    EXPECT_EQ(CFG_COM_GetTxtParam(text("S"), text("p"), current), 0);
  });
  EXPECT_EQ(value->acOptTxt, std::string(CFG_TXT_OPT_SIZE - 1, 'h'));
  EXPECT_EQ(value->acDef, std::string(CFG_TXT_DEF_SIZE - 1, 'h'));
  EXPECT_EQ(value->acCur, std::string(CFG_TXT_CUR_SIZE - 1, 'h'));
  EXPECT_EQ(std::string(current, sizeof current), std::string(CFG_TXT_CUR_SIZE, 'h'));
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

TEST_F(ParametersTest, ATranslatedTextOfManyMegabytesIsCutToItsField) {
  device.write("/app/resource/language/English.xml", "<T><k Val=\"" + huge() + "\"/></T>");
  char translated[CFG_LANG_TEXT_SIZE] = {};
  EXPECT_EQ(CFG_LANG_GetString(text("English"), text("k"), translated), 0);
  EXPECT_EQ(translated, std::string(CFG_LANG_TEXT_SIZE - 1, 'h'));
}

TEST_F(ParametersTest, NetworkTextsOfManyMegabytesAreCutToTheirFields) {
  device.write(kParameterFile, "<NetWork Hostname=\"" + huge() + "\"><" + huge() +
                                   "><IpAddr Cur=\"" + huge() + "\"/></" + huge() + "></NetWork>");
  tagNETWORK_CFG_S settings{};
  CFG_NETWORK_GetAllParamCur(text("h"), &settings);
  EXPECT_EQ(settings.acIpAddr, std::string(CFG_NETWORK_TEXT_SIZE - 1, 'h'));
  tagNETWORK_CARDS_S cards{};
  EXPECT_EQ(CFG_NETWORK_GetCards(&cards), 0);
  EXPECT_EQ(cards.acCard[0], std::string(CFG_NETWORK_NAME_SIZE - 1, 'h'));
  char hostname[65] = {};
  CFG_NETWORK_GetHostname(hostname, sizeof hostname - 1);
  EXPECT_EQ(hostname, std::string(sizeof hostname - 1, 'h'));
}

TEST_F(ParametersTest, ADescriptionOfManyMegabytesIsNotHandedOut) {
  device.write(kPresetFile,
               "<PresetCfg><preset Id=\"7\" Description=\"" + huge() + "\"/></PresetCfg>");
  tagPRESET_CFG_S preset{};
  EXPECT_EQ(CFG_PRESET_QueryOneByDesc("hh", &preset), 0);
  EXPECT_EQ(preset.s32Id, 7);
  EXPECT_STREQ(preset.s8Description, "");
}

TEST_F(ParametersTest, TheLastOfAMillionParametersIsReadAndSet) {
  device.write(kParameterFile, "<S>" + repeated("<p/>", kMany) +
                                   "<q Cur=\"1\" Def=\"1\" Min=\"0\" Max=\"9\" Step=\"1\"/></S>");
  int value = 0;
  tagCFG_VALUE_INT_S whole{};
  const Cost cost = costOf([&] {
    EXPECT_EQ(CFG_COM_SetIntParam(text("S"), text("q"), 5), 0);
    EXPECT_EQ(CFG_COM_GetIntParam(text("S"), text("q"), &value), 0);
    EXPECT_EQ(CFG_COM_GetIntParams(text("q"), &whole), 0);
  });
  EXPECT_EQ(value, 5);
  EXPECT_EQ(whole.s32Cur, 5);
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

TEST_F(ParametersTest, AMillionCardsAreListedAsFarAsThereIsRoom) {
  device.write(kParameterFile, "<NetWork>" + repeated("<c/>", kMany) + "</NetWork>");
  tagNETWORK_CARDS_S cards{};
  const Cost cost = costOf([&] { EXPECT_EQ(CFG_NETWORK_GetCards(&cards), 0); });
  EXPECT_EQ(cards.s32Count, CFG_NETWORK_CARDS_MAX);
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

TEST_F(ParametersTest, AMillionPresetsAreCountedAndOneIsAdded) {
  device.write(kPresetFile, "<PresetCfg>" + repeated("<preset Id=\"1\"/>", kMany) + "</PresetCfg>");
  int count = 0;
  int unused = -1;
  tagPRESET_CFG_S preset{};
  preset.s32Id = 2;
  const Cost cost = costOf([&] {
    EXPECT_EQ(CFG_PRESET_SetParam(&preset), 0);
    EXPECT_EQ(CFG_PRESET_GetCountNum(&count), 0);
    EXPECT_EQ(CFG_PRESET_GetUnusedId(&unused), 0);
    EXPECT_EQ(CFG_PRESET_QueryOneById(2, &preset), 0);
  });
  EXPECT_EQ(count, kMany + 1);
  EXPECT_EQ(unused, 0);
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

}  // namespace
}  // namespace camcfg::tests
