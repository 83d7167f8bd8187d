#include "tool/json_in.h"
#include "tool/sample_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using tool::Json;
/// Changes of single sources, caches and sessions.
class EntriesTest : public SampleTest {
 protected:
  static Words wordsOf(const std::string& line) {
    std::istringstream words(line);
    return {std::istream_iterator<std::string>(words), {}};
  }
  ToolRun type(const std::string& line) const { return run(wordsOf(line)); }

  /// A line that must be refused with these lines and change nothing.
  void expectRefused(const std::string& line, const std::string& command,
                     const std::vector<std::string>& texts, int status = 1) const {
    const std::string before = device.read("/cfg0/mpp_cfg.xml");
    std::string expected;
    for (const std::string& text : texts) expected += "camcfg: " + command + ": " + text + "\n";
    EXPECT_EQ(type(line), (ToolRun{status, "", expected}));
    EXPECT_EQ(device.read("/cfg0/mpp_cfg.xml"), before);
  }

  Json exported(const std::string& section, const std::string& key, const Json& value) const {
    const Json document = jsonIn(run({"export", section}).out);
    std::string path = section;
    std::replace(path.begin(), path.end(), '.', '/');
    for (const Json& entry : *document.find_path(path))
      if (entry.at(key) == value) return entry;
    return nullptr;
  }
};

TEST_F(EntriesTest, WhatIsLeftOutIsWhatTheLibraryAssumes) {
  EXPECT_EQ(type("live srt add 2 mode=caller hostname=relay.example port=9001 streams=a:12").status,
            0);
  EXPECT_EQ(
      exported("live.srt", "id", 2).dump(),
      R"({"id":2,"mode":"caller","hostname":"relay.example","port":9001,"aesMode":0,)"
      R"("password":"","latency":20,"streams":[{"id":"a","default":false,"channels":[12]}]})");
  EXPECT_EQ(type("live rtmp add 2 url=rtmp://live.example/app/key").status, 0);
  EXPECT_EQ(exported("live.rtmp", "id", 2).dump(),
            R"({"id":2,"enabled":true,"url":"rtmp://live.example/app/key","username":"",)"
            R"("password":"","video":null,"audio":null})");
  EXPECT_EQ(type("stream cache add 11 name=aux size=512KiB allowed=2,0").status, 0);
  EXPECT_EQ(
      exported("stream.caches", "id", 11).dump(),
      R"({"id":11,"name":"aux","size":{"value":512,"unit":"KB"},"allowed":[0,2],"default":2})");
}

TEST_F(EntriesTest, OtherEntriesStayAsTheyAre) {
  Json before = jsonIn(run({"export", "live"}).out);
  EXPECT_EQ(type("live rtsp add ch9 channels=0:video,8:audio"),
            (ToolRun{0,
                     "PLACE           BEFORE  AFTER\n"
                     "live.rtsp[ch9]  -       {\"name\":\"ch9\",\"channels\":[{\"id\":0,\"name\":"
                     "\"video\"},{\"id\":8,\"name\":\"audio\"}]}\n",
                     ""}));
  EXPECT_EQ(type("live rtsp delete ch9").status, 0);
  EXPECT_EQ(jsonIn(run({"export", "live"}).out), before);
}

TEST_F(EntriesTest, AnotherNameIsOneChange) {
  EXPECT_EQ(type("live rtsp set ch1/main name=stage").out,
            "PLACE                     BEFORE    AFTER\n"
            "live.rtsp[ch1/main].name  ch1/main  stage\n");
  EXPECT_THAT(run({"history", "1"}).out, HasSubstr("live.rtsp[ch1/main].name  ch1/main  stage\n"));
  EXPECT_THAT(run({"live", "rtsp"}).out, HasSubstr("NAME      CHANNELS\nstage "));
  EXPECT_EQ(type("undo").out,
            "PLACE                  BEFORE  AFTER\n"
            "live.rtsp[stage].name  stage   ch1/main\n");
  EXPECT_EQ(type("live srt set 1 id=5").out,
            "PLACE           BEFORE  AFTER\n"
            "live.srt[1].id  1       5\n");
  EXPECT_EQ(type("live srt delete 5").status, 0);
}

TEST_F(EntriesTest, AnotherNameAndOtherMembersAreAnotherEntry) {
  const Json both = jsonIn(type("live rtsp set ch1/main name=stage channels=0:video --json").out);
  ASSERT_EQ(both["changes"].size(), 2U);
  EXPECT_EQ(both["changes"][0]["place"], "live.rtsp[ch1/main]");
  EXPECT_TRUE(both["changes"][0]["after"].is_null());
  EXPECT_EQ(both["changes"][1]["place"], "live.rtsp[stage]");
  EXPECT_TRUE(both["changes"][1]["before"].is_null());
  const Json changes = jsonIn(type("live rtsp set stage name=other --json").out)["changes"];
  EXPECT_EQ(changes,
            Json(std::vector<Json>{Json{
                {"place", "live.rtsp[stage].name"}, {"before", "stage"}, {"after", "other"}}}));
}

