#include "base/progress.h"

#include <gmock/gmock.h>

#include "camcfg/testkit/device_root.h"
#include "commands/groups.h"
#include "device/files.h"
#include "document/exchange.h"
#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

using namespace tool;
using namespace tool::device;
using namespace tool::document;
using namespace tool::commands;
using testing::ElementsAre;

/// Keeps what is worked on.
class ProgressTest : public testing::Test {
 protected:
  ProgressTest() {
    watchWork([this](const std::string& work) { heard.push_back(work); });
  }
  ~ProgressTest() override { watchWork(nullptr); }

  /// The same without what comes again and again.
  std::vector<std::string> stages() const {
    std::vector<std::string> names;
    for (const std::string& work : heard)
      if (work.back() == ')') names.push_back(work);
    return names;
  }

  std::vector<std::string> heard;
};

TEST_F(ProgressTest, WorkIsShownAfterItsStage) {
  workingOn("a");
  {
    const Stage stage("b", 1, 2);
    workingOn("c");
  }
  workingOn("d");
  EXPECT_THAT(heard, ElementsAre("a", "b (1 of 2)", "b (1 of 2): c", "d"));
}

TEST_F(ProgressTest, NobodyHasToListen) {
  watchWork(nullptr);
  const Stage stage("b", 1, 2);
  workingOn("c");
  EXPECT_THAT(heard, ElementsAre());
}

TEST_F(ProgressTest, FilesAreShownOneByOne) {
  const testkit::DeviceRoot device;
  device.write(kBusiness, kParameters);
  device.write("/cfg1/mpp_cfg.xml", "<Stream/>");
  surveyFiles();
  EXPECT_THAT(heard, ElementsAre("business_param.xml (1 of 2)",
                                 "business_param.xml (1 of 2): /cfg0/business_param.xml",
                                 "business_param.xml (1 of 2): /cfg1/business_param.xml",
                                 "business_param.xml (1 of 2): " + std::string(kBusinessDefault),
                                 "mpp_cfg.xml (2 of 2)", "mpp_cfg.xml (2 of 2): /cfg0/mpp_cfg.xml",
                                 "mpp_cfg.xml (2 of 2): /cfg1/mpp_cfg.xml",
                                 "mpp_cfg.xml (2 of 2): /app/resource/defcfg/mpp_cfg.xml"));
}

TEST_F(ProgressTest, SectionsAreShownWhenTheyAreExportedAndImported) {
  const testkit::DeviceRoot device;
  device.write(kBusiness, kParameters);
  device.write(kBusinessBackup, kParameters);
  const std::string document = exportSettings({"parameters"}, {}).value.dump();
  EXPECT_THAT(stages(), testing::Contains("parameters (8 of 10)"));
  heard.clear();
  importSettings(with(document, "554", "8554"), Mode::Replace, {}, [](const auto&) {});
  EXPECT_EQ(heard.front(), "stream.sources (1 of 10)");
  EXPECT_EQ(heard.back(), kBusiness);
}

}  // namespace
}  // namespace camcfg::tests
