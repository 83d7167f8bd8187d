#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

constexpr char kDefaults[] = "/app/resource/defcfg/";

class ResetTest : public SampleTest {
 protected:
  void done(const std::vector<std::string>& arguments) const {
    EXPECT_EQ(run(arguments).status, 0) << arguments.front();
  }

  void changeDefault(const std::string& name, const std::string& part,
                     const std::string& other) const {
    device.write(kDefaults + name, with(device.read(kDefaults + name), part, other));
  }

  void expectNew() const {
    for (const std::string name : kFileNames)
      for (const char* directory : {"/cfg0/", "/cfg1/"})
        EXPECT_EQ(device.read(directory + name), device.read(kDefaults + name)) << name;
  }

  // Runs what must be refused and change nothing.
  void expectRefused(const std::vector<std::string>& arguments, int status,
                     const std::string& line) const {
    std::vector<std::string> before;
    for (const std::string name : kFileNames) before.push_back(device.read("/cfg0/" + name));
    EXPECT_EQ(run(arguments), (ToolRun{status, "", "camcfg: reset: " + line + "\n"}));
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(device.read(std::string("/cfg0/") + kFileNames[i]), before[static_cast<size_t>(i)]);
  }
};

TEST_F(ResetTest, ParameterGetsTheValueOfTheFactorySetInBothCopies) {
  done({"set", "System", "Rtsp", "8554"});
  EXPECT_EQ(run({"reset", "System", "Rtsp"}), (ToolRun{0,
                                                       "PLACE                   BEFORE  AFTER\n"
                                                       "parameters.System.Rtsp  8554    554\n",
                                                       ""}));
  expectNew();
}

TEST_F(ResetTest, ParameterThatIsAsTheFactorySetHasItIsLeftAlone) {
  device.remove("/cfg1/business_param.xml");
  EXPECT_EQ(run({"reset", "System", "Rtsp"}),
            (ToolRun{0, "it has its factory values already\n", ""}));
  EXPECT_FALSE(device.exists("/cfg1/business_param.xml"));
}

TEST_F(ResetTest, DryRunShowsWhatWouldChangeAndWritesNothing) {
  done({"set", "System", "Rtsp", "8554"});
  EXPECT_EQ(run({"reset", "System", "Rtsp", "--dry-run"}),
            (ToolRun{0,
                     "PLACE                   BEFORE  AFTER\n"
                     "parameters.System.Rtsp  8554    554\n"
                     "nothing was written\n",
                     ""}));
  EXPECT_EQ(run({"get", "System", "Rtsp"}).out, "8554\n");
}

TEST_F(ResetTest, SectionGetsAllOfItsFactoryValuesInOneSave) {
  done({"set", "System", "Rtsp", "8554"});
  done({"set", "System", "Language", "German"});
  done({"set", "VideoCh1", "Ch1MainGop", "3"});
  EXPECT_EQ(run({"reset", "--section", "System", "--json"}),
            (ToolRun{0,
                     "{\n"
                     "  \"dryRun\": false,\n"
                     "  \"changes\": [\n"
                     "    {\n"
                     "      \"place\": \"parameters.System.Language\",\n"
                     "      \"before\": \"German\",\n"
                     "      \"after\": \"English\"\n"
                     "    },\n"
                     "    {\n"
                     "      \"place\": \"parameters.System.Rtsp\",\n"
                     "      \"before\": 8554,\n"
                     "      \"after\": 554\n"
                     "    }\n"
                     "  ],\n"
                     "  \"written\": [\n"
                     "    \"parameters\"\n"
                     "  ],\n"
                     "  \"notWritten\": []\n"
                     "}\n",
                     ""}));
  EXPECT_EQ(run({"get", "VideoCh1", "Ch1MainGop"}).out, "3\n");
  done({"reset", "VideoCh1", "Ch1MainGop"});
  expectNew();
}

TEST_F(ResetTest, NetworkSectionIsTheCardsAndTheHostName) {
  done({"network", "set", "Lan1", "MTU", "1400"});
  done({"network", "hostname", "gate"});
  EXPECT_EQ(run({"reset", "--section", "NetWork"}),
            (ToolRun{0,
                     "PLACE                   BEFORE  AFTER\n"
                     "network.hostname        gate    "
                     "encoder\n"
                     "network.cards.Lan1.mtu  1400    1500\n",
                     ""}));
  expectNew();
}