TEST_F(EntriesTest, EntriesGoByTheirKeysAndByWhatTheyAreCalled) {
  EXPECT_EQ(type("stream cache set program size=16MiB").out,
            "PLACE                         BEFORE  AFTER\n"
            "stream.caches[12].size.value  8       16\n");
  EXPECT_EQ(type("live websocket set preview-2 name=lobby").status, 0);
  EXPECT_EQ(type("live srt delete ingest.example.com").status, 0);
  EXPECT_EQ(type("live websocket add lobby-2 id=2").status, 0);
  expectRefused("live websocket add lobby-3", "live websocket add", {"which id? give id=NUMBER"},
                2);
  EXPECT_EQ(type("stream cache add 13 name=program size=1MB allowed=0").status, 0);
  expectRefused("stream cache set program size=1MB", "stream cache set",
                {"there is more than one stream cache 'program'; give one of the ids 12, 13"});
}

TEST_F(EntriesTest, UnknownEntriesAndMembersAreRefusedWithTheNearest) {
  expectRefused("live rtsp set ch1/man name=a", "live rtsp set",
                {"there is no RTSP session 'ch1/man'; did you mean 'ch1/main'?"});
  expectRefused("live srt delete 7", "live srt delete",
                {"there is no SRT instance 7; did you mean 1 (ingest.example.com)?"});
  expectRefused("stream cache delete programm", "stream cache delete",
                {"there is no stream cache 'programm'; did you mean 12 (program)?"});
  expectRefused("live rtmp set 0 vido=1", "live rtmp set",
                {"live.rtmp[0]: there is no member 'vido'; did you mean 'video'?"});
  expectRefused("live rtmp set 0 video", "live rtmp set",
                {"each member is given as MEMBER=VALUE, and one has no '='"}, 2);
  expectRefused("live rtmp set 0 video=1 video=2", "live rtmp set",
                {"live.rtmp[0].video: it is given twice"});
}

TEST_F(EntriesTest, ReferencesToWhatDoesNotExistAreRefusedWithTheNearest) {
  expectRefused("live rtmp set 0 video=99 audio=programm", "live rtmp set",
                {"live.rtmp[0].video: there is no stream cache 99; did you mean 12 (program)?",
                 "live.rtmp[0].audio: there is no stream cache 'programm'; did you mean 12 "
                 "(program)?",
                 "nothing was changed"});
  expectRefused("live rtsp add ch9 channels=99:video", "live rtsp add",
                {"live.rtsp[ch9].channels[0].id: there is no stream cache 99; did you mean 12 "
                 "(program)?",
                 "nothing was changed"});
  expectRefused("live srt set 1 streams=program:12+99", "live srt set",
                {"live.srt[1].streams[0].channels[1]: there is no stream cache 99; did you mean 12 "
                 "(program)?",
                 "nothing was changed"});
  expectRefused("stream cache add 11 name=a size=1MB allowed=0,25 default=0", "stream cache add",
                {"stream.caches[11].allowed[1]: there is no stream source 25; did you mean 11 "
                 "(mic-pcm)?",
                 "nothing was changed"});
}

TEST_F(EntriesTest, AllFaultsAreNamedByTheEntrysOwnName) {
  expectRefused("stream cache add 13 name=a", "stream cache add",
                {"stream.caches[13].size: it is missing",
                 "stream.caches[13].allowed: it is missing", "nothing was changed"});
  expectRefused("stream cache add 13 name=a size=lots allowed=0", "stream cache add",
                {"stream.caches[13].size: 'lots' is no size; give bytes, or KB, MB, GB as in 2MB",
                 "nothing was changed"});
  expectRefused("stream cache set program size=2GiB default=1", "stream cache set",
                {"stream.caches[12].size: it is 2 GiB or more, which the library cannot count",
                 "nothing was changed"});
  expectRefused("live srt set 1 port=70000 latency=x mode=rendezvous", "live srt set",
                {"live.srt[1].mode: it must be one of \"caller\", \"listener\"",
                 "live.srt[1].port: 70000 is outside 1..65535; the nearest permitted is 65535",
                 "live.srt[1].latency: it must be a number, not \"x\"", "nothing was changed"});
  expectRefused("live rtmp add 0 url=rtmp://h/a", "live rtmp add",
                {"there is already RTMP target 0"});
  expectRefused("live rtsp set ch1/main name=ch2/main", "live rtsp set",
                {"there is already RTSP session 'ch2/main'"});
}

