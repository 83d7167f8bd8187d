#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

// Texts that are not UTF-8, in documents.

constexpr char kPresetFile[] = "/cfg0/preset_cfg.xml";

class BytesTest : public SampleTest {
 protected:
  BytesTest() { change("preset_cfg.xml", "\"Home\"", "\"H\xfcgel\""); }

  std::string exported(const std::string& section) const { return run({"export", section}).out; }
  ToolRun import(const std::string& document, std::vector<std::string> options = {}) const {
    device.write("/document.json", document);
    options.insert(options.begin(), {"import", device.hostPath() + "/document.json"});
    return run(options);
  }
  void expectFault(const std::string& document, const std::string& fault) const {
    const std::string former = device.read(kPresetFile);
    EXPECT_EQ(
        import(document),
        (ToolRun{1, "", "camcfg: import: " + fault + "\ncamcfg: import: nothing was changed\n"}));
    EXPECT_EQ(device.read(kPresetFile), former);
  }
};

constexpr char kNew[] = "presets[0].description: it is not UTF-8; '--force' sets it anyway";

TEST_F(BytesTest, ExportKeepsThemReversibly) {
  EXPECT_THAT(exported("presets"),
              testing::HasSubstr("\"description\": {\"$bytes\": \"48fc67656c\"}"));
}

TEST_F(BytesTest, ExportSaysThatAnotherDeviceRefusesThem) {
  EXPECT_EQ(run({"export", "presets"}).err,
            std::string("camcfg: export: note: ") + kNew +
                "; an import will refuse it on a device that does not have it\n");
}

TEST_F(BytesTest, ImportOfWhatTheDeviceHasChangesNothing) {
  const std::string former = device.read(kPresetFile);
  EXPECT_EQ(import(exported("presets")), (ToolRun{0, "nothing differs from the device\n", ""}));
  EXPECT_EQ(device.read(kPresetFile), former);
}

TEST_F(BytesTest, TheyStayWhenAnotherValueChanges) {
  const std::string former = device.read(kPresetFile);
  EXPECT_EQ(import(with(exported("presets"), "\"zoom\": 0", "\"zoom\": 7")).err, "");
  EXPECT_EQ(device.read(kPresetFile), with(former, "ZoomPos=\"0\"", "ZoomPos=\"7\""));
}

TEST_F(BytesTest, ImportRefusesToMakeThem) {
  const std::string document = exported("presets");
  expectFault(with(document, "48fc", "48fd"), kNew);
  ASSERT_EQ(run({"preset", "set", "0", "--description", "Home"}).status, 0);
  expectFault(document, kNew);
  ASSERT_EQ(run({"preset", "delete", "0"}).status, 0);
  expectFault(document, kNew);
}

TEST_F(BytesTest, ImportWithForceGivesADeviceItsTextsBack) {
  const std::string former = device.read(kPresetFile);
  const std::string document = exported("presets");
  ASSERT_EQ(run({"preset", "set", "0", "--description", "Home"}).status, 0);
  EXPECT_EQ(import(document, {"--force"}).status, 0);
  EXPECT_EQ(device.read(kPresetFile), former);
}

TEST_F(BytesTest, DiffShowsThemWithoutForce) {
  const std::string document = exported("presets");
  ASSERT_EQ(run({"preset", "set", "0", "--description", "Home"}).status, 0);
  device.write("/document.json", document);
  EXPECT_EQ(run({"diff", device.hostPath() + "/document.json"}).status, 1);
}

TEST_F(BytesTest, WhatStandsForNoSuchTextIsRefused) {
  const std::string document = exported("presets");
  const std::string at = "presets[0].description: $bytes ";
  const std::string hex = at + "must be two digits for each byte, 0 to 9 and a to f";
  const auto given = [&](const std::string& object) {
    return with(document, "{\"$bytes\": \"48fc67656c\"}", object);
  };
  expectFault(given(R"({"$bytes": "48fc6"})"), hex);
  expectFault(given(R"({"$bytes": "48FC"})"), hex);
  expectFault(given(R"({"$bytes": "0xfc"})"), hex);
  expectFault(given(R"({"$bytes": 48})"), hex);
  expectFault(given(R"({"$bytes": ["fc"]})"), hex);
  expectFault(given(R"({"$bytes": "fc00"})"), at + "has a zero byte, which ends a text");
  expectFault(given(R"({"$bytes": "48c3bc"})"), at + "is UTF-8; give a text");
  expectFault(given(R"({"$bytes": ""})"), at + "is UTF-8; give a text");
  expectFault(given(R"({"$bytes": "fc", "a": 1})"), at + "must be its only member");
}

