#include "tool/as_nobody.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kPresetBackup[] = "/cfg1/preset_cfg.xml";
constexpr char kPresetDefault[] = "/app/resource/defcfg/preset_cfg.xml";

constexpr char kThreePresets[] =
    "<PresetCfg>\n"
    "    <preset Id=\"0\" Description=\"Home\" PanPos=\"0\" TiltPos=\"0\" ZoomPos=\"0\" "
    "FocusPos=\"0\" FocusMode=\"0\"/>\n"
    "</PresetCfg>\n";

/// A device whose copies are all equal.
class DiffTest : public MediaToolTest {
 protected:
  DiffTest() {
    writeBoth(kParameters);
    device.write(kBusinessDefault, kParameters);
    device.write(kMppDefault, kMedia);
    for (const char* path : {kPreset, kPresetBackup, kPresetDefault})
      device.write(path, kThreePresets);
  }

  void change(const std::string& path, const std::string& part, const std::string& other) const {
    device.write(path, with(device.read(path), part, other));
  }

  ToolRun diff(std::vector<std::string> words = {}) const {
    words.insert(words.begin(), "diff");
    return run(words);
  }

  ToolRun diffWith(const std::string& document, std::vector<std::string> words = {}) const {
    device.write("/document.json", document);
    words.push_back(device.hostPath() + "/document.json");
    return diff(words);
  }
};

TEST_F(DiffTest, CopiesThatAreTheSameDifferInNothing) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{}, {"--backup"}, {"--factory"}})
    EXPECT_EQ(diff(words), (ToolRun{0, "nothing differs\n", ""}));
}

