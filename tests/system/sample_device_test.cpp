#include "camcfg/params.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::IsEmpty;

class SampleDeviceAfterStartUp : public SampleDevice {
 protected:
  SampleDeviceAfterStartUp() {
    int result = -1;
    startUp(&result);
    EXPECT_EQ(result, 0);
    log.clear();
  }

  SampleDocument defaults{"/app/resource/defcfg/business_param.xml", files};
};

TEST_F(SampleDevice, StartUpOfANewDeviceFillsTheMainCopiesFromTheFactorySet) {
  int result = -1;
  const std::string printed = startUp(&result);
  EXPECT_EQ(result, 0);
  const std::vector<std::string> names = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"};
  EXPECT_EQ(device.list("/cfg0"), names);
  EXPECT_THAT(device.list("/cfg1"), IsEmpty()) << "the first save of a file makes its backup";
  std::vector<std::string> records = {"DefCfgFileCnt =3,MainFileCnt =0,BackupFileCnt =0 \n"};
  for (const std::string& name : names) {
    EXPECT_EQ(device.read("/cfg0/" + name), files.at("/app/resource/defcfg/" + name));
    EXPECT_THAT(printed, testing::HasSubstr("file /cfg0/" + name + " \n"));
    records.push_back("/cfg0/" + name + " load failed \n");
    records.push_back("sync /app/resource/defcfg/" + name + " \n");
  }
  EXPECT_THAT(log.texts(), testing::UnorderedElementsAreArray(records));
}

TEST_F(SampleDeviceAfterStartUp, AnswersTheNamedSystemCalls) {
  char language[CFG_TXT_CUR_SIZE] = {};
  EXPECT_EQ(CFG_SYSTEM_GetLanguage(language), 0);
  EXPECT_STREQ(language, "English");

  char name[CFG_TXT_CUR_SIZE] = {};
  char model[CFG_TXT_CUR_SIZE] = {};
  EXPECT_EQ(CFG_SYSTEM_GetDeviceName(name, model), 0);
  EXPECT_STREQ(name, "Four-Channel Encoder");
  EXPECT_STREQ(model, "E4-PTZ");

  int http = 0;
  int https = 0;
  EXPECT_EQ(CFG_SYSTEM_GetHttpPort(&http, &https), 0);
  EXPECT_EQ(http, 80);
  EXPECT_EQ(https, 443);
  EXPECT_EQ(CFG_SYSTEM_GetRtspPort(), 554);
  EXPECT_EQ(CFG_SYSTEM_GetRtspOverHttpPort(), 8080);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(SampleDeviceAfterStartUp, AnswersForEveryIntegerByItsNameAlone) {
  int read = 0;
  for (auto* section : childrenOf(&defaults.document())) {
    for (const auto* parameter : childrenOf(section)) {
      if (!intOf(parameter, "Min")) continue;
      SCOPED_TRACE(parameter->Name());
      tagCFG_VALUE_INT_S value{};
      EXPECT_EQ(CFG_COM_GetIntParams(text(parameter->Name()), &value), 0);
      EXPECT_EQ(value.s32Min, intOf(parameter, "Min"));
      EXPECT_EQ(value.s32Max, intOf(parameter, "Max"));
      EXPECT_EQ(value.s32Step, intOf(parameter, "Step"));
      EXPECT_EQ(value.s32Def, intOf(parameter, "Def"));
      EXPECT_EQ(value.s32Cur, intOf(parameter, "Cur"));
      ++read;
    }
  }
  EXPECT_GT(read, 50);
}

void expectText(const tagCFG_VALUE_TXT_S& value, const tinyxml2::XMLElement* parameter) {
  EXPECT_EQ(value.acOptTxt, textOf(parameter, "OptTxt"));
  EXPECT_EQ(value.acDef, textOf(parameter, "Def"));
  EXPECT_EQ(value.acCur, textOf(parameter, "Cur"));
}

TEST_F(SampleDeviceAfterStartUp, AnswersForEveryTextByItsNameAlone) {
  int read = 0;
  for (auto* section : childrenOf(&defaults.document())) {
    for (const auto* parameter : childrenOf(section)) {
      if (!textOf(parameter, "OptTxt")) continue;
      SCOPED_TRACE(parameter->Name());
      tagCFG_VALUE_TXT_S value{};
      EXPECT_EQ(CFG_COM_GetTxtParams(text(parameter->Name()), &value), 0);
      expectText(value, parameter);
      ++read;
    }
  }
  EXPECT_GT(read, 50);
}

TEST_F(SampleDeviceAfterStartUp, AnswersForEveryChildOfAParameterThroughItsParent) {
  int read = 0;
  for (auto* section : childrenOf(&defaults.document())) {
    for (auto* parent : childrenOf(section)) {
      if (!textOf(parent, "OptTxt")) continue;
      for (const auto* child : childrenOf(parent)) {
        SCOPED_TRACE(std::string(parent->Name()) + "/" + child->Name());
        tagCFG_VALUE_TXT_S value{};
        EXPECT_EQ(CFG_COM_GetTxtParamByParent(text(parent->Name()), text(child->Name()), &value),
                  0);
        expectText(value, child);
        ++read;
      }
    }
  }
  EXPECT_GT(read, 2);
}

TEST_F(SampleDeviceAfterStartUp, AChangedSettingIsTheOnlyDifferenceInTheSavedFile) {
  std::string expected = files.at("/app/resource/defcfg/business_param.xml");
  const std::string before = "<Rtsp Cur=\"554\"";
  expected.replace(expected.find(before), before.size(), "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(CFG_SYSTEM_SetRtspPort(8554), 0);
  EXPECT_EQ(device.read("/cfg0/business_param.xml"), expected);
  EXPECT_EQ(device.read("/cfg1/business_param.xml"), expected);
}

}  // namespace
}  // namespace camcfg::tests
