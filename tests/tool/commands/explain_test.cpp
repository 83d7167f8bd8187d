#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

/// A device with parameters and a backup and factory set of them.
class ExplainTest : public MediaToolTest {
 protected:
  ExplainTest() {
    writeBoth(kParameters);
    device.write(kBusinessDefault, kParameters);
  }

  ToolRun explain(std::vector<std::string> words) const {
    words.insert(words.begin(), "explain");
    return run(words);
  }

  void change(const std::string& path, const std::string& part, const std::string& other) const {
    device.write(path, with(device.read(path), part, other));
  }
};

TEST_F(ExplainTest, ParameterIsShownInEveryCopyWithItsLimitsAndWhatItShadows) {
  change(kBusiness, "<Rtsp Cur=\"554\"", "<Rtsp Cur=\"8554\"");
  EXPECT_EQ(explain({"System", "Rtsp"}),
            (ToolRun{0,
                     "System/Rtsp\n"
                     "\n"
                     "VALUE    MAIN   BACKUP  DEFAULT  PERMITTED\n"
                     "current  8554   554     554      1..65535, step 1\n"
                     "default  554    554     554      -\n"
                     "min      1      1       1        -\n"
                     "max      65535  65535   65535    -\n"
                     "step     1      1       1        -\n"
                     "\n"
                     "COPY     STATE  FILE                                     LINE\n"
                     "main     good   /cfg0/business_param.xml                 6\n"
                     "backup   good   /cfg1/business_param.xml                 6\n"
                     "default  good   /app/resource/defcfg/business_param.xml  6\n"
                     "\n"
                     "lookup of    System/Rtsp\n"
                     "answered by  Rtsp at /cfg0/business_param.xml:6\n"
                     "why          the first whose name begins with 'Rtsp', an exact match\n"
                     "shadows      RtspOverHttp (line 7)\n"
                     "\n"
                     "lookup of    Rtsp (no section)\n"
                     "answered by  System/Rtsp at /cfg0/business_param.xml:6\n"
                     "why          the first section in which a name begins with 'Rtsp'\n"
                     "shadows      -\n",
                     ""}));
  EXPECT_EQ(explain({"parameter", "System", "Rtsp"}), explain({"System", "Rtsp"}));
}

TEST_F(ExplainTest, BeginningOfANameSaysWhatALookupFinds) {
  const ToolRun result = explain({"System", "Web"});
  EXPECT_THAT(result.out, testing::StartsWith("System/WebHttp\n"));
  EXPECT_THAT(result.out,
              testing::HasSubstr(
                  "lookup of    System/Web\n"
                  "answered by  WebHttp at /cfg0/business_param.xml:4\n"
                  "why          the first whose name begins with 'Web'; there is no exact match\n"
                  "shadows      WebHttps (line 5)\n"));
}

TEST_F(ExplainTest, ExactNameThatAPrefixHidesIsShown) {
  writeBoth(
      "<System>\n"
      "    <RtspOverHttp Cur=\"8080\"/>\n"
      "    <Rtsp Cur=\"554\"/>\n"
      "</System>\n");
  const ToolRun result = explain({"System", "Rtsp"});
  EXPECT_THAT(result.out, testing::StartsWith("System/Rtsp\n"
                                              "\n"
                                              "VALUE    MAIN  BACKUP  DEFAULT  PERMITTED\n"
                                              "current  554   554     554      -\n"));
  EXPECT_THAT(
      result.out,
      testing::HasSubstr("answered by  RtspOverHttp at /cfg0/business_param.xml:2\n"
                         "why          the first whose name begins with 'Rtsp'; the exact match "
                         "comes later\n"
                         "shadows      Rtsp (line 3)\n"));
}

TEST_F(ExplainTest, SectionsThatALookupWithoutASectionSkipsAreShown) {
  writeBoth("<A>\n<GainRed Cur=\"1\"/>\n</A>\n<B>\n<Gain Cur=\"2\"/>\n</B>\n");
  EXPECT_THAT(explain({"B", "Gain"}).out,
              testing::EndsWith("lookup of    Gain (no section)\n"
                                "answered by  A/GainRed at /cfg0/business_param.xml:2\n"
                                "why          the first section in which a name begins with "
                                "'Gain'\n"
                                "shadows      B/Gain (line 5)\n"));
}