TEST_F(EntriesTest, FaultsInJsonAreThoseOfAnImport) {
  const Json answer = jsonIn(type("live rtmp set 0 video=99 --json").out);
  EXPECT_EQ(answer["faults"][0]["place"], "live.rtmp[0].video");
  EXPECT_THAT(answer["faults"][0]["reason"].text(), HasSubstr("no stream cache 99"));
}

TEST_F(EntriesTest, WhatOthersReferToIsNotDeletedUnasked) {
  expectRefused(
      "stream cache delete program", "stream cache delete",
      {"stream cache 12 is used by RTSP session 'program', RTMP target 0, SRT instance 0, "
       "SRT instance 1; '--cascade' takes it out of these, and deletes those that cannot "
       "be without"});
  expectRefused(
      "stream source delete 9", "stream source delete",
      {"stream source 9 is used by stream cache 8; '--cascade' takes it out of these, and "
       "deletes those that cannot be without"});
  expectRefused(
      "stream cache set program id=77", "stream cache set",
      {"stream cache 12 is used by RTSP session 'program', RTMP target 0, SRT instance 0, "
       "SRT instance 1, which would not find it by another id"});
  EXPECT_EQ(type("stream cache set audio-pcm id=9").status, 0);
}

TEST_F(EntriesTest, CascadeTakesReferencesAlong) {
  const std::string before = run({"export"}).out;
  const ToolRun rehearsal = type("stream cache delete program --cascade --dry-run");
  EXPECT_THAT(rehearsal.out, HasSubstr("nothing was written\n"));
  EXPECT_EQ(run({"export"}).out, before);
  const ToolRun result = type("stream cache delete program --cascade");
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(result.out + "nothing was written\n", rehearsal.out);
  EXPECT_TRUE(exported("stream.caches", "id", 12).is_null());
  EXPECT_TRUE(exported("live.rtmp", "id", 0)["video"].is_null());
  EXPECT_EQ(exported("live.rtsp", "name", "program")["channels"].dump(),
            R"([{"id":8,"name":"audio"}])");
  EXPECT_THAT(run({"lint"}).out, Not(HasSubstr("channel-missing")));
  EXPECT_EQ(type("undo").status, 0);
  EXPECT_EQ(run({"export"}).out, before);
}

TEST_F(EntriesTest, CascadeDeletesWhatCannotBeWithout) {
  const std::string before = run({"export"}).out;
  // Cache 1 allows no other source, and a WebSocket session is nothing but its cache.
  EXPECT_EQ(type("stream source delete 1 --cascade").status, 0);
  EXPECT_TRUE(exported("stream.caches", "id", 1).is_null());
  EXPECT_TRUE(exported("live.websocket", "id", 1).is_null());
  EXPECT_EQ(exported("stream.caches", "id", 0)["allowed"].dump(), "[0]");
  EXPECT_THAT(run({"lint"}).out, Not(HasSubstr("missing")));
  EXPECT_EQ(type("undo").status, 0);
  EXPECT_EQ(run({"export"}).out, before);
}

TEST_F(EntriesTest, CacheThatCarriedASourceCarriesAnotherOne) {
  EXPECT_EQ(type("stream source delete 8 --cascade").status, 0);
  EXPECT_EQ(exported("stream.caches", "id", 8)["default"], 9);
}

TEST_F(EntriesTest, UnchangedEntriesAreNotWritten) {
  EXPECT_EQ(type("live srt set 1 latency=200 mode=caller"),
            (ToolRun{0, "it is so already; nothing was written\n", ""}));
  EXPECT_EQ(jsonIn(run({"history", "--json"}).out)["changes"].size(), 0U);
}

TEST_F(EntriesTest, HelpShowsMembersWithUnitsAndLimits) {
  const std::string help = runCamcfg({"live", "srt", "add", "--help"}).out;
  for (const char* part :
       {" 0..2147483647 ms             20           Time for sending lost packets ",
        "  mode        caller, listener             required     Whether ",
        "  hostname    text                         -            Host ",
        "    default   true, false                  no           Whether ",
        "Examples:\n  camcfg live srt add 2 mode=caller "})
    EXPECT_THAT(help, HasSubstr(part));
  EXPECT_THAT(runCamcfg({"help", "stream", "cache", "set"}).out,
              HasSubstr("  size     bytes, or KB, MB, GB as in 2MB  Size of the buffer\n"));
  EXPECT_THAT(runCamcfg({"help", "live", "rtsp", "set"}).out, Not(HasSubstr("--show-secrets")));
}

