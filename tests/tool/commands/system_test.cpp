#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

TEST_F(ParametersTest, SystemShowsNameLanguageAndPorts) {
  EXPECT_EQ(run({"system"}), (ToolRun{0,
                                      "name                 North Gate\n"
                                      "model                E4\n"
                                      "language             English\n"
                                      "HTTP port            80\n"
                                      "HTTPS port           443\n"
                                      "RTSP port            554\n"
                                      "RTSP over HTTP port  8080\n",
                                      ""}));
}

TEST_F(ParametersTest, SystemInJsonGroupsThePorts) {
  EXPECT_EQ(run({"system", "--json"}), (ToolRun{0,
                                                "{\n"
                                                "  \"name\": \"North Gate\",\n"
                                                "  \"model\": \"E4\",\n"
                                                "  \"language\": \"English\",\n"
                                                "  \"ports\": {\n"
                                                "    \"http\": 80,\n"
                                                "    \"https\": 443,\n"
                                                "    \"rtsp\": 554,\n"
                                                "    \"rtspOverHttp\": 8080\n"
                                                "  }\n"
                                                "}\n",
                                                ""}));
}

TEST_F(ToolTest, SystemShowsNothingWhereNothingIsSet) {
  device.write(kBusiness, "<System><Rtsp Cur=\"554\"/></System>");
  EXPECT_EQ(run({"system"}), (ToolRun{0,
                                      "name                 -\n"
                                      "model                -\n"
                                      "language             -\n"
                                      "HTTP port            -\n"
                                      "HTTPS port           -\n"
                                      "RTSP port            554\n"
                                      "RTSP over HTTP port  -\n",
                                      ""}));
}

struct Port {
  const char* verb;
  const char* name;
  const char* parameter;
  const char* value;
};

void PrintTo(const Port& port, std::ostream* out) {
  *out << port.verb;
}

class PortTest : public ParametersTest, public testing::WithParamInterface<Port> {};

TEST_P(PortTest, IsShownByItselfAndInJson) {
  const Port& port = GetParam();
  EXPECT_EQ(run({"system", port.verb}), (ToolRun{0, std::string(port.value) + "\n", ""}));
  EXPECT_EQ(
      run({"system", port.verb, "--json"}),
      (ToolRun{0,
               std::string("{\n  \"port\": \"") + port.name + "\",\n  \"parameter\": \"System/" +
                   port.parameter + "\",\n  \"value\": " + port.value + "\n}\n",
               ""}));
}

TEST_P(PortTest, IsSetInBothCopiesAndNothingElseIs) {
  const Port& port = GetParam();
  const std::string element = std::string("<") + port.parameter + " Cur=\"";
  EXPECT_EQ(
      run({"system", port.verb, "1234"}),
      (ToolRun{0, std::string("System/") + port.parameter + ": " + port.value + " -> 1234\n", ""}));
  const std::string expected = with(kParameters, element + port.value, element + "1234");
  EXPECT_EQ(device.read(kBusiness), expected);
  EXPECT_EQ(device.read(kBusinessBackup), expected);
}

TEST_P(PortTest, OutsideItsRangeIsRefused) {
  const Port& port = GetParam();
  EXPECT_EQ(run({"system", port.verb, "70000"}),
            (ToolRun{1, "",
                     std::string("camcfg: system ") + port.verb + ": System/" + port.parameter +
                         ": 70000 is outside 1..65535; the nearest permitted is 65535\n"}));
  EXPECT_EQ(device.read(kBusiness), kParameters);
}

INSTANTIATE_TEST_SUITE_P(Ports, PortTest,
                         testing::Values(Port{"http-port", "http", "WebHttp", "80"},
                                         Port{"https-port", "https", "WebHttps", "443"},
                                         Port{"rtsp-port", "rtsp", "Rtsp", "554"},
                                         Port{"rtsp-over-http-port", "rtspOverHttp", "RtspOverHttp",
                                              "8080"}));

TEST_F(ToolTest, PortThatIsNotSetIsNotFound) {
  device.write(kBusiness, "<System/>");
  EXPECT_EQ(run({"system", "http-port"}),
            (ToolRun{1, "", "camcfg: system http-port: System/WebHttp: no port is set there\n"}));
  EXPECT_EQ(run({"system", "rtsp-port"}),
            (ToolRun{1, "", "camcfg: system rtsp-port: System/Rtsp: no port is set there\n"}));
}

}  // namespace
}  // namespace camcfg::tests
