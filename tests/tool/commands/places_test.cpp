#include "support/random_cases.h"
#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using tool::Json;
class PlacesTest : public SampleTest {
 protected:
  ToolRun refused(const std::string& text) const { return {1, "", "camcfg: " + text + "\n"}; }
  std::string value(const std::string& place) const { return run({"get", place}).out; }
};

TEST_F(PlacesTest, PlaceIsTakenWhereverSectionAndNameAre) {
  const std::vector<std::pair<Words, Words>> pairs = {
      {{"get", "System", "Rtsp"}, {"get", "System/Rtsp"}},
      {{"get", "Overlay", "OsdClock/Format"}, {"get", "Overlay/OsdClock/Format"}},
      {{"get", "System", "Rtsp", "--json"}, {"get", "System/Rtsp", "--json"}},
      {{"describe", "Rtsp"}, {"describe", "System/Rtsp"}},
      {{"explain", "System", "Rtsp"}, {"explain", "System/Rtsp"}},
      {{"explain", "System", "Rts"}, {"explain", "System/Rts"}},
      {{"set", "System", "Rtsp", "554"}, {"set", "System/Rtsp", "554"}},
      {{"set", "System", "Rtsp", "0"}, {"set", "System/Rtsp", "0"}},
      {{"reset", "System", "Rtsp"}, {"reset", "System/Rtsp"}}};
  for (const auto& [apart, together] : pairs) EXPECT_EQ(run(together), run(apart)) << together[1];
}

TEST_F(PlacesTest, EveryParameterThatIsListedCanBeGivenAsAPlace) {
  for (const Json& parameter : jsonIn(run({"list", "--json"}).out)) {
    if (parameter["value"].is_null()) continue;
    const std::string place = parameter["section"].text() + "/" + parameter["name"].text();
    EXPECT_EQ(jsonIn(run({"get", place, "--json"}).out)["value"], parameter["value"]) << place;
  }
}

TEST_F(PlacesTest, NameByItselfIsEnoughWhereItIsUnique) {
  EXPECT_EQ(value("Rtsp"), "554\n");
  EXPECT_EQ(value("Format"), "YYYY-MM-DD\n");
  EXPECT_EQ(value("OsdClock/Position"), "TopRight\n");
  EXPECT_EQ(run({"set", "Rtsp=8554"}).out, "System/Rtsp: 554 -> 8554\n");
  EXPECT_EQ(run({"set", "Rtsp", "554"}).out, "System/Rtsp: 8554 -> 554\n");
  EXPECT_EQ(run({"explain", "Rtsp", "--json"}).out, run({"explain", "System/Rtsp", "--json"}).out);
  EXPECT_EQ(run({"reset", "Rtsp"}).status, 0);
}

TEST_F(PlacesTest, CandidatesAreListedWhereItIsNot) {
  const std::string fault =
      "'Position' is the name of more than one; give one of Overlay/OsdClock/Position, "
      "Overlay/OsdChannelName/Position";
  EXPECT_EQ(run({"get", "Position"}), refused("get: " + fault));
  EXPECT_EQ(run({"set", "Position=TopLeft"}), refused("set: " + fault));
  EXPECT_EQ(run({"explain", "Position"}), refused("explain: " + fault));
  EXPECT_EQ(run({"get", "MTU"}),
            refused("get: 'MTU' is the name of more than one; give one of NetWork/Lan0/MTU, "
                    "NetWork/Lan1/MTU, NetWork/Wifi/MTU"));
}

TEST_F(PlacesTest, UnknownOnesAreRefusedWithTheNearest) {
  EXPECT_EQ(run({"get", "Rtps"}),
            refused("get: there is no parameter 'Rtps'; did you mean 'Rtsp'?"));
  EXPECT_EQ(run({"get", "Sytem/Rtsp"}),
            refused("get: there is no parameter 'Sytem/Rtsp'; did you mean 'System/Rtsp'?"));
  EXPECT_EQ(run({"get", "System/Rtps"}),
            refused("get: section System has no parameter 'Rtps'; did you mean 'Rtsp'?"));
  EXPECT_EQ(run({"get", "System"}), refused("get: 'System' is a section; give System/NAME"));
  EXPECT_EQ(
      run({"get", "live.srt[1].prt"}),
      refused("get: there is no setting 'live.srt[1].prt'; did you mean 'live.srt[1].port'?"));
}