TEST_F(BytesTest, WhereNoTextIsExpectedTheyAreRefused) {
  EXPECT_EQ(import(with(exported("presets"), "\"pan\": 0", R"("pan": {"$bytes": "fc"})")).status,
            1);
  EXPECT_EQ(import(R"({"version": 1, "presets": {"$bytes": "fc"}})", {"--force"}).status, 1);
  EXPECT_EQ(import(R"({"version": {"$bytes": "fc"}})", {"--force"}).status, 1);
  EXPECT_EQ(import(R"({"$bytes": "fc"})", {"--force"}).status, 1);
}

TEST_F(BytesTest, OneThatHasNoRoomIsRefusedWithForceToo) {
  std::string hex;
  for (int i = 0; i < 64; ++i) hex += "fc";
  EXPECT_EQ(import(with(exported("presets"), "48fc67656c", hex), {"--force"}).status, 1);
}

TEST_F(BytesTest, SessionsAreFoundByNamesThatAreNotUtf8) {
  change("mpp_cfg.xml", "<MediaGroup Name=\"", "<MediaGroup Name=\"\xff");
  const std::string former = device.read("/cfg0/mpp_cfg.xml");
  const std::string document = exported("live.rtsp");
  EXPECT_THAT(document, testing::HasSubstr("{\"name\": {\"$bytes\": \"ff"));
  EXPECT_EQ(import(with(document, "\"name\": \"video\"", "\"name\": \"picture\"")).err, "");
  EXPECT_EQ(device.read("/cfg0/mpp_cfg.xml"), with(former, "Name=\"video\"", "Name=\"picture\""));
}

TEST_F(BytesTest, PartOfAnOptionThatIsCutInACharacterIsKept) {
  change("business_param.xml", "Cur=\"English\" Def=\"English\" OptTxt=\"English,",
         "Cur=\"Fran\xc3\" Def=\"English\" OptTxt=\"English,Fran\xc3\xa7"
         "ais,");
  const std::string document = exported("System");
  EXPECT_THAT(document, testing::HasSubstr("\"Language\": {\"$bytes\": \"4672616ec3\"}"));
  EXPECT_EQ(import(with(document, "554", "555")).err, "");
  ASSERT_EQ(run({"set", "System/Language=English"}).status, 0);
  EXPECT_EQ(import(document).status, 1);
  EXPECT_EQ(import(document, {"--force"}).status, 0);
  EXPECT_THAT(device.read("/cfg0/business_param.xml"), testing::HasSubstr("Cur=\"Fran\xc3\" "));
}

TEST_F(BytesTest, ParametersOfSuchNamesAreLeftOutWithANote) {
  change("business_param.xml", "<DeviceAttr",
         "<Na\xffme Cur=\"1\" Min=\"0\" Max=\"9\"/><DeviceAttr");
  const ToolRun result = run({"export", "System"});
  EXPECT_EQ(result.err,
            "camcfg: export: left out of parameters.System: Na\xef\xbf\xbdme: its name is not "
            "UTF-8\n");
  EXPECT_EQ(import(result.out), (ToolRun{0, "nothing differs from the device\n", ""}));
}

TEST_F(BytesTest, PresetFilesHaveThemToo) {
  const std::string former = device.read(kPresetFile);
  for (const char* format : {"csv", "json"}) {
    const std::string presets = run({"preset", "export", "--format", format}).out;
    ASSERT_EQ(run({"preset", "set", "0", "--description", "Home"}).status, 0);
    device.write("/presets", presets);
    EXPECT_EQ(run({"preset", "import", device.hostPath() + "/presets"}).status, 0) << format;
    EXPECT_EQ(device.read(kPresetFile), former) << format;
  }
  device.write("/presets", R"([{"id": 0, "description": {"$bytes": "f"}}])");
  EXPECT_EQ(run({"preset", "import", device.hostPath() + "/presets"}).err,
            "camcfg: preset import: preset 1 of the array: description $bytes must be two digits "
            "for each byte, 0 to 9 and a to f\ncamcfg: preset import: nothing was imported\n");
}

}  // namespace
}  // namespace camcfg::tests