TEST_F(ResetTest, FactoryAddressThatACardCannotUseIsPutBackNevertheless) {
  const std::string part = "<IpAddr Cur=\"192.168.1.80\" Def=\"192.168.1.80\"/>";
  const std::string none = "<IpAddr Cur=\"0.0.0.0\" Def=\"0.0.0.0\"/>";
  change("business_param.xml", part, none);
  changeDefault("business_param.xml", part, none);
  done({"network", "set", "Lan0", "IpAddr", "192.0.2.9"});
  EXPECT_EQ(run({"reset", "--section", "network"}),
            (ToolRun{0,
                     "PLACE                      BEFORE     AFTER\n"
                     "network.cards.Lan0.ipAddr  192.0.2.9  0.0.0.0\n",
                     ""}));
  expectNew();
}

TEST_F(ResetTest, ResetOfACardTakesTheFactorySetAsWell) {
  changeDefault("business_param.xml", "<Speed Cur=\"1000M\"", "<Speed Cur=\"10M\"");
  EXPECT_EQ(run({"network", "reset", "Lan0"}), (ToolRun{0,
                                                        "FIELD  VALUE\n"
                                                        "Speed  1000M -> 10M\n",
                                                        ""}));
}

TEST_F(ResetTest, SectionsOfAnExportAreResetByTheirNames) {
  change("mpp_cfg.xml", "Port=\"9001\"", "Port=\"9\"");
  done({"preset", "delete", "0"});
  done({"preset", "set", "77", "--pan", "1"});
  EXPECT_EQ(run({"reset", "--section", "live.srt"}), (ToolRun{0,
                                                              "PLACE             BEFORE  AFTER\n"
                                                              "live.srt[1].port  9       9001\n",
                                                              ""}));
  EXPECT_EQ(run({"reset", "--section", "live"}).out, "it has its factory values already\n");
  EXPECT_EQ(run({"reset", "--section", "presets"}).status, 0);
  EXPECT_EQ(run({"preset", "list", "--json"}).out.find("\"id\": 77"), std::string::npos);
  EXPECT_NE(run({"preset", "list", "--json"}).out.find("\"id\": 0"), std::string::npos);
}

TEST_F(ResetTest, WholeDeviceIsAsNewAfterwards) {
  done({"set", "System", "Rtsp", "8554"});
  done({"set", "Audio", "AudMicGain", "3"});
  done({"network", "set", "Lan0", "Enable", "Off"});
  done({"network", "hostname", "gate"});
  done({"preset", "set", "0", "--pan", "7"});
  done({"stream", "cache", "0", "default", "1"});
  change("mpp_cfg.xml", "Port=\"9001\"", "Port=\"9\"");
  done({"reset", "--all", "--yes"});
  expectNew();
  EXPECT_EQ(run({"reset", "--all", "--yes"}),
            (ToolRun{0, "it has its factory values already\n", ""}));
}

TEST_F(ResetTest, WholeDeviceIsOnlyResetWhenThatIsConfirmed) {
  done({"set", "System", "Rtsp", "8554"});
  expectRefused({"reset", "--all"}, 2,
                "'--all' replaces every setting of the device; '--dry-run' shows what would "
                "change, '--yes' does it");
  EXPECT_EQ(run({"reset", "--all", "--dry-run"}), (ToolRun{0,
                                                           "PLACE                   BEFORE  AFTER\n"
                                                           "parameters.System.Rtsp  8554    554\n"
                                                           "nothing was written\n",
                                                           ""}));
}

TEST_F(ResetTest, SecretsAreMaskedInTheTable) {
  change("mpp_cfg.xml", "Password=\"", "Password=\"x");
  const ToolRun masked = run({"reset", "--section", "live.srt", "--dry-run"});
  EXPECT_THAT(masked.out, testing::HasSubstr("********  ********\n"));
  EXPECT_THAT(run({"reset", "--section", "live.srt", "--dry-run", "--show-secrets"}).out,
              testing::Not(testing::HasSubstr("********")));
}

TEST_F(ResetTest, WithoutFactoryCopyDefaultsOfTheMainCopyAreUsed) {
  done({"set", "System", "Rtsp", "8554"});
  device.remove("/app/resource/defcfg/business_param.xml");
  EXPECT_EQ(run({"reset", "--section", "System"}),
            (ToolRun{0,
                     "PLACE                   BEFORE  AFTER\n"
                     "parameters.System.Rtsp  8554    554\n",
                     "camcfg: reset: note: /app/resource/defcfg/business_param.xml is missing; "
                     "\"Def\" of the main copy is used instead\n"}));
}