TEST_F(PlacesTest, SeveralValuesAreSetWithOneSave) {
  const ToolRun result = run({"set", "System/Rtsp=8554", "System/WebHttp=8000",
                              "VideoCh1/Ch1MainCodec=H264", "System/WebHttps=443"});
  EXPECT_EQ(result, (ToolRun{0,
                             "System/Rtsp: 554 -> 8554\n"
                             "System/WebHttp: 80 -> 8000\n"
                             "VideoCh1/Ch1MainCodec: H265 -> H264\n"
                             "System/WebHttps: it is 443 already\n",
                             ""}));
  const Json changes = jsonIn(run({"history", "--json"}).out)["changes"];
  ASSERT_EQ(changes.size(), 1U);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(value("Rtsp") + value("WebHttp") + value("Ch1MainCodec"), "554\n80\nH265\n");
}

TEST_F(PlacesTest, SeveralValuesAreCheckedTogetherAndAllFaultsAreNamed) {
  const std::string before = device.read(kBusiness);
  EXPECT_EQ(
      run({"set", "System/Rtsp=8554", "System/WebHttp=70000", "Ch1MainCodec=H266", "Nme=1"}),
      refused("set: System/WebHttp: 70000 is outside 1..65535; the nearest permitted is 65535; "
              "VideoCh1/Ch1MainCodec: 'H266' is not among 'H264,H265,MJPEG'; the nearest "
              "permitted is 'H264'; there is no parameter 'Nme'"));
  EXPECT_EQ(run({"set", "System/Rtsp=1", "Rtsp=2"}),
            refused("set: System/Rtsp: it is given twice"));
  EXPECT_EQ(device.read(kBusiness), before);
}

TEST_F(PlacesTest, WordsThatAreNoAssignmentsAreRefused) {
  EXPECT_EQ(run({"set", "System/Rtsp"}).err, "camcfg: set: which value? give System/Rtsp=VALUE\n");
  EXPECT_EQ(run({"set", "System/Rtsp=1", "WebHttp"}).err,
            "camcfg: set: 'WebHttp' is not PLACE=VALUE\n");
  EXPECT_EQ(run({"set", "System", "Rtsp", "1", "WebHttp", "2"}).err,
            "camcfg: set: give PLACE=VALUE for each, or SECTION NAME VALUE\n");
  EXPECT_EQ(run({"set", "System/Rtsp=1", "=2"}).status, 2);
}

TEST_F(PlacesTest, WordsAfterTheEndOfOptionsAreTakenAsTheyAre) {
  EXPECT_EQ(run({"set", "--", "Img1Hue=-5"}).out, "Image/Img1Hue: 0 -> -5\n");
  EXPECT_EQ(run({"set", "Image", "Img1Hue", "--", "-10"}).out, "Image/Img1Hue: -5 -> -10\n");
  EXPECT_EQ(run({"set", "--dry-run", "Image/Img1Hue", "--", "-15"}).out,
            "Image/Img1Hue: -10 -> -15\nnothing was written\n");
  EXPECT_EQ(run({"set", "Img1Hue", "--", "list"}).err,
            "camcfg: set: Image/Img1Hue: 'list' is not a decimal integer\n");
  EXPECT_EQ(run({"find", "--", "--json"}).err, "camcfg: find: no setting has --json\n");
  EXPECT_EQ(run({"get", "Rtsp", "--", "a", "b"}).err,
            "camcfg: get: unexpected argument 'b'; see 'camcfg get --help'\n");
}

TEST_F(PlacesTest, RehearsalWritesNothing) {
  const std::string before = device.read(kBusiness);
  EXPECT_EQ(run({"set", "Rtsp=8554", "--dry-run"}),
            (ToolRun{0, "System/Rtsp: 554 -> 8554\nnothing was written\n", ""}));
  EXPECT_EQ(run({"set", "System", "Rtsp", "8554", "--dry-run"}).out,
            "System/Rtsp: 554 -> 8554\nnothing was written\n");
  EXPECT_EQ(run({"set", "Rtsp=0", "--dry-run"}).status, 1);
  EXPECT_EQ(device.read(kBusiness), before);
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 0U);
}

TEST_F(PlacesTest, UnchangedValuesAreNotWritten) {
  EXPECT_EQ(run({"set", "Rtsp=554", "System/WebHttp=80"}),
            (ToolRun{0,
                     "System/Rtsp: it is 554 already\n"
                     "System/WebHttp: it is 80 already\n"
                     "nothing was written\n",
                     ""}));
  EXPECT_EQ(run({"system", "rtsp-port", "554"}).out,
            "System/Rtsp: it is 554 already\nnothing was written\n");
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 0U);
}