TEST_F(EntriesTest, EmptyArgumentIsNoEntry) {
  const std::string before = run({"export"}).out;
  for (const Words& words : {Words{"live", "rtsp", "add", "", "channels=0:video"},
                             {"live", "rtsp", "delete", ""},
                             {"stream", "cache", "delete", ""},
                             {"live", "srt", "set", "", "latency=1"}}) {
    const ToolRun result = run(words);
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("? the argument is empty\n"));
  }
  EXPECT_EQ(run({"find", ""}).status, 2);
  EXPECT_EQ(run({"export"}).out, before);
}

TEST_F(EntriesTest, KeyThatIsGivenTwiceIsRefused) {
  EXPECT_EQ(run({"live", "rtsp", "add", "ch9", "name=foo", "channels=0:video"}),
            (ToolRun{1, "",
                     "camcfg: live rtsp add: name: it is given twice, as 'ch9' and by 'name='\n"}));
  EXPECT_EQ(run({"live", "srt", "add", "7", "id=8", "mode=listener", "port=9007"}).status, 1);
}

// What was to be "url=..." or "password=..." is not printed.
TEST_F(EntriesTest, WordsWithoutAMemberAreNotRepeated) {
  for (const Words& words : {Words{"live", "srt", "set", "1", "password:s3cr3t"},
                             {"live", "srt", "set", "1", "s3cr3t"},
                             {"live", "rtmp", "add", "rtmp://a/b/s3cr3t"},
                             {"live", "rtmp", "add", "4", "rtmp://a/b/s3cr3t"},
                             {"live", "rtmp", "delete", "rtmp://a/b/s3cr3t"},
                             {"live", "rtmp", "set", "rtmp://a/b/s3cr3t", "enabled=no"}}) {
    const ToolRun result = run(words);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err.find("s3cr3t"), std::string::npos) << result.err;
  }
}

TEST_F(EntriesTest, WhatFollowsASpaceInAnAddressIsMasked) {
  const ToolRun result =
      run({"live", "rtmp", "set", "0", "url=rtmp://h/app key1 live=1", "--force"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ((result.out + result.err).find("key1"), std::string::npos) << result.out << result.err;
  for (const Words& words : {Words{"live", "rtmp"}, {"history", "1"}, {"export", "--no-secrets"}})
    EXPECT_EQ(run(words).out.find("key1"), std::string::npos) << words[0];
}

TEST_F(EntriesTest, ReferencesMayBeTypedByName) {
  EXPECT_EQ(type("live rtmp set 0 video=ch1-main").status, 0);
  EXPECT_EQ(exported("live.rtmp", "id", 0)["video"], 0);
  EXPECT_EQ(type("live rtsp add ch9 channels=ch1-sub:video").status, 0);
  EXPECT_EQ(exported("live.rtsp", "name", "ch9")["channels"][0]["id"], 1);
  EXPECT_EQ(run({"set", "live.rtmp[0].video=ch1-sub", "stream.caches[0].default=ch1-sub"}).status,
            0);
  EXPECT_EQ(exported("live.rtmp", "id", 0)["video"], 1);
  EXPECT_EQ(exported("stream.caches", "id", 0)["default"], 1);
  EXPECT_EQ(type("stream cache set 0 allowed=ch1-main,ch1-sub default=ch1-main").status, 0);
  EXPECT_EQ(exported("stream.caches", "id", 0)["default"], 0);
  expectRefused("live rtmp set 0 video=ch1-mian", "live rtmp set",
                {"live.rtmp[0].video: there is no stream cache 'ch1-mian'; did you mean 0 "
                 "(ch1-main)?",
                 "nothing was changed"});
}

TEST_F(EntriesTest, NoneClearsAReference) {
  for (const char* none : {"none", "None", "-", ""}) {
    EXPECT_EQ(type("live rtmp set 0 audio=8").status, 0);
    EXPECT_EQ(run({"live", "rtmp", "set", "0", std::string("audio=") + none}).status, 0);
    EXPECT_TRUE(exported("live.rtmp", "id", 0)["audio"].is_null()) << none;
  }
}

TEST_F(EntriesTest, WordsMayBeTypedInUpperOrLowerCase) {
  EXPECT_EQ(type("live srt add 2 mode=Listener port=9002").status, 0);
  EXPECT_EQ(exported("live.srt", "id", 2)["mode"], "listener");
  EXPECT_EQ(type("stream source add 20 kind=aenc name=spare channel=1").status, 0);
  EXPECT_EQ(exported("stream.sources", "id", 20)["kind"], "AENC");
}

}  // namespace
}  // namespace camcfg::tests
