#ifndef CAMCFG_TESTS_TOOL_TOOL_TEST_H
#define CAMCFG_TESTS_TOOL_TOOL_TEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "camcfg/testkit/device_root.h"
#include "support/run_camcfg.h"

namespace camcfg::tests {

using Words = std::vector<std::string>;

constexpr char kBusiness[] = "/cfg0/business_param.xml";
constexpr char kBusinessBackup[] = "/cfg1/business_param.xml";
constexpr char kBusinessDefault[] = "/app/resource/defcfg/business_param.xml";
constexpr char kMpp[] = "/cfg0/mpp_cfg.xml";
constexpr char kPreset[] = "/cfg0/preset_cfg.xml";
constexpr char kMppDefault[] = "/app/resource/defcfg/mpp_cfg.xml";

/// The names of the files that the library itself reads.
constexpr const char* kFileNames[] = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"};

/// Parameters as the library writes them.
constexpr char kParameters[] =
    "<System>\n"
    "    <Language Cur=\"English\" Def=\"English\" OptTxt=\"English,German\"/>\n"
    "    <DeviceAttr DeviceName=\"North Gate\" DeviceModel=\"E4\"/>\n"
    "    <WebHttp Cur=\"80\" Def=\"80\" Min=\"1\" Max=\"65535\" Step=\"1\"/>\n"
    "    <WebHttps Cur=\"443\" Def=\"443\" Min=\"1\" Max=\"65535\" Step=\"1\"/>\n"
    "    <Rtsp Cur=\"554\" Def=\"554\" Min=\"1\" Max=\"65535\" Step=\"1\"/>\n"
    "    <RtspOverHttp Cur=\"8080\" Def=\"8080\" Min=\"1\" Max=\"65535\" Step=\"1\"/>\n"
    "</System>\n"
    "\n"
    "<Image>\n"
    "    <Brightness Cur=\"0\" Def=\"0\" Min=\"-50\" Max=\"50\" Step=\"5\"/>\n"
    "    <Mode Cur=\"Auto\" Def=\"Auto\" OptTxt=\"Auto,Half-Auto,Manual\"/>\n"
    "</Image>\n"
    "\n"
    "<NetWork Hostname=\"gate\">\n"
    "    <Eth0>\n"
    "        <IpAddr Cur=\"192.0.2.7\" Def=\"192.0.2.1\"/>\n"
    "    </Eth0>\n"
    "</NetWork>\n";

/// A text with a part of it replaced.
inline std::string with(std::string text, const std::string& part, const std::string& other) {
  const auto at = text.find(part);
  EXPECT_NE(at, std::string::npos) << part;
  return text.replace(at, part.size(), other);
}

/// A scratch device that the tool works on from outside.
class ToolTest : public testing::Test {
 protected:
  ToolRun run(std::vector<std::string> arguments, const std::function<void()>& inChild = {}) const {
    arguments.insert(arguments.begin(), {"--root", device.hostPath()});
    return runCamcfg(arguments, inChild);
  }

  void writeBoth(const std::string& parameters) const {
    device.write(kBusiness, parameters);
    device.write(kBusinessBackup, parameters);
  }

  testkit::DeviceRoot device{testkit::DeviceRoot::StayOut};
};

/// The same with its parameters in place.
class ParametersTest : public ToolTest {
 protected:
  ParametersTest() { writeBoth(kParameters); }
};

}  // namespace camcfg::tests

#endif