TEST_F(PlacesTest, AnswersInJsonHaveTheirDocumentedShapes) {
  EXPECT_EQ(jsonIn(run({"set", "Rtsp=8554", "WebHttp=80", "--json"}).out),
            (Json{{"dryRun", false},
                  {"changes", Json(std::vector<Json>{Json{{"section", "System"},
                                                          {"name", "Rtsp"},
                                                          {"type", "integer"},
                                                          {"before", 554},
                                                          {"value", 8554}}})},
                  {"unchanged", Json(std::vector<Json>{Json{{"section", "System"},
                                                            {"name", "WebHttp"},
                                                            {"type", "integer"},
                                                            {"before", 80},
                                                            {"value", 80}}})}}));
  EXPECT_EQ(jsonIn(run({"get", "live.srt[1].latency", "--json"}).out),
            (Json{{"place", "live.srt[1].latency"},
                  {"value", 200},
                  {"unit", "ms"},
                  {"permitted", "0..2147483647"},
                  {"help", "Time for sending lost packets again"}}));
}

TEST_F(PlacesTest, EverySettingThatIsFoundCanBeRead) {
  // A letter that is in the help or the place of every setting.
  int number = 0;
  for (const Json& setting : jsonIn(run({"find", "e", "--json"}).out)) {
    if (setting["value"].is_null() || !isTried(++number)) continue;
    EXPECT_EQ(jsonIn(run({"get", setting["place"].text(), "--json"}).out)["value"],
              setting["value"])
        << setting["place"].text();
  }
}

TEST_F(PlacesTest, SettingsOfSeveralFilesAreSetByTheirPlaces) {
  const std::string before = run({"export"}).out;
  EXPECT_EQ(run({"set", "live.srt[1].latency=250", "network.cards.Lan0.mtu=1400", "Rtsp=8554",
                 "presets[0].description=Main door", "stream.caches[12].size=16MiB",
                 "live.srt[0].streams[ch1].default=yes"}),
            (ToolRun{0,
                     "PLACE                             BEFORE  AFTER\n"
                     "stream.caches[12].size.value      8       16\n"
                     "live.srt[0].streams[ch1].default  no      yes\n"
                     "live.srt[1].latency               200     250\n"
                     "parameters.System.Rtsp            554     8554\n"
                     "network.cards.Lan0.mtu            1500    1400\n"
                     "presets[0].description            Home    Main door\n",
                     "camcfg: set: warning: /cfg0/mpp_cfg.xml:167: <Stream> 'ch1' is a default, as "
                     "the one at line 163 [stream-default]\n"}));
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 1U);
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(run({"export"}).out, before);
  EXPECT_EQ(run({"set", "live.srt[1].latency=200"}).out, "it is so already; nothing was written\n");
}

TEST_F(PlacesTest, SettingsOfSeveralFilesAreCheckedTogether) {
  const std::string before = run({"export"}).out;
  EXPECT_EQ(run({"set", "stream.caches[12].size=2GiB", "live.srt[1].latency=abc", "Rtsp=0"}),
            (ToolRun{1, "",
                     "camcfg: set: stream.caches[12].size: it is 2 GiB or more, which the library "
                     "cannot count\n"
                     "camcfg: set: live.srt[1].latency: it must be a number, not \"abc\"\n"
                     "camcfg: set: parameters.System.Rtsp: 0 is outside 1..65535; the nearest "
                     "permitted is 1\n"
                     "camcfg: set: nothing was changed\n"}));
  EXPECT_EQ(run({"set", "live.rtmp[0].video=99"}).err,
            "camcfg: set: live.rtmp[0].video: there is no stream cache 99; did you mean 12 "
            "(program)?\ncamcfg: set: nothing was changed\n");
  EXPECT_THAT(run({"set", "stream.caches[12].id=77"}).err,
              HasSubstr("live.rtmp[0].video: there is no stream cache 12"));
  EXPECT_EQ(run({"set", "live.srt[1].latency=1", "live.srt[1].latency=2"}),
            refused("set: live.srt[1].latency: it is given twice"));
  EXPECT_EQ(run({"set", "live.srt[9].port=1"}).status, 1);
  EXPECT_EQ(run({"set", "live.srt[1].latency=1", "System/DeviceAttr=1"}).status, 1);
  EXPECT_EQ(run({"set", "live.srt[1].latency=1", "NetWork/Lan0/MTU=1"}).status, 1);
  EXPECT_EQ(run({"export"}).out, before);
}

TEST_F(PlacesTest, ElementInACardThatIsNoFieldOfItIsNotSet) {
  change("business_param.xml", "<MTU Cur=\"1500\" Def=\"1500\"/>",
         "<MTU Cur=\"1500\" Def=\"1500\"/><Colour Cur=\"1\" Def=\"1\"/>");
  EXPECT_EQ(run({"set", "NetWork/Lan0/Colour=2"}),
            refused("set: NetWork/Lan0/Colour: the library sets no parameter inside another one; "
                    "'camcfg network set' sets those of a card"));
}

}  // namespace
}  // namespace camcfg::tests
