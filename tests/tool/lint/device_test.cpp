#include "tool/lint/cases.h"
#include "tool/lint/device_cases.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

class LintDeviceTest : public ToolTest, public testing::WithParamInterface<DeviceCase> {
 protected:
  LintDeviceTest() {
    for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"}) {
      device.write(std::string(directory) + "business_param.xml", kCleanParameters);
      device.write(std::string(directory) + "preset_cfg.xml", kCleanPresets);
      device.write(std::string(directory) + "mpp_cfg.xml", kCleanMedia);
    }
    for (const char* language : {"English", "German"})
      device.write(std::string("/app/resource/language/") + language + ".xml", kCleanTexts);
  }
};

TEST_P(LintDeviceTest, FindsItsHazardOnItsLine) {
  GetParam().hazard(device);
  const int status = GetParam().found.find(": error: ") == std::string::npos ? 0 : 1;
  EXPECT_EQ(run({"lint"}), (ToolRun{status, GetParam().found, ""}));
}

TEST_P(LintDeviceTest, PassesByADeviceMuchLikeIt) {
  GetParam().harmless(device);
  EXPECT_EQ(run({"lint"}), (ToolRun{0, "", ""}));
}

INSTANTIATE_TEST_SUITE_P(Rules, LintDeviceTest, testing::ValuesIn(deviceCases()),
                         caseName<DeviceCase>);

}  // namespace
}  // namespace camcfg::tests
