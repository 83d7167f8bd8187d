#include "media/stream_cache.h"

#include <camcfg/stream.h>
#include <sys/resource.h>

#include "base/outcome.h"
#include "media/media.h"
#include "support/device_test.h"
#include "tool/json_in.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

class StreamTest : public MediaToolTest {};

constexpr char kHeadings[] = "ID  NAME     SIZE       ALLOWED  CARRIES  DEFAULT  ENABLE\n";
constexpr char kAudio[] = "7   audio    187.5 KiB  1, 2     2        2        -\n";

TEST_F(StreamTest, SourcesAreListedWithTheirKindAndChannel) {
  EXPECT_EQ(run({"stream", "sources"}), (ToolRun{0,
                                                 "ID  KIND  NAME  CHANNEL  ENABLED\n"
                                                 "0   VENC  main  0        yes\n"
                                                 "1   AENC  mic   3        no\n"
                                                 "2   AI    line  1        yes\n",
                                                 ""}));
}

TEST_F(StreamTest, SourcesInJsonAreRecords) {
  const tool::Json sources = jsonIn(run({"stream", "sources", "--json"}).out);
  ASSERT_EQ(sources.size(), 3u);
  EXPECT_EQ(sources[1].dump(),
            R"({"id":1,"kind":"AENC","name":"mic","channel":3,"enabled":false})");
}

TEST_F(StreamTest, CachesShowSizeAllowedSourcesAndBothMarks) {
  EXPECT_EQ(run({"stream", "caches"}),
            (ToolRun{0,
                     std::string(kHeadings) +
                         "0   program  8 MiB      0, 2     0        0        -\n" + kAudio,
                     ""}));
}

TEST_F(StreamTest, CachesInJsonHaveTheirSizeInBytes) {
  const tool::Json caches = jsonIn(run({"stream", "caches", "--json"}).out);
  ASSERT_EQ(caches.size(), 2u);
  EXPECT_EQ(caches[1].dump(),
            R"({"id":7,"name":"audio","bytes":192000,"size":"187.5 KiB","allowed":[1,2],)"
            R"("carries":2,"default":2,"enable":null})");
}

TEST_F(StreamTest, MarksThatDifferAreReported) {
  giveWith("Id=\"2\"/>", "Id=\"2\" Enable=\"1\"/>");
  EXPECT_EQ(
      run({"stream", "caches"}),
      (ToolRun{0,
               std::string(kHeadings) + "0   program  8 MiB      0, 2     0        0        2\n" +
                   kAudio,
               "camcfg: stream caches: note: stream cache 0: \"Default\", which the loader "
               "reads, is at source 0, but \"Enable\", which 'select' writes, at source 2\n"}));
}

TEST_F(StreamTest, CacheWithoutDefaultCarriesItsLastSource) {
  giveWith("Id=\"0\" Default=\"1\"/>", "Id=\"0\"/>");
  EXPECT_EQ(run({"stream", "caches"}),
            (ToolRun{0,
                     std::string(kHeadings) +
                         "0   program  8 MiB      0, 2     2        -        -\n" + kAudio,
                     ""}));
}

struct SizeRow {
  const char* attribute;
  const char* shown;
};
void PrintTo(const SizeRow& row, std::ostream* out) {
  *out << row.attribute;
}

class CacheSizeTest : public MediaToolTest, public testing::WithParamInterface<SizeRow> {};

