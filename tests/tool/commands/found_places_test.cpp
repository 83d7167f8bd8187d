#include <functional>

#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using tool::Json;
/// Places that `find` and `list` print, typed as they are.
class FoundPlacesTest : public SampleTest {
 protected:
  static ToolRun refused(const std::string& text) { return {1, "", "camcfg: " + text + "\n"}; }
};

TEST_F(FoundPlacesTest, DescribeShowsWhatIsKnownOfASetting) {
  EXPECT_EQ(run({"describe", "live.srt[1].latency"}),
            (ToolRun{0,
                     "place      live.srt[1].latency\n"
                     "meaning    Time for sending lost packets again\n"
                     "permitted  0..2147483647\n"
                     "unit       ms\n"
                     "current    200\n",
                     ""}));
  EXPECT_EQ(jsonIn(run({"describe", "network.cards.Lan0.mtu", "--json"}).out)["value"], 1500);
  EXPECT_EQ(run({"describe", "live.srt[1].latencx"}),
            refused("describe: there is no setting 'live.srt[1].latencx'; did you mean "
                    "'live.srt[1].latency'?"));
}

TEST_F(FoundPlacesTest, ExplainShowsWhoHasASetting) {
  EXPECT_EQ(run({"explain", "live.srt[1].latency"}), run({"explain", "session", "srt", "1"}));
  EXPECT_EQ(run({"explain", "live.rtsp[ch1/main].channels[0].id"}),
            run({"explain", "session", "rtsp", "ch1/main"}));
  EXPECT_EQ(run({"explain", "stream.sources[9].enabled"}),
            run({"explain", "session", "source", "9"}));
  EXPECT_EQ(run({"explain", "presets[3].pan"}), run({"explain", "preset", "3"}));
  EXPECT_EQ(run({"explain", "network.cards.Lan0.mtu"}), run({"explain", "card", "Lan0", "MTU"}));
  EXPECT_EQ(run({"explain", "network.cards.Lan0.mut"}).status, 1);
  EXPECT_EQ(run({"explain", "network.hostname"}).status, 1);
  EXPECT_EQ(run({"explain", "live.srt[9].port"}).status, 1);
}

TEST_F(FoundPlacesTest, ExplainMasksSecretsUnlessTheyAreAskedFor) {
  run({"set", "live.srt[1].password=open sesame"});
  EXPECT_THAT(run({"explain", "live.srt[1].password"}).out, Not(HasSubstr("open sesame")));
  EXPECT_THAT(run({"explain", "live.srt[1].password", "--show-secrets"}).out,
              HasSubstr("open sesame"));
}

TEST_F(FoundPlacesTest, ResetPutsTheValueOfTheFactorySetBack) {
  const std::string before = run({"export"}).out;
  const std::vector<std::pair<const char*, const char*>> changes = {
      {"live.srt[1].latency", "250"},
      {"presets[3].pan", "7"},
      {"network.cards.Lan0.mtu", "1400"},
      {"network.hostname", "gate"},
      {"stream.caches[12].size", "16777216"}};
  for (const auto& [place, value] : changes) {
    EXPECT_EQ(run({"set", place + std::string("=") + value}).status, 0);
    const ToolRun rehearsal = run({"reset", place, "--dry-run"});
    EXPECT_THAT(rehearsal.out, HasSubstr("nothing was written"));
    EXPECT_NE(run({"export"}).out, before);
    const ToolRun result = run({"reset", place});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr(place));
    EXPECT_EQ(run({"export"}).out, before);
    EXPECT_EQ(run({"reset", place}).out, "it has its factory values already\n");
  }
}

TEST_F(FoundPlacesTest, ResetOfWhatTheFactorySetLacksIsRefused) {
  EXPECT_EQ(run({"live", "srt", "add", "2", "mode=listener", "port=9002"}).status, 0);
  const std::string before = run({"export"}).out;
  EXPECT_EQ(run({"reset", "live.srt[2].port"}),
            refused("reset: live.srt[2].port: it has no factory value; the factory set lacks it"));
  device.remove("/app/resource/defcfg/mpp_cfg.xml");
  EXPECT_EQ(run({"reset", "live.srt[1].port"}),
            refused("reset: live.srt[1].port: it has no factory value: "
                    "/app/resource/defcfg/mpp_cfg.xml is missing"));
  EXPECT_EQ(run({"export"}).out, before);
}