TEST_F(ResetTest, ParameterThatTheFactorySetLacksGetsItsDefault) {
  done({"set", "System", "Rtsp", "8554"});
  changeDefault("business_param.xml", "<Rtsp ", "<Other ");
  EXPECT_EQ(run({"reset", "System", "Rtsp"}).out,
            "PLACE                   BEFORE  AFTER\n"
            "parameters.System.Rtsp  8554    554\n");
}

TEST_F(ResetTest, ParameterWithoutFactoryValueIsRefusedByItselfAndSkippedInItsSection) {
  change("business_param.xml", "<Rtsp Cur=\"554\" Def=\"554\"", "<Rtsp Cur=\"9\"");
  changeDefault("business_param.xml", "<Rtsp ", "<Other ");
  expectRefused({"reset", "System", "Rtsp"}, 1,
                "System/Rtsp: it has no factory value, neither in the factory set nor as \"Def\"");
  EXPECT_EQ(run({"reset", "--section", "System"}),
            (ToolRun{0, "it has its factory values already\n",
                     "camcfg: reset: note: System/Rtsp has no usable factory value and stays as it "
                     "is\n"}));
}

TEST_F(ResetTest, FactoryValueThatIsNotPermittedIsRefused) {
  changeDefault("business_param.xml", "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"0\"");
  expectRefused({"reset", "System", "Rtsp"}, 1,
                "System/Rtsp: 0 is outside 1..65535; the nearest permitted is 1");
}

TEST_F(ResetTest, WholeDeviceIsNotTouchedWhereAFileHasNoFactoryCopy) {
  done({"set", "System", "Rtsp", "8554"});
  device.remove("/app/resource/defcfg/preset_cfg.xml");
  expectRefused({"reset", "--all", "--yes"}, 1,
                "presets has no factory values: /app/resource/defcfg/preset_cfg.xml is missing");
}

TEST_F(ResetTest, FaultyFactoryCopyIsReportedByItsOwnPathAndLine) {
  changeDefault("mpp_cfg.xml", "<Channel Id=\"1\" Name=", "<Channel Id=\"1\" Nam=");
  const ToolRun result = run({"reset", "--section", "live.websocket"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err,
              testing::StartsWith("camcfg: reset: live.websocket has no factory values: "
                                  "/app/resource/defcfg/mpp_cfg.xml:"));
}

struct RefusedReset {
  std::vector<std::string> words;
  int status;
  const char* line;
};

void PrintTo(const RefusedReset& refused, std::ostream* out) {
  *out << refused.line;
}

class RefusedResetTest : public ResetTest, public testing::WithParamInterface<RefusedReset> {};

TEST_P(RefusedResetTest, IsReportedInOneLineAndChangesNothing) {
  std::vector<std::string> words = GetParam().words;
  words.insert(words.begin(), "reset");
  expectRefused(words, GetParam().status, GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    Words, RefusedResetTest,
    testing::Values(
        RefusedReset{{}, 2, "nothing is named; give a parameter, '--section SECTION' or '--all'"},
        RefusedReset{{"System"}, 2, "which parameter? '--section System' resets the whole section"},
        RefusedReset{{"System", "Rtsp", "--all"},
                     2,
                     "more than one thing is named; give a parameter, '--section SECTION' or "
                     "'--all'"},
        RefusedReset{{"--section", "System", "--all", "--yes"},
                     2,
                     "more than one thing is named; give a parameter, '--section SECTION' or "
                     "'--all'"},
        RefusedReset{
            {"System", "Rtps"}, 1, "section System has no parameter 'Rtps'; did you mean 'Rtsp'?"},
        RefusedReset{{"Sytem", "Rtsp"}, 1, "there is no section 'Sytem'; did you mean 'System'?"},
        RefusedReset{
            {"--section", "Sytem"}, 1, "there is no section 'Sytem'; did you mean 'System'?"},
        RefusedReset{{"--section", "live.str"},
                     1,
                     "there is no section 'live.str'; did you mean 'live.srt'?"},
        RefusedReset{{"Overlay", "OsdClock/Format"},
                     1,
                     "Overlay/OsdClock/Format: the library sets no parameter inside another one"}));

}  // namespace
}  // namespace camcfg::tests