TEST_F(ExplainTest, ParameterInsideAnotherIsLookedUpNameByName) {
  const ToolRun result = explain({"NetWork", "Eth0/IpAddr"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("lookup of    NetWork/Eth0\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("lookup of    NetWork/Eth0/IpAddr\n"
                                             "answered by  IpAddr at "
                                             "/cfg0/business_param.xml:17\n"));
}

TEST_F(ExplainTest, BrokenAndMissingCopiesAreShownAndTheNextGoodOneIsLookedUp) {
  device.write(kBusiness, "<System");
  device.remove(kBusinessDefault);
  const ToolRun result = explain({"Image", "Mode"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err,
            "camcfg: explain: note: /cfg0/business_param.xml is not well-formed XML\n"
            "camcfg: explain: note: /app/resource/defcfg/business_param.xml is missing\n");
  EXPECT_THAT(result.out, testing::HasSubstr("current  -     Auto                   -        "
                                             "Auto,Half-Auto,Manual\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("main     damaged  /cfg0/business_param.xml"
                                             "                 -\n"));
  EXPECT_THAT(result.out, testing::HasSubstr("answered by  Mode at /cfg1/business_param.xml:12\n"));
}

TEST_F(ExplainTest, WithoutAnyGoodCopyTheFilesAreUnusable) {
  for (const char* path : {kBusiness, kBusinessBackup, kBusinessDefault}) device.remove(path);
  EXPECT_EQ(explain({"Image", "Mode"}),
            (ToolRun{3, "",
                     "camcfg: explain: /cfg0/business_param.xml is missing and no other copy of it "
                     "is good\n"}));
}

TEST_F(ExplainTest, NamesThatNothingBeginsWithAreRefused) {
  EXPECT_EQ(explain({"System", "Rtps"}),
            (ToolRun{1, "",
                     "camcfg: explain: System has nothing whose name begins with 'Rtps'; did you "
                     "mean 'Rtsp'?\n"}));
  EXPECT_EQ(explain({"Sys", "Rtsp"}),
            (ToolRun{1, "", "camcfg: explain: there is no section 'Sys'\n"}));
  EXPECT_EQ(explain({"System"}),
            (ToolRun{1, "", "camcfg: explain: 'System' is a section; give System/NAME\n"}));
  EXPECT_EQ(explain({}), (ToolRun{2, "",
                                  "camcfg: explain: give a parameter, or 'card', 'preset' or "
                                  "'session' and which\n"}));
}

constexpr char kOneCard[] =
    "<NetWork>\n"
    "    <Lan0>\n"
    "        <Speed Cur=\"10M\" Def=\"100M\"/>\n"
    "        <MTU Cur=\"1500\" Min=\"576\" Max=\"2304\"/>\n"
    "        <DnsSearch Cur=\"b\"/>\n"
    "    </Lan0>\n"
    "    <Lan01>\n"
    "        <Speed Cur=\"10M\"/>\n"
    "    </Lan01>\n"
    "</NetWork>\n";

TEST_F(ExplainTest, FieldOfACardIsShownWithWhatIsPermitted) {
  writeBoth(kOneCard);
  device.write(kBusinessDefault, with(kOneCard, "\"1500\"", "\"1400\""));
  EXPECT_EQ(explain({"card", "Lan0", "mtu"}),
            (ToolRun{0,
                     "NetWork/Lan0/MTU\n"
                     "\n"
                     "VALUE  MAIN  BACKUP  DEFAULT  PERMITTED\n"
                     "MTU    1500  1500    1400     576..2304\n"
                     "\n"
                     "COPY     STATE  FILE                                     LINE\n"
                     "main     good   /cfg0/business_param.xml                 4\n"
                     "backup   good   /cfg1/business_param.xml                 4\n"
                     "default  good   /app/resource/defcfg/business_param.xml  4\n"
                     "\n"
                     "lookup of    NetWork/Lan0\n"
                     "answered by  Lan0 at /cfg0/business_param.xml:2\n"
                     "why          the first whose name begins with 'Lan0', an exact match\n"
                     "shadows      Lan01 (line 7)\n"
                     "\n"
                     "lookup of    NetWork/Lan0/MTU\n"
                     "answered by  MTU at /cfg0/business_param.xml:4\n"
                     "why          the first whose name begins with 'MTU', an exact match\n"
                     "shadows      -\n",
                     ""}));
}

TEST_F(ExplainTest, CardIsShownWithAllItsFields) {
  writeBoth(kOneCard);
  const ToolRun result = explain({"card", "Lan01"});
  EXPECT_THAT(result.out, testing::HasSubstr("Speed      10M   10M     -        10M, 100M, 1000M\n"
                                             "MTU        -     -       -        -\n"));
  EXPECT_EQ(explain({"card", "Wifi"}),
            (ToolRun{1, "",
                     "camcfg: explain card: NetWork has nothing whose name begins with "
                     "'Wifi'\n"}));
}

constexpr char kLatePresets[] =
    "<PresetCfg>\n"
    "    <preset Id=\"3\" Description=\"Dock East\" PanPos=\"1\"/>\n"
    "    <preset Description=\"Roof\" PanPos=\"2\"/>\n"
    "    <preset Id=\"4\" Description=\"Dock\" PanPos=\"3\"/>\n"
    "    <preset Id=\"3\" Description=\"Again\" PanPos=\"4\"/>\n"
    "</PresetCfg>\n";

TEST_F(ExplainTest, PresetIsShownByItsId) {
  device.write(kPreset, kLatePresets);
  const ToolRun result = explain({"preset", "3"});
  EXPECT_THAT(result.out, testing::StartsWith("preset 3 'Dock East'\n"
                                              "\n"
                                              "VALUE        MAIN       BACKUP  DEFAULT  PERMITTED\n"
                                              "id           3          -       -        0..128\n"
                                              "description  Dock East  -       -        up to 63 "
                                              "bytes\n"
                                              "pan          1          -       -        -\n"));
  EXPECT_THAT(result.out,
              testing::EndsWith("lookup of    id 3\n"
                                "answered by  preset 3 'Dock East' at /cfg0/preset_cfg.xml:2\n"
                                "why          the first with the Id 3\n"
                                "shadows      preset 3 'Again' (line 5)\n"));
}

TEST_F(ExplainTest, PresetIsShownByItsDescriptionWhichAnotherOneHides) {
  device.write(kPreset, kLatePresets);
  const ToolRun result = explain({"preset", "Dock"});
  EXPECT_THAT(result.out, testing::StartsWith("preset 4 'Dock'\n"));
  EXPECT_THAT(result.out,
              testing::EndsWith("lookup of    description 'Dock'\n"
                                "answered by  preset 3 'Dock East' at /cfg0/preset_cfg.xml:2\n"
                                "why          the first whose description begins with 'Dock'; the "
                                "exact match comes later\n"
                                "shadows      preset 4 'Dock' (line 4)\n"));
  EXPECT_EQ(explain({"preset", "Gate"}),
            (ToolRun{1, "",
                     "camcfg: explain preset: there is no preset Gate: no description begins with "
                     "'Gate'\n"}));
}

TEST_F(ExplainTest, SessionIsShownMemberByMemberWithItsSecretsMasked) {
  device.write(kMppDefault, with(with(kMedia, "9001", "9002"), "<WEBSOCKET>", "\n<WEBSOCKET>"));
  device.remove(kMppBackup);
  EXPECT_EQ(explain({"session", "srt", "1"}),
            (ToolRun{0,
                     "srt 1\n"
                     "\n"
                     "VALUE     MAIN         BACKUP  DEFAULT      PERMITTED\n"
                     "id        1            -       1            -\n"
                     "mode      caller       -       caller       caller, listener\n"
                     "hostname  example.com  -       example.com  -\n"
                     "port      9001         -       9002         1..65535\n"
                     "aesMode   1            -       1            0..2147483647\n"
                     "password  ********     -       ********     -\n"
                     "latency   20           -       20           0..2147483647\n"
                     "streams   -            -       -            -\n"
                     "\n"
                     "COPY     STATE    FILE                              LINE\n"
                     "main     good     /cfg0/mpp_cfg.xml                 49\n"
                     "backup   missing  /cfg1/mpp_cfg.xml                 -\n"
                     "default  good     /app/resource/defcfg/mpp_cfg.xml  50\n"
                     "\n"
                     "lookup of    srt 1\n"
                     "answered by  1 at /cfg0/mpp_cfg.xml:49\n"
                     "why          the first entry with the id 1; loading hands out every entry\n"
                     "shadows      -\n",
                     "camcfg: explain session: note: /cfg1/mpp_cfg.xml is missing\n"}));
  EXPECT_THAT(explain({"session", "srt", "1", "--show-secrets"}).out,
              testing::HasSubstr("password  secret "));
}

TEST_F(ExplainTest, EveryKindOfSessionIsFoundByItsIdOrName) {
  for (const auto& [kind, id] : std::vector<std::pair<const char*, const char*>>{{"source", "1"},
                                                                                 {"cache", "7"},
                                                                                 {"websocket", "7"},
                                                                                 {"rtsp", "live"},
                                                                                 {"rtmp", "0"},
                                                                                 {"ndi", "0"},
                                                                                 {"srt", "0"}})
    EXPECT_THAT(explain({"session", kind, id}).out,
                testing::StartsWith(std::string(kind) + " " + id + "\n\nVALUE "));
}

TEST_F(ExplainTest, SessionsOfOneIdAreShownAsShadowed) {
  giveWith("<Channel Id=\"7\" Name=\"listen\"/>",
           "<Channel Id=\"7\" Name=\"listen\"/>\n<Channel Id=\"7\" Name=\"again\"/>");
  EXPECT_THAT(explain({"session", "websocket", "7"}).out,
              testing::EndsWith("shadows      7 (line 22)\n"));
}

TEST_F(ExplainTest, SessionThatNoCopyHasIsRefused) {
  EXPECT_EQ(explain({"session", "srt", "9"}),
            (ToolRun{1, "", "camcfg: explain session: no copy has a srt with the id 9\n"}));
  EXPECT_EQ(explain({"session", "str", "1"}),
            (ToolRun{2, "",
                     "camcfg: explain session: there is no kind 'str'; there are source, cache, "
                     "websocket, rtsp, rtmp, ndi, srt; did you mean 'srt'?\n"}));
}

TEST_F(ExplainTest, JsonHasEveryMember) {
  const ToolRun result = explain({"card", "Eth0", "IpAddr", "--json"});
  EXPECT_EQ(result.status, 0);
  EXPECT_THAT(result.out, testing::StartsWith("{\n"
                                              "  \"what\": \"NetWork/Eth0/IpAddr\",\n"
                                              "  \"values\": [\n"
                                              "    {\n"
                                              "      \"name\": \"IpAddr\",\n"
                                              "      \"main\": \"192.0.2.7\",\n"
                                              "      \"backup\": \"192.0.2.7\",\n"
                                              "      \"default\": \"192.0.2.7\",\n"
                                              "      \"permitted\": null\n"
                                              "    }\n"
                                              "  ],\n"
                                              "  \"copies\": [\n"
                                              "    {\n"
                                              "      \"copy\": \"main\",\n"
                                              "      \"path\": \"/cfg0/business_param.xml\",\n"
                                              "      \"state\": \"good\",\n"
                                              "      \"line\": 17,\n"
                                              "      \"fault\": null\n"
                                              "    },\n"));
  EXPECT_THAT(result.out, testing::EndsWith("    {\n"
                                            "      \"asked\": \"NetWork/Eth0/IpAddr\",\n"
                                            "      \"path\": \"/cfg0/business_param.xml\",\n"
                                            "      \"answeredBy\": {\n"
                                            "        \"name\": \"IpAddr\",\n"
                                            "        \"line\": 17,\n"
                                            "        \"match\": \"exact\"\n"
                                            "      },\n"
                                            "      \"why\": \"the first whose name begins with "
                                            "'IpAddr', an exact match\",\n"
                                            "      \"shadows\": []\n"
                                            "    }\n"
                                            "  ]\n"
                                            "}\n"));
}

}  // namespace
}  // namespace camcfg::tests