TEST_F(FoundPlacesTest, FieldsOfCardsGoByThePlacesThatListPrints) {
  EXPECT_THAT(run({"list", "NetWork"}).out, HasSubstr("NetWork  Lan0/MTU "));
  EXPECT_EQ(run({"get", "NetWork", "Lan0/MTU"}).out, "1500\n");
  EXPECT_EQ(run({"set", "NetWork/Lan0/MTU=1400", "System/Rtsp=8554"}).status, 0);
  EXPECT_EQ(run({"get", "NetWork/Lan0/MTU"}).out, "1400\n");
  EXPECT_EQ(run({"get", "Rtsp"}).out, "8554\n");
  EXPECT_EQ(run({"set", "NetWork", "Lan0/MTU", "1300"}).status, 0);
  EXPECT_EQ(run({"set", "NetWork/Lan0/MTU", "1200"}).status, 0);
  EXPECT_EQ(run({"get", "NetWork/Lan0/MTU"}).out, "1200\n");
  EXPECT_EQ(run({"describe", "NetWork/Lan0/MTU"}), run({"describe", "network.cards.Lan0.mtu"}));
  EXPECT_EQ(run({"reset", "NetWork", "Lan0/MTU"}).status, 0);
  EXPECT_EQ(run({"get", "NetWork/Lan0/MTU"}).out, "1500\n");
  EXPECT_EQ(run({"set", "NetWork/Lan0/MTU=1"}).status, 1);
  EXPECT_EQ(run({"set", "NetWork/Lan7/MTU=1400"}).status, 1);
}

TEST_F(FoundPlacesTest, ParametersGoByThePlacesOfListsOfChangesToo) {
  EXPECT_EQ(run({"get", "parameters.System.Rtsp"}).out, "554\n");
  EXPECT_EQ(run({"set", "parameters.System.Rtsp=600", "live.srt[1].latency=250"}).status, 0);
  EXPECT_EQ(run({"get", "System/Rtsp"}).out, "600\n");
  EXPECT_EQ(run({"describe", "parameters.System.Rtsp"}), run({"describe", "System/Rtsp"}));
  EXPECT_EQ(run({"explain", "parameters.System.Rtsp"}), run({"explain", "System/Rtsp"}));
  EXPECT_THAT(run({"reset", "parameters.System.Rtsp"}).out, HasSubstr("600     554"));
}

TEST_F(FoundPlacesTest, UnknownSectionsEndAlikeWhereverTheyAreGiven) {
  for (const Words& words : {Words{"list", "Sytem"},
                             {"export", "Sytem"},
                             {"reset", "Sytem"},
                             {"reset", "--section", "Sytem"}})
    EXPECT_EQ(run(words),
              refused(words[0] + ": there is no section 'Sytem'; did you mean 'System'?"));
  EXPECT_EQ(run({"reset", "Rtps"}),
            refused("reset: there is no parameter 'Rtps'; did you mean 'Rtsp'?"));
}

TEST_F(FoundPlacesTest, WhateverListsOfChangesNameCanBeRead) {
  const auto get = [this](const char* place) { return run({"get", place}).out; };
  EXPECT_EQ(get("stream.caches[0].size"), "8MB\n");
  EXPECT_EQ(get("stream.caches[0].size.value"), "8\n");
  EXPECT_EQ(get("live.rtsp[ch1/main].channels[8].name"), "audio\n");
  EXPECT_EQ(get("live.rtsp[ch1/main].channels[8]"), "{\"id\":8,\"name\":\"audio\"}\n");
  EXPECT_EQ(get("live.websocket[1]"), "{\"id\":1,\"name\":\"preview-1\"}\n");
  EXPECT_THAT(get("live.rtmp[0]"), AllOf(HasSubstr("\"password\":\"********\""),
                                         HasSubstr("live.example.com/event/********")));
  const Json answer = jsonIn(run({"get", "live.srt[1].streams[program].channels", "--json"}).out);
  EXPECT_EQ(answer.dump(), R"({"place":"live.srt[1].streams[program].channels","value":[12,8],)"
                           R"("unit":null,"permitted":null,"help":"Stream caches that it sends"})");
  const Json changes = jsonIn(
      run({"live", "rtsp", "set", "ch1/main", "name=stage", "channels=0:picture,8:audio", "--json"})
          .out);
  EXPECT_EQ(changes["changes"].size(), 2U);
  EXPECT_EQ(run({"get", "live.rtsp[stage]"}).status, 0);
}

