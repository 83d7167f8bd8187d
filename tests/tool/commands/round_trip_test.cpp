#include <random>

#include "support/random_cases.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

// Whatever texts a device has, its export is imported again.

constexpr int kDevices = 15;

class RoundTripTest : public SampleTest {
 protected:
  // Bytes that an attribute can have as they are.
  std::string text() {
    std::string bytes;
    for (int i = number(0, 12); i > 0; --i) {
      const char c = static_cast<char>(number(0x20, 0xff));
      bytes += std::string("\"&<>'\x7f").find(c) == std::string::npos ? c : 'x';
    }
    return bytes;
  }
  int number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }

  void give() {
    std::string presets = "<PresetCfg>\n";
    for (int id = 0; id < number(1, 9); ++id)
      presets += "    <preset Id=\"" + std::to_string(id) + "\" Description=\"" + text() +
                 "\" PanPos=\"" + std::to_string(number(-9, 9)) +
                 "\" TiltPos=\"0\" ZoomPos=\"0\" FocusPos=\"0\" FocusMode=\"0\"/>\n";
    std::string media = media_;
    std::string sessions;
    for (int i = 0; i < number(1, 9); ++i)
      sessions += "        <MediaGroup Name=\"" + std::to_string(i) + text() + "\"/>\n";
    media = with(media, "    </RTSP>", sessions + "    </RTSP>");
    const std::string parameters = with(parameters_, "Cur=\"English\"", "Cur=\"" + text() + "\"");
    for (const std::string directory : {"/cfg0/", "/cfg1/"}) {
      device.write(directory + "preset_cfg.xml", presets + "</PresetCfg>\n");
      device.write(directory + "mpp_cfg.xml", media);
      device.write(directory + "business_param.xml", parameters);
    }
  }
  ToolRun import(const std::vector<std::string>& options) const {
    std::vector<std::string> words = {"import", device.hostPath() + "/document.json"};
    words.insert(words.end(), options.begin(), options.end());
    return run(words);
  }

  std::mt19937 random_;
  const std::string media_ = device.read("/cfg0/mpp_cfg.xml");
  const std::string parameters_ = device.read("/cfg0/business_param.xml");
};

TEST_F(RoundTripTest, AnyTextsComeBack) {
  for (int seed = 0; seed < kDevices; ++seed) {
    if (!isTried(seed)) continue;
    SCOPED_TRACE(seed);
    random_.seed(static_cast<unsigned>(seed));
    give();
    const std::string document = run({"export", "live", "presets", "System"}).out;
    device.write("/document.json", document);
    EXPECT_EQ(import({}), (ToolRun{0, "nothing differs from the device\n", ""}));
    const std::string presets = device.read("/cfg0/preset_cfg.xml");
    const std::string media = device.read("/cfg0/mpp_cfg.xml");
    device.write("/document.json", with(document, "554", "555"));
    EXPECT_EQ(import({}).err, "");
    device.write("/cleared.json", R"({"version": 1, "presets": [], "live": {"rtsp": []}})");
    ASSERT_EQ(run({"import", device.hostPath() + "/cleared.json"}).status, 0);
    EXPECT_EQ(import({"--force"}).status, 0);
    EXPECT_EQ(device.read("/cfg0/preset_cfg.xml"), presets);
    EXPECT_EQ(device.read("/cfg0/mpp_cfg.xml"), media);
  }
}

}  // namespace
}  // namespace camcfg::tests
