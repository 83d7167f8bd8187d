#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::Contains;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using tool::Json;
class FindTest : public SampleTest {
 protected:
  std::vector<std::string> places(Words words) const {
    words.insert(words.begin(), {"find", "--json"});
    std::vector<std::string> found;
    for (const Json& setting : jsonIn(run(words).out)) found.push_back(setting["place"].text());
    return found;
  }
};

TEST_F(FindTest, SettingsAreFoundByEverythingThatIsKnownOfThem) {
  struct FoundPlace {
    const char* word;
    const char* place;
  };
  constexpr FoundPlace kRows[] = {
      {"System/Rtsp", "System/Rtsp"},                        // the place
      {"latency", "live.srt[1].latency"},                    // a part of it
      {"9001", "live.srt[1].port"},                          // the value
      {"ingest", "live.srt[1].hostname"},                    //
      {"hops", "live.ndi[0].multicastTtl"},                  // the unit
      {"lost packets", "live.srt[0].latency"},               // the help
      {"MJPEG", "VideoCh1/Ch1MainCodec"},                    // the permitted texts
      {"listener", "live.srt[1].mode"},                      //
      {"ch1/main", "live.rtsp[ch1/main].channels[0].name"},  // the session's name
      {"preview-1", "live.websocket[1].id"},                 //
      {"caller 1", "live.srt[1].hostname"},                  //
      {"Home", "presets[0].pan"},                            // the preset's description
      {"Lan0", "network.cards.Lan0.mtu"},                    // the card
      {"eth0", "network.cards.Lan0.mtu"},                    // its interface
      {"RTSP port", "System/Rtsp"},                          // what the device calls it
  };
  for (const auto& [word, place] : kRows) EXPECT_THAT(places({word}), Contains(place)) << word;
}

TEST_F(FindTest, UpperAndLowerCaseAreAlike) {
  EXPECT_EQ(places({"RTSP"}), places({"rtsp"}));
  EXPECT_EQ(places({"mjpeg"}), places({"MJPEG"}));
  EXPECT_THAT(places({"mjpeg"}), Not(IsEmpty()));
}

TEST_F(FindTest, EachWordMustBeFound) {
  EXPECT_EQ(places({"rtsp", "port"}), (Words{"System/Rtsp", "System/RtspOverHttp"}));
  EXPECT_EQ(places({"port", "rtsp"}), places({"rtsp", "port"}));
}

TEST_F(FindTest, TheyAreShownWithTheirValues) {
  EXPECT_EQ(run({"find", "lan1", "mtu"}),
            (ToolRun{0,
                     "PLACE                   VALUE  UNIT   OF           PERMITTED  MEANING\n"
                     "network.cards.Lan1.mtu  1500   bytes  Lan1 (Eth1)  68..9216   Largest packet "
                     "that it sends\n",
                     ""}));
  EXPECT_EQ(jsonIn(run({"find", "srt[1].latency", "--json"}).out)[0],
            (Json{{"place", "live.srt[1].latency"},
                  {"value", 200},
                  {"of", "caller 1 (ingest.example.com)"},
                  {"unit", "ms"},
                  {"help", "Time for sending lost packets again"},
                  {"permitted", "0..2147483647"}}));
}

TEST_F(FindTest, NothingIsARefusal) {
  EXPECT_EQ(run({"find", "no", "such", "thing"}),
            (ToolRun{1, "", "camcfg: find: no setting has no and such and thing\n"}));
  EXPECT_EQ(run({"find", "nothing-of-this", "--json"}).out, "[]\n");
}

TEST_F(FindTest, SecretsAreMaskedAndNotFoundByTheirValues) {
  for (const char* secret : {"change-me", "change-me-too", "event/program"})
    EXPECT_THAT(places({secret}), IsEmpty()) << secret;
  const std::string found = run({"find", "pass"}).out + run({"find", "url"}).out;
  EXPECT_THAT(found, HasSubstr("********"));
  EXPECT_THAT(found, HasSubstr("rtmp://live.example.com/event/********"));
  EXPECT_THAT(found, Not(HasSubstr("change-me")));
}

TEST_F(FindTest, WhatCannotBeReadIsNamedAndTheRestIsFound) {
  change("mpp_cfg.xml", "Port=\"9001\"", "");
  const ToolRun result = run({"find", "rtsp", "port"});
  EXPECT_EQ(result.status, 4);
  EXPECT_THAT(result.out, HasSubstr("System/Rtsp "));
  EXPECT_THAT(result.err, HasSubstr("left out of live.srt: /cfg0/mpp_cfg.xml:"));
}

TEST_F(FindTest, DeviceOfWhichNothingCanBeReadIsUnusable) {
  for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"})
    for (const char* directory : {"/cfg0/", "/cfg1/", "/app/resource/defcfg/"})
      device.write(std::string(directory) + name, "<");
  EXPECT_EQ(run({"find", "rtsp"}).status, 3);
}

TEST_F(FindTest, WordsInOneArgumentMayBeApart) {
  EXPECT_EQ(places({"port rtsp"}), places({"rtsp", "port"}));
  EXPECT_EQ(places({" rtsp  port "}), places({"rtsp", "port"}));
  EXPECT_EQ(run({"find", " "}).status, 2);
}

TEST_F(FindTest, LettersOfAllScriptsAreAlikeInUpperAndLowerCase) {
  EXPECT_EQ(run({"preset", "rename", "0", "\u00dcbersicht \u0421\u0446\u0435\u043d\u0430"}).status,
            0);
  EXPECT_THAT(places({"\u00fcbersicht"}), Contains("presets[0].pan"));
  EXPECT_THAT(places({"\u00dcBERSICHT", "\u0421\u0426\u0415\u041d\u0410"}),
              Contains("presets[0].pan"));
}

}  // namespace
}  // namespace camcfg::tests
