#include "camcfg/params.h"
#include "support/device_test.h"

namespace camcfg::tests {
namespace {

class BySectionTest : public DeviceTest {};

TEST_F(BySectionTest, ValueOnTheUpperEndIsStoredInBothCopies) {
  device.write("/cfg0/business_param.xml",
               "<System>\n    <Rtsp Cur=\"554\" Min=\"1\" Max=\"65535\"/>\n</System>\n");
  EXPECT_EQ(CFG_COM_SetIntParam(text("System"), text("Rtsp"), 65535), 0);
  EXPECT_EQ(device.read("/cfg0/business_param.xml"),
            "<System>\n    <Rtsp Cur=\"65535\" Min=\"1\" Max=\"65535\"/>\n</System>\n");
  EXPECT_EQ(device.read("/cfg1/business_param.xml"), device.read("/cfg0/business_param.xml"));
}

}  // namespace
}  // namespace camcfg::tests