TEST_F(FoundPlacesTest, EveryPlaceOfADocumentCanBeRead) {
  std::size_t count = 0;
  const std::function<void(const std::string&, const Json&)> visit = [&](const std::string& place,
                                                                         const Json& value) {
    ++count;
    EXPECT_EQ(jsonIn(run({"get", place, "--json"}).out)["value"].dump(), value.dump()) << place;
    if (value.is_object())
      for (const auto& [name, member] : value.items()) visit(place + "." + name, member);
  };
  const Json document = jsonIn(run({"export"}).out);
  for (const Json& instance : *document.find_path("live/ndi"))
    visit("live.ndi[" + instance.at("id").dump() + "]", instance);
  for (const Json& cache : *document.find_path("stream/caches"))
    visit("stream.caches[" + cache.at("id").dump() + "]", cache);
  EXPECT_GT(count, 30U);
}

TEST_F(FoundPlacesTest, PlacesOfMoreOrLessThanASettingAreNotSet) {
  EXPECT_EQ(
      run({"set", "stream.caches[0].size.value=4"}),
      refused("set: stream.caches[0].size.value is a part of stream.caches[0].size; give that "
              "one as a whole"));
  EXPECT_EQ(run({"set", "live.rtsp[ch1/main]=x"}),
            refused("set: live.rtsp[ch1/main] is more than one setting; give one, such as "
                    "'live.rtsp[ch1/main].name'"));
  EXPECT_EQ(run({"get", "live.rtsp[ch1/mian]"}).status, 1);
}

TEST_F(FoundPlacesTest, SizesAreTypedAsTheyArePrinted) {
  const std::string size = run({"get", "stream.caches[1].size"}).out;
  EXPECT_EQ(size, "512KB\n");
  EXPECT_EQ(run({"set", "stream.caches[1].size=512KB"}).out,
            "it is so already; nothing was written\n");
  EXPECT_THAT(run({"find", "caches[1].size"}).out, HasSubstr("  512KB  "));
}

TEST_F(FoundPlacesTest, ListsMayHaveBlanksAsTheyArePrinted) {
  EXPECT_EQ(run({"get", "stream.caches[0].allowed"}).out, "0, 1\n");
  EXPECT_EQ(run({"set", "stream.caches[0].allowed=0, 1"}).out,
            "it is so already; nothing was written\n");
}

TEST_F(FoundPlacesTest, PlacesWhereSectionsAreMeantAreNamed) {
  const std::string text = "there is no section 'System/Rtsp'; did you mean 'System'?";
  EXPECT_EQ(run({"list", "System/Rtsp"}), refused("list: " + text));
  EXPECT_EQ(run({"export", "System/Rtsp"}), refused("export: " + text));
  EXPECT_EQ(run({"get", "System/Rtsp", "System/WebHttp"}),
            (ToolRun{2, "",
                     "camcfg: get: give one place, or SECTION NAME; 'list' and 'find' print "
                     "several\n"}));
}

TEST_F(FoundPlacesTest, EmptyArgumentsAreRefused) {
  EXPECT_EQ(run({"get", ""}).err, "camcfg: get: which setting? the argument is empty\n");
  EXPECT_EQ(run({"set", "", "3"}).err, "camcfg: set: which setting? the first argument is empty\n");
  EXPECT_EQ(run({"list", ""}).err, "camcfg: list: which section? the argument is empty\n");
  EXPECT_EQ(run({"preset", "rename", "0", "  "}).err,
            "camcfg: preset rename: which description? the argument is empty\n");
}

}  // namespace
}  // namespace camcfg::tests
