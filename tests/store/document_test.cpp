#include "support/device_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;

class DocumentTest : public DeviceTest {};

TEST_F(DocumentTest, MissingFileIsReportedAndLeftUnlocked) {
  EXPECT_EQ(CFG_GetDocByFileName(text("/cfg0/none.xml"), BU_FALSE), nullptr);
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/none.xml fail\n")));
  EXPECT_EQ(log.records()[0].prefix, "[CFG_GetDocByFileName:324] ");
  EXPECT_TRUE(isUnlocked("/cfg0/none.xml"));
}

}  // namespace
}  // namespace camcfg::tests
