#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

constexpr int kMany = 2500;

class LongListsTest : public SampleTest {
 protected:
  static std::string times(const std::string& before, const std::string& after) {
    std::string text;
    for (int i = 0; i < kMany; ++i) text += before + std::to_string(i) + after;
    return text;
  }
  ToolRun import(const std::string& document) const {
    device.write("/document.json", document);
    return run({"import", device.hostPath() + "/document.json"});
  }
  // Exports, clears and imports; the file must be as it was.
  void expectRestored(const std::string& section, const std::string& cleared,
                      const std::string& path) const {
    const std::string document = run({"export", section}).out;
    EXPECT_EQ(import(document), (ToolRun{0, "nothing differs from the device\n", ""}));
    ASSERT_EQ(import("{\"version\": 1, " + cleared + "}").status, 0);
    const std::string former = device.read("/cfg1" + path);
    ASSERT_NE(former, whole_);
    EXPECT_EQ(import(document).status, 0);
    EXPECT_EQ(device.read("/cfg0" + path), whole_);
    EXPECT_EQ(device.read("/cfg1" + path), whole_);
  }
  void give(const std::string& path, const std::string& part, const std::string& other) {
    change(path.substr(1), part, other);
    ASSERT_EQ(run({"verify"}).status, 0);
    whole_ = device.read("/cfg0" + path);
  }

  std::string whole_;
};

TEST_F(LongListsTest, ThousandsOfSessionsComeBackByteForByte) {
  give("/mpp_cfg.xml", "    </RTSP>",
       times("        <MediaGroup Name=\"s", "\"/>\n") + "    </RTSP>");
  expectRestored("live.rtsp", R"("live": {"rtsp": []})", "/mpp_cfg.xml");
}

TEST_F(LongListsTest, ThousandsOfChannelsOfOneStreamAreTaken) {
  give("/mpp_cfg.xml", "    </WEBSOCKET>",
       times("        <Channel Id=\"1", "\" Name=\"n\"/>\n") + "    </WEBSOCKET>");
  expectRestored("live.websocket", R"("live": {"websocket": []})", "/mpp_cfg.xml");
}

TEST_F(LongListsTest, ThousandsOfPresetsAreTaken) {
  std::string presets = "<PresetCfg>\n";
  for (int i = 0; i < kMany; ++i)
    presets += "    <preset Id=\"" + std::to_string(i) +
               "\" Description=\"p\" PanPos=\"1\" "
               "TiltPos=\"2\" ZoomPos=\"3\" FocusPos=\"4\" FocusMode=\"0\"/>\n";
  for (const char* directory : {"/cfg0", "/cfg1"})
    device.write(directory + std::string("/preset_cfg.xml"), presets + "</PresetCfg>\n");
  std::string document = run({"export", "presets"}).out;
  EXPECT_EQ(import(document), (ToolRun{0, "nothing differs from the device\n", ""}));
  document = with(document, "{\"id\": 2499, \"description\": \"p\"",
                  "{\"id\": 2499, \"description\": \"q\"");
  EXPECT_EQ(import(document), (ToolRun{0,
                                       "PLACE                      BEFORE  AFTER\n"
                                       "presets[2499].description  p       q\n",
                                       ""}));
  EXPECT_EQ(import(R"({"version": 1, "presets": []})").status, 0);
  EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), "<PresetCfg/>\n");
}

TEST_F(LongListsTest, ThousandsOfParametersOfOneSectionAreTaken) {
  const std::string many =
      "<Many>\n" + times("    <P", "x Cur=\"1\" Min=\"1\" Max=\"9\"/>\n") + "</Many>\n";
  for (const char* directory : {"/cfg0", "/cfg1"})
    device.write(directory + std::string("/business_param.xml"),
                 device.read("/cfg0/business_param.xml") + "\n" + many);
  const std::string document = run({"export", "Many"}).out;
  EXPECT_EQ(import(document), (ToolRun{0, "nothing differs from the device\n", ""}));
  EXPECT_EQ(import(with(document, "\"P2499x\": 1", "\"P2499x\": 2")).err, "");
  EXPECT_EQ(run({"get", "Many/P2499x"}).out, "2\n");
}

}  // namespace
}  // namespace camcfg::tests
