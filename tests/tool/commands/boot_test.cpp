#include "tool/json_in.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;

class BootTest : public ParametersTest {
 protected:
  BootTest() {
    for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"}) {
      device.write(directory + std::string("business_param.xml"), kParameters);
      device.write(directory + std::string("mpp_cfg.xml"), kMedia);
      device.write(directory + std::string("preset_cfg.xml"), "<PresetCfg>\n</PresetCfg>\n");
    }
  }
};

TEST_F(BootTest, IsSilentWhereThereIsNothingToDo) {
  EXPECT_EQ(run({"boot"}), (ToolRun{0, "", ""}));
}

TEST_F(BootTest, RestoresWhatIsBrokenAndBringsBackupsInSync) {
  device.write(kBusiness, "<System");
  device.remove("/cfg1/mpp_cfg.xml");
  EXPECT_EQ(run({"boot"}),
            (ToolRun{0,
                     "/cfg0/business_param.xml was restored from /cfg1/business_param.xml\n"
                     "/cfg1/mpp_cfg.xml was brought in sync with /cfg0/mpp_cfg.xml\n",
                     ""}));
  EXPECT_EQ(run({"boot"}), (ToolRun{0, "", ""}));
}

TEST_F(BootTest, EndsWithTheStatusOfTheDevice) {
  device.remove("/app/resource/defcfg/mpp_cfg.xml");
  EXPECT_EQ(run({"boot"}).status, 4);
  for (const char* directory : {"/cfg0/", "/cfg1/"})
    device.write(directory + std::string("mpp_cfg.xml"), "<Stream");
  const ToolRun result = run({"boot", "--json"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(jsonIn(result.out)["health"], tool::Json("unusable"));
}

TEST_F(BootTest, DeviceWithoutAnyFileIsRefused) {
  for (const char* directory : {"/cfg0", "/cfg1", "/app"}) device.remove(directory);
  const ToolRun result = run({"boot"});
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.err, HasSubstr("there is no device here"));
}

}  // namespace
}  // namespace camcfg::tests
