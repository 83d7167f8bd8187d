#include "camcfg/params.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::Ge;
using testing::IsEmpty;
using testing::SizeIs;

class SampleParametersOnDevice : public SampleDeviceAfterStartUp {
 protected:
  SampleDocument defaults{"/app/resource/defcfg/business_param.xml", files};
};

TEST_F(SampleDevice, StartUpOfANewDeviceReportsEveryFileAsRestoredFromTheFactorySet) {
  int result = -1;
  const std::string printed = startUp(&result);
  EXPECT_EQ(result, 0);
  std::vector<std::string> records = {"DefCfgFileCnt =3,MainFileCnt =0,BackupFileCnt =0 \n"};
  for (const std::string name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"}) {
    EXPECT_THAT(printed, testing::HasSubstr("file /cfg0/" + name + " \n"));
    records.push_back("/cfg0/" + name + " load failed \n");
    records.push_back("sync /app/resource/defcfg/" + name + " \n");
  }
  EXPECT_THAT(log.texts(), testing::UnorderedElementsAreArray(records));
}

TEST_F(SampleDeviceAfterStartUp, HasTheFactoryFilesAsMainCopiesAndNoBackupsYet) {
  EXPECT_THAT(device.list("/cfg0"),
              testing::ElementsAre("business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"));
  for (const std::string& name : device.list("/cfg0"))
    EXPECT_EQ(device.read("/cfg0/" + name), files.at("/app/resource/defcfg/" + name));
  EXPECT_THAT(device.list("/cfg1"), IsEmpty());
}

TEST_F(SampleParametersOnDevice, AnswerTheNamedCallsForLanguageAndName) {
  char language[CFG_TXT_CUR_SIZE] = {};
  EXPECT_EQ(CFG_SYSTEM_GetLanguage(language), 0);
  EXPECT_STREQ(language, "English");

  char name[CFG_TXT_CUR_SIZE] = {};
  char model[CFG_TXT_CUR_SIZE] = {};
  EXPECT_EQ(CFG_SYSTEM_GetDeviceName(name, model), 0);
  EXPECT_STREQ(name, "Four-Channel Encoder");
  EXPECT_STREQ(model, "E4-PTZ");
}

TEST_F(SampleParametersOnDevice, AnswerTheNamedCallsForPorts) {
  int http = 0;
  int https = 0;
  EXPECT_EQ(CFG_SYSTEM_GetHttpPort(&http, &https), 0);
  EXPECT_EQ(http, 80);
  EXPECT_EQ(https, 443);
  EXPECT_EQ(CFG_SYSTEM_GetRtspPort(), 554);
  EXPECT_EQ(CFG_SYSTEM_GetRtspOverHttpPort(), 8080);
}

// Minimum, maximum, step, default and current value by name.
using Integers = std::map<std::string, std::vector<int>>;
// Allowed texts, default and current text by name.
using Texts = std::map<std::string, std::vector<std::string>>;

std::vector<std::string> textsOf(const tinyxml2::XMLElement* parameter) {
  std::vector<std::string> texts;
  for (const char* attribute : {"OptTxt", "Def", "Cur"})
    texts.push_back(textOf(parameter, attribute).value());
  return texts;
}

TEST_F(SampleParametersOnDevice, AnswerForEveryIntegerByOnlyItsName) {
  Integers written;
  Integers answered;
  for (const auto* parameter : parametersWith("Min", defaults)) {
    for (const char* attribute : {"Min", "Max", "Step", "Def", "Cur"})
      written[parameter->Name()].push_back(intOf(parameter, attribute).value());
    tagCFG_VALUE_INT_S value{};
    ASSERT_EQ(CFG_COM_GetIntParams(text(parameter->Name()), &value), 0) << parameter->Name();
    answered[parameter->Name()] = {value.s32Min, value.s32Max, value.s32Step, value.s32Def,
                                   value.s32Cur};
  }
  EXPECT_THAT(written, SizeIs(Ge(50U)));
  EXPECT_EQ(answered, written);
}

TEST_F(SampleParametersOnDevice, AnswerForEveryTextByOnlyItsName) {
  Texts written;
  Texts answered;
  for (const auto* parameter : parametersWith("OptTxt", defaults)) {
    written[parameter->Name()] = textsOf(parameter);
    tagCFG_VALUE_TXT_S value{};
    ASSERT_EQ(CFG_COM_GetTxtParams(text(parameter->Name()), &value), 0) << parameter->Name();
    answered[parameter->Name()] = {value.acOptTxt, value.acDef, value.acCur};
  }
  EXPECT_THAT(written, SizeIs(Ge(50U)));
  EXPECT_EQ(answered, written);
}

TEST_F(SampleParametersOnDevice, AnswerForEveryChildOfAParameterThroughItsParent) {
  Texts written;
  Texts answered;
  for (auto* parent : parametersWith("OptTxt", defaults)) {
    for (const auto* child : childrenOf(parent)) {
      const std::string name = nameOf(parent) + "/" + nameOf(child);
      written[name] = textsOf(child);
      tagCFG_VALUE_TXT_S value{};
      ASSERT_EQ(CFG_COM_GetTxtParamByParent(text(parent->Name()), text(child->Name()), &value), 0);
      answered[name] = {value.acOptTxt, value.acDef, value.acCur};
    }
  }
  EXPECT_THAT(written, SizeIs(Ge(3U)));
  EXPECT_EQ(answered, written);
}

TEST_F(SampleParametersOnDevice, AChangedSettingIsTheOnlyDifferenceInTheSavedFile) {
  std::string expected = files.at("/app/resource/defcfg/business_param.xml");
  const std::string before = "<Rtsp Cur=\"554\"";
  expected.replace(expected.find(before), before.size(), "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(CFG_SYSTEM_SetRtspPort(8554), 0);
  EXPECT_EQ(device.read("/cfg0/business_param.xml"), expected);
  EXPECT_EQ(device.read("/cfg1/business_param.xml"), expected);
}

}  // namespace
}  // namespace camcfg::tests
