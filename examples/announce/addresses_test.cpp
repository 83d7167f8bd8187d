// A test of an application on a workstation: the test kit lays out a device, makes it the process's
// root, and records what the library logs.
#include "addresses.h"

#include <camcfg/params.h>
#include <camcfg/store.h>
#include <camcfg/testkit/captured_output.h>
#include <camcfg/testkit/device_root.h>
#include <camcfg/testkit/log_recorder.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using camcfg::testkit::captureOutput;
using camcfg::testkit::DeviceRoot;
using camcfg::testkit::LogRecorder;
using testing::ElementsAre;
using testing::IsEmpty;

const char kTwoGroups[] =
    "<LiveMediaService>"
    "<RTSP><MediaGroup Name=\"main\"/><MediaGroup Name=\"sub\"/></RTSP>"
    "</LiveMediaService>";

class AddressesTest : public testing::Test {
 protected:
  AddressesTest() {
    device.write(CFG_FILE_BUSINESS,
                 "<System><Rtsp Cur=\"554\" Min=\"1\" Max=\"65535\"/></System>"
                 "<NetWork>"
                 "<Lan0><IpAddr Cur=\"192.0.2.7\"/></Lan0><Lan1><IpAddr Cur=\"192.0.2.8\"/></Lan1>"
                 "</NetWork>");
    device.write(CFG_FILE_MPP, kTwoGroups);
  }

  // The live media family prints what it did on standard output.
  static std::vector<std::string> addresses(const std::string& card = "") {
    std::vector<std::string> found;
    captureOutput([&] { found = rtspAddresses(card); });
    return found;
  }

  DeviceRoot device;
  LogRecorder log;
};

TEST_F(AddressesTest, EveryMediaGroupHasOne) {
  EXPECT_THAT(addresses(), ElementsAre("rtsp://192.0.2.7/main", "rtsp://192.0.2.7/sub"));
}

TEST_F(AddressesTest, CardIsChosenByTheBeginningOfItsName) {
  EXPECT_THAT(addresses("Lan1"), ElementsAre("rtsp://192.0.2.8/main", "rtsp://192.0.2.8/sub"));
}

TEST_F(AddressesTest, PortIsNamedUnlessItIsTheUsualOne) {
  ASSERT_EQ(CFG_SYSTEM_SetRtspPort(8554), 0);
  EXPECT_THAT(addresses(), ElementsAre("rtsp://192.0.2.7:8554/main", "rtsp://192.0.2.7:8554/sub"));
}

TEST_F(AddressesTest, DamagedFileGivesNoneAndIsLogged) {
  device.write(CFG_FILE_BUSINESS, "<System");
  EXPECT_THAT(addresses(), IsEmpty());
  EXPECT_THAT(log.texts(), testing::Contains("Load file /cfg0/business_param.xml fail\n"));
}

}  // namespace