TEST_F(DiffTest, SettingsThatDifferAreReportedOneByOneWithStatusOne) {
  change(kBusinessBackup, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  change(kMppBackup, "Port=\"9001\"", "Port=\"9002\"");
  change(kPresetBackup, "PanPos=\"0\"", "PanPos=\"-7\"");
  change(kBusinessBackup, "Hostname=\"gate\"", "Hostname=\"door\"");
  EXPECT_EQ(diff(), (ToolRun{1,
                             "PLACE                   MAIN  BACKUP\n"
                             "live.srt[1].port        9001  9002\n"
                             "parameters.System.Rtsp  554   8554\n"
                             "network.hostname        gate  door\n"
                             "presets[0].pan          0     -7\n",
                             ""}));
  EXPECT_EQ(diff({"--factory"}), (ToolRun{0, "nothing differs\n", ""}));
}

TEST_F(DiffTest, FactorySetIsComparedUnderItsName) {
  change(kBusiness, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(diff({"--factory"}), (ToolRun{1,
                                          "PLACE                   MAIN  DEFAULT\n"
                                          "parameters.System.Rtsp  8554  554\n",
                                          ""}));
}

TEST_F(DiffTest, SessionThatOnlyOneHasIsReportedWhole) {
  change(kMppBackup, "        <Channel Id=\"7\" Name=\"listen\"/>\n", "");
  EXPECT_EQ(diff(), (ToolRun{1,
                             "PLACE              MAIN                      BACKUP\n"
                             "live.websocket[7]  {\"id\":7,\"name\":\"listen\"}  -\n",
                             ""}));
}

TEST_F(DiffTest, JsonShowsBothSides) {
  change(kBusinessBackup, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(diff({"--json"}), (ToolRun{1,
                                       "{\n"
                                       "  \"with\": \"backup\",\n"
                                       "  \"differences\": [\n"
                                       "    {\n"
                                       "      \"place\": \"parameters.System.Rtsp\",\n"
                                       "      \"device\": 554,\n"
                                       "      \"other\": 8554\n"
                                       "    }\n"
                                       "  ],\n"
                                       "  \"notCompared\": []\n"
                                       "}\n",
                                       ""}));
}

TEST_F(DiffTest, SecretsAreMasked) {
  change(kMppBackup, "Password=\"secret\"", "Password=\"other\"");
  EXPECT_EQ(diff(), (ToolRun{1,
                             "PLACE                 MAIN      BACKUP\n"
                             "live.srt[1].password  ********  ********\n",
                             ""}));
  EXPECT_THAT(diff({"--json"}).out, testing::Not(testing::HasSubstr("secret")));
  EXPECT_EQ(diff({"--show-secrets"}), (ToolRun{1,
                                               "PLACE                 MAIN    BACKUP\n"
                                               "live.srt[1].password  secret  other\n",
                                               ""}));
}

TEST_F(DiffTest, FilesThatDifferInWhatIsNoSettingAreNoted) {
  change(kBusinessBackup, "Max=\"65535\"", "Max=\"65534\"");
  EXPECT_EQ(diff(), (ToolRun{0, "nothing differs\n",
                             "camcfg: diff: note: /cfg0/business_param.xml and "
                             "/cfg1/business_param.xml have the same settings, but differ in what "
                             "is none, such as limits or comments\n"}));
}

TEST_F(DiffTest, CopyThatIsMissingOrBrokenIsReportedAndTheOthersAreCompared) {
  device.remove(kPresetBackup);
  device.write(kMppBackup, "<Stream");
  change(kBusinessBackup, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(diff(), (ToolRun{3,
                             "PLACE                   MAIN  BACKUP\n"
                             "parameters.System.Rtsp  554   8554\n",
                             "camcfg: diff: not compared: stream.sources, stream.caches, "
                             "live.websocket, live.rtsp, live.rtmp, live.ndi, live.srt: "
                             "/cfg1/mpp_cfg.xml is not well-formed XML\n"
                             "camcfg: diff: not compared: presets: /cfg1/preset_cfg.xml is "
                             "missing\n"}));
}

TEST_F(DiffTest, FaultyEntryOfACopyIsReportedByItsOwnPathAndLine) {
  change(kMppBackup, "<Channel Id=\"7\" Name=\"listen\"/>", "<Channel Id=\"7\"/>");
  EXPECT_EQ(diff(), (ToolRun{3, "",
                             "camcfg: diff: not compared: live.websocket: /cfg1/mpp_cfg.xml:21: "
                             "Attr `Name` is required by <WEBSOCKET><Channel>\n"}));
}

TEST_F(DiffTest, BrokenMainCopyIsReportedWithWhatRepairsIt) {
  device.remove(kPreset);
  const ToolRun result = diff();
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.err,
            "camcfg: diff: not compared: presets: /cfg0/preset_cfg.xml is missing; run 'camcfg "
            "verify' to repair it\n");
}

TEST_F(DiffTest, DocumentIsComparedInWhatItHolds) {
  const std::string document = run({"export"}).out;
  EXPECT_EQ(diffWith(document), (ToolRun{0, "nothing differs\n", ""}));
  EXPECT_EQ(diffWith(run({"export", "--no-secrets"}).out), (ToolRun{0, "nothing differs\n", ""}));
  EXPECT_EQ(diffWith(R"({"version": 1, "parameters": {"System": {"Rtsp": 8554}}})"),
            (ToolRun{1,
                     "PLACE                   MAIN  DOCUMENT\n"
                     "parameters.System.Rtsp  554   8554\n",
                     ""}));
}

TEST_F(DiffTest, DocumentWithFaultsIsTroubleAndNotADifference) {
  EXPECT_EQ(diffWith("{}"),
            (ToolRun{2, "", "camcfg: diff: not compared: version: it is missing\n"}));
  EXPECT_EQ(diffWith(R"({"version": 1, "parameters": {"System": {"Rtps": 1}}})"),
            (ToolRun{2, "",
                     "camcfg: diff: not compared: parameters.System.Rtps: there is no such member; "
                     "did you mean 'Rtsp'?\n"}));
  EXPECT_EQ(diffWith("no JSON").status, 2);
  EXPECT_EQ(diff({device.hostPath() + "/none.json"}).status, 2);
}

TEST_F(DiffTest, OneOfBackupFactoryAndDocumentIsCompared) {
  EXPECT_EQ(diff({"--factory", "--backup"}),
            (ToolRun{2, "", "camcfg: diff: give one of '--backup', '--factory' and FILE\n"}));
}

TEST_F(DiffTest, UserWithoutPrivilegesMayCompare) {
  change(kBusinessBackup, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  const Nobody nobody(device);
  const std::string why = nobody.whyNotEnter();
  if (!why.empty()) GTEST_SKIP() << why;
  EXPECT_EQ(nobody.run({"diff"}), (ToolRun{1,
                                           "PLACE                   MAIN  BACKUP\n"
                                           "parameters.System.Rtsp  554   8554\n",
                                           ""}));
}

TEST_F(DiffTest, NothingIsLeftAmongTheTemporaryFiles) {
  device.makeDirectory("/tmp");
  const std::string temporary = device.hostPath() + "/tmp";
  EXPECT_EQ(run({"diff"}, [&] { setenv("TMPDIR", temporary.c_str(), 1); }).status, 0);
  EXPECT_TRUE(device.list("/tmp").empty());
}

}  // namespace
}  // namespace camcfg::tests