TEST_P(CacheSizeTest, IsShownInTheGreatestUnitThatItReaches) {
  giveWith("BufferSizeMB=\"8\"", GetParam().attribute);
  const tool::Json caches = jsonIn(run({"stream", "caches", "--json"}).out);
  EXPECT_EQ(caches.at(0).at("size"), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Sizes, CacheSizeTest,
                         testing::Values(SizeRow{"BufferSizeB=\"0\"", "0 B"},
                                         SizeRow{"BufferSizeB=\"1023\"", "1023 B"},
                                         SizeRow{"BufferSizeKB=\"1\"", "1 KiB"},
                                         SizeRow{"BufferSizeKB=\"1536\"", "1.5 MiB"},
                                         SizeRow{"BufferSizeMB=\"1024\"", "1 GiB"}));

TEST_F(StreamTest, SelectMarksWithEnableInPlaceAndLeavesDefault) {
  EXPECT_EQ(
      run({"stream", "cache", "0", "select", "2"}),
      (ToolRun{0, "stream cache 0, Enable: - -> 2\n",
               "camcfg: stream cache select: note: the loader goes by \"Default\" and still "
               "takes source 0\n"
               "camcfg: stream cache select: warning: /cfg0/mpp_cfg.xml:10: cache 0: source 2 is "
               "marked \"Enable\", but source 0 is carried [enable-differs]\n"}));
  const std::string marked = with(kMedia, "Id=\"2\"/>", "Id=\"2\" Enable=\"1\"/>");
  expectBoth(marked);
  EXPECT_EQ(run({"stream", "cache", "0", "select", "0"}),
            (ToolRun{0, "stream cache 0, Enable: 2 -> 0\n", ""}));
  expectBoth(with(kMedia, "Default=\"1\"/>", "Default=\"1\" Enable=\"1\"/>"));
}

TEST_F(StreamTest, SelectInJsonShowsTheMark) {
  EXPECT_EQ(jsonIn(run({"stream", "cache", "7", "select", "2", "--json"}).out).dump(),
            R"({"cache":7,"mark":"Enable","before":null,"value":2})");
}

TEST_F(StreamTest, DefaultMovesTheMarkAndNothingElse) {
  EXPECT_THAT(run({"stream", "cache", "0", "default", "2"}).err,
              testing::HasSubstr("[channel-kind]"));
  expectBoth(kMedia);
  EXPECT_EQ(run({"stream", "cache", "0", "default", "2", "--force"}).out,
            "stream cache 0, Default: 0 -> 2\n");
  std::string expected = with(kMedia, "Id=\"0\" Default=\"1\"/>", "Id=\"0\"/>");
  expectBoth(with(expected, "Id=\"2\"/>", "Id=\"2\" Default=\"1\"/>"));
}

TEST_F(StreamTest, DefaultSaysWhatIsLostBySavingAllCaches) {
  giveWith("        <Cache Id=\"0\"", "        <!-- bus -->\n        <Cache Colour=\"1\" Id=\"0\"");
  giveWith("BufferSizeMB=\"8\"", "BufferSizeMB=\"8\" BufferSizeKB=\"3\"");
  giveWith("            <AllowedStreamSource Id=\"2\"/>\n",
           "            <AllowedStreamSource Id=\"2\" Enable=\"1\"/>\n            <Extra/>\n");
  giveWith("Source Id=\"1\"/>", "Source Id=\"1\" Default=\"1\"/>");
  const std::string notes =
      "camcfg: stream cache default: note: all caches are rewritten without the comment at line "
      "8, \"Colour\" of <Cache> at line 9, \"Enable\" of <AllowedStreamSource> at line 11, <Extra> "
      "at line 12, \"BufferSizeKB\" of stream cache 0, the second \"Default\" of stream cache 7, "
      "at source 2\n";
  const std::string former = device.read(kMpp);
  const ToolRun rehearsal = run({"stream", "cache", "0", "default", "2", "--dry-run", "--force"});
  EXPECT_EQ(rehearsal.out, "stream cache 0, Default: 0 -> 2 (not saved)\n");
  EXPECT_THAT(rehearsal.err, testing::StartsWith(notes));
  expectBoth(former);
  const ToolRun result = run({"stream", "cache", "0", "default", "2", "--force"});
  EXPECT_EQ(result.out, "stream cache 0, Default: 0 -> 2\n");
  EXPECT_THAT(result.err, testing::StartsWith(notes));
  std::string expected = with(kMedia, "Id=\"0\" Default=\"1\"/>", "Id=\"0\"/>");
  expected = with(expected, "Id=\"2\"/>", "Id=\"2\" Default=\"1\"/>");
  expected = with(expected, "Source Id=\"1\"/>", "Source Id=\"1\" Default=\"1\"/>");
  const std::string second = "<AllowedStreamSource Id=\"2\" Default=\"1\"/>";
  expectBoth(
      expected.replace(expected.rfind(second), second.size(), "<AllowedStreamSource Id=\"2\"/>"));
}

TEST_F(StreamTest, DefaultSaysWhichOtherCachesGetAMark) {
  giveWith("Id=\"2\" Default=\"1\"/>", "Id=\"2\"/>");
  EXPECT_EQ(run({"stream", "cache", "0", "default", "0"}),
            (ToolRun{0, "stream cache 0, Default: 0 -> 0\n",
                     "camcfg: stream cache default: note: source 2 of stream cache 7, which the "
                     "loader takes, gets the mark \"Default\"\n"}));
  expectBoth(kMedia);
}

TEST_F(StreamTest, DefaultIsRefusedWhereASaveWouldChangeSources) {
  giveWith("Source Id=\"1\"/>", "Source Id=\"40\"/>");
  expectRefused({"stream", "cache", "0", "default", "2"}, 1,
                "stream cache default: the library saves all caches, and would lose source 40 of "
                "stream cache 7, which is outside 0..29");
}

TEST_F(StreamTest, AllowReplacesTheSourcesAndKeepsTheCarriedOneEnabled) {
  EXPECT_THAT(run({"stream", "cache", "0", "allow", "5", "2", "0", "2"}).err,
              testing::HasSubstr("[enabled-source-missing]"));
  expectBoth(kMedia);
  const ToolRun result = run({"stream", "cache", "0", "allow", "5", "2", "0", "2", "--force"});
  EXPECT_EQ(result.out, "stream cache 0 allows 0, 2, 5; before: 0, 2\n");
  EXPECT_THAT(result.err,
              testing::StartsWith(
                  "camcfg: stream cache allow: note: not among the stream sources: 5\n"
                  "camcfg: stream cache allow: note: the mark \"Default\" at source 0 is gone; "
                  "the loader takes source 5, the last one, until 'camcfg stream cache 0 "
                  "default SOURCE' marks one\n"));
  expectBoth(with(kMedia,
                  "            <AllowedStreamSource Id=\"0\" Default=\"1\"/>\n"
                  "            <AllowedStreamSource Id=\"2\"/>\n",
                  "            <AllowedStreamSource Id=\"0\" Enable=\"1\"/>\n"
                  "            <AllowedStreamSource Id=\"2\"/>\n"
                  "            <AllowedStreamSource Id=\"5\"/>\n"));
}

TEST_F(StreamTest, AllowInJsonShowsTheEnabledSource) {
  const tool::Json answer =
      jsonIn(run({"stream", "cache", "0", "allow", "2", "--json", "--force"}).out);
  EXPECT_EQ(answer.at("before").dump() + answer.at("allowed").dump(), "[0,2][2]");
  EXPECT_TRUE(answer.at("enable").is_null());
  EXPECT_THAT(answer.at("findings").dump(), testing::HasSubstr("\"channel-kind\""));
}

TEST_F(StreamTest, RefusalsSayWhatIsAllowedInstead) {
  expectRefused({"stream", "cache", "0", "select", "1"}, 1,
                "stream cache select: stream cache 0 does not allow source 1; it allows 0, 2");
  expectRefused({"stream", "cache", "7", "default", "0"}, 1,
                "stream cache default: stream cache 7 does not allow source 0; it allows 1, 2");
  for (const char* action : {"select", "default", "allow"})
    expectRefused({"stream", "cache", "3", action, "0"}, 1,
                  std::string("stream cache ") + action +
                      ": there is no stream cache 3; there are "
                      "0, 7");
  expectRefused({"stream", "cache", "0", "allow", "0", "30"}, 1,
                "stream cache allow: source 30 is outside 0..29; the nearest permitted is 29");
  expectRefused({"stream", "cache", "zero", "select", "0"}, 1,
                "stream cache select: 'zero' is not an id");
  expectRefused({"stream", "cache", "0", "allow", "99999999999"}, 1,
                "stream cache allow: '99999999999' is not an id");
}

TEST_F(StreamTest, CommandLineWithoutActionOrSourceMakesNoSense) {
  expectRefused({"stream", "cache", "0"}, 2,
                "stream cache: a command is missing; see 'camcfg stream cache --help'");
  expectRefused({"stream", "cache", "0", "selct", "1"}, 2,
                "stream cache: unknown command 'selct'; did you mean 'select'?");
}

TEST_F(StreamTest, CacheThatAnUpdateDoesNotReachIsRefusedBeforehand) {
  giveWith("<Cache Id=\"0\"", "<CacheOld Id=\"0\"/>\n        <Cache Id=\"0\"");
  expectRefused({"stream", "cache", "0", "select", "2"}, 1,
                "stream cache select: stream cache 0: the library would change "
                "/cfg0/mpp_cfg.xml:8 in place of the element at line 9, whose name it does not "
                "find");
}

TEST_F(StreamTest, SourceWithoutAnIdOfItsOwnIsNotSelected) {
  giveWith("<AllowedStreamSource Id=\"0\" Default=\"1\"/>", "<AllowedStreamSource Default=\"1\"/>");
  expectRefused({"stream", "cache", "0", "select", "0"}, 1,
                "stream cache select: stream cache 0: its entry for source 0 has no \"Id\", so the "
                "library does not find it");
}

TEST_F(StreamTest, FaultIsReportedWithItsPlaceAndTheReason) {
  giveWith("AencId=\"3\" ", "");
  const ToolRun listed = run({"stream", "sources"});
  EXPECT_EQ(listed.status, 4);
  EXPECT_EQ(listed.err,
            "camcfg: stream sources: left out: /cfg0/mpp_cfg.xml:4: Attr `AencId` is required by "
            "<Stream><StreamSource><AENC>\n");
  give(with(kMedia, " BufferSizeB=\"192000\"", ""));
  for (const char* action : {"select", "default", "allow"})
    expectRefused({"stream", "cache", "0", action, "0"}, 3,
                  std::string("stream cache ") + action +
                      ": /cfg0/mpp_cfg.xml:12: Missing any of {BufferSizeB, BufferSizeKB, "
                      "BufferSizeMB} for setup chanel buffer size");
}

TEST_F(StreamTest, MissingElementsAndFilesAreUnusable) {
  give("<Stream/>");
  expectRefused({"stream", "caches"}, 3,
                "stream caches: /cfg0/mpp_cfg.xml has no <Stream><StreamCache>");
  give("<Other/>");
  expectRefused({"stream", "sources"}, 3, "stream sources: /cfg0/mpp_cfg.xml has no <Stream>");
  device.remove(kMpp);
  EXPECT_EQ(run({"stream", "caches"}),
            (ToolRun{3, "",
                     "camcfg: stream caches: /cfg0/mpp_cfg.xml is missing; run 'camcfg verify' to "
                     "repair it\n"}));
}

TEST_F(StreamTest, WriteThatStopsShortChangesNothing) {
  const auto limited = [] {
    const rlimit limit{sizeof kMedia - 1, sizeof kMedia - 1};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  EXPECT_EQ(run({"stream", "cache", "0", "select", "2"}, limited),
            (ToolRun{1, "",
                     "camcfg: stream cache select: stream cache 0: the change is not in "
                     "/cfg0/mpp_cfg.xml; nothing was changed\n"}));
  expectBoth(kMedia);
}

TEST_F(StreamTest, VerboseShowsWhatTheLibraryPrints) {
  EXPECT_THAT(run({"-v", "stream", "caches"}).err,
              testing::HasSubstr("[Info][CFG][MppStream]: StreamCache[0] size 8 x 1048576\n"));
}

// In this process, where the lock and the document can be looked at.
TEST(StreamInProcessTest, RefusalLeavesNoDocumentAndNoLockBehind) {
  const testkit::DeviceRoot device;
  device.write(kMpp, kMedia);
  EXPECT_THROW(tool::media::selectSource("0", "1", false), tool::Refusal);
  EXPECT_THROW(tool::media::selectSource("3", "1", false), tool::Refusal);
  EXPECT_THROW(tool::media::makeDefaultSource("0", "1", false), tool::Refusal);
  EXPECT_THROW(tool::media::allowSources("3", {"1"}, false), tool::Refusal);
  EXPECT_EQ(g_STREAM_xmlDoc, nullptr);
  EXPECT_TRUE(isUnlocked(kMpp));
}

TEST(StreamInProcessTest, FailedLoadLeavesNoDocumentOpen) {
  const testkit::DeviceRoot device;
  device.write(kMpp, with(kMedia, " BufferSizeB=\"192000\"", ""));
  EXPECT_THROW(tool::media::loadStreamCaches(), tool::Refusal);
  EXPECT_EQ(g_STREAM_xmlDoc, nullptr);
  EXPECT_TRUE(isUnlocked(kMpp));
}

}  // namespace
}  // namespace camcfg::tests
