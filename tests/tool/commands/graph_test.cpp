#include <fstream>

#include "media/wiring.h"
#include "system/sample_set.h"
#include "tool/json_in.h"
#include "tool/media_tool_test.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;

constexpr char kPicture[] = R"dot(digraph wiring {
  rankdir=LR; ranksep=2.2; nodesep=0.12; newrank=true; outputorder=edgesfirst;
  fontname="Helvetica"; fontsize=13; labelloc=b;
  label="solid: carried or sent    dashed: may be carried    grey: disabled    red: does not fit";
  node [shape=box style=filled fillcolor="#ffffff" color="#606060" fontname="Helvetica" fontsize=11 height=0.3 margin="0.12,0.04"];
  edge [tailport=e headport=w arrowsize=0.6 penwidth=1.2 fontname="Helvetica" fontsize=10];
  subgraph "cluster sources" {
    label="Stream sources"; labelloc=t; color="#d0d0d0"; style=rounded;
    source0 [label="0  main"];
    source1 [label="1  mic" color="#b0b0b0" fontcolor="#909090" fillcolor="#f2f2f2"];
    source2 [label="2  line"];
  }
  subgraph "cluster caches" {
    label="Stream caches"; labelloc=t; color="#d0d0d0"; style=rounded;
    cache0 [label="0  program\n8 MiB" color="#1f6fb4" penwidth=1.6];
    cache1 [label="7  audio\n187.5 KiB" color="#2c8a4b" penwidth=1.6];
  }
  subgraph "cluster WebSocket" {
    label="WebSocket"; labelloc=t; color="#d0d0d0"; style=rounded;
    session0 [label="listen  (7)"];
  }
  subgraph "cluster RTSP" {
    label="RTSP"; labelloc=t; color="#d0d0d0"; style=rounded;
    session1 [label="live  (video 0, audio 7)"];
    session2 [label="empty"];
  }
  subgraph "cluster RTMP" {
    label="RTMP"; labelloc=t; color="#d0d0d0"; style=rounded;
    session3 [label="target 0  (video 0)"];
    session4 [label="target 1" color="#b0b0b0" fontcolor="#909090" fillcolor="#f2f2f2"];
  }
  subgraph "cluster NDI" {
    label="NDI"; labelloc=t; color="#d0d0d0"; style=rounded;
    session5 [label="One  (main video 0)"];
  }
  subgraph "cluster SRT" {
    label="SRT"; labelloc=t; color="#d0d0d0"; style=rounded;
    session6 [label="listener 0: program  (0, 7)"];
    session7 [label="listener 0: quiet"];
  }
  {rank=same; source0; source1; source2;}
  {rank=same; cache0; cache1;}
  {rank=same; session0; session1; session2; session3; session4; session5; session6; session7;}
  source0 -> cache0 [color="#1f6fb4" style=bold];
  source2 -> cache0 [color="#1f6fb4" style=dashed];
  source2 -> cache1 [color="#2c8a4b" style=bold];
  source1 -> cache1 [color="#b0b0b0" style=dashed];
  cache1 -> session0 [color="#2c8a4b"];
  cache0 -> session1 [color="#1f6fb4"];
  cache1 -> session1 [color="#2c8a4b"];
  cache0 -> session3 [color="#1f6fb4"];
  cache0 -> session5 [color="#1f6fb4"];
  cache0 -> session6 [color="#1f6fb4"];
  cache1 -> session6 [color="#2c8a4b"];
}
)dot";

class GraphTest : public MediaToolTest {
 protected:
  void giveFindings() const {
    giveWith("Id=\"0\" Default=\"1\"", "Id=\"9\" Default=\"1\"");
    giveWith("Id=\"2\"/>", "Id=\"2\" Enable=\"1\"/>");
    giveWith("Source Id=\"1\"/>", "Source Id=\"1\" Default=\"1\"/>");
    giveWith("Channel Id=\"0\" Name=\"video\"", "Channel Id=\"4\" Name=\"video\"");
  }
};

TEST_F(GraphTest, SourcesCachesAndSessionsAreDrawnInDot) {
  EXPECT_EQ(run({"graph"}), (ToolRun{0, kPicture, ""}));
  EXPECT_EQ(run({"graph", "--format", "dot"}), (ToolRun{0, kPicture, ""}));
}

TEST_F(GraphTest, FindingsAreReported) {
  giveFindings();
  EXPECT_EQ(run({"graph"}).err,
            "camcfg: graph: note: cache 0 carries source 9, which does not exist "
            "[enabled-source-missing]\n"
            "camcfg: graph: note: cache 0: source 2 is marked \"Enable\", but source 9 is carried "
            "[enable-differs]\n"
            "camcfg: graph: note: cache 7 carries source 1, which is disabled "
            "[enabled-source-disabled]\n"
            "camcfg: graph: note: <MediaGroup> 'live' sends channel 4, which is the id of no "
            "stream cache "
            "[channel-missing]\n");
}

TEST_F(GraphTest, AllowedSourceThatDoesNotExistIsReported) {
  giveWith("Id=\"2\"/>", "Id=\"11\"/>");
  EXPECT_EQ(run({"graph"}).err,
            "camcfg: graph: note: cache 0 allows source 11, which does not exist "
            "[allowed-source-missing]\n");
}

// Other findings of lint are not about what is connected.
TEST_F(GraphTest, NotesAreWhatLintSaysOfTheWiring) {
  giveFindings();
  const std::string lint = run({"lint"}).out;
  const tool::Json notes = jsonIn(run({"graph", "--json"}).out).at("findings");
  for (const tool::Json& note : notes) EXPECT_THAT(lint, HasSubstr(note.text()));
}

TEST_F(GraphTest, FindingsAreDrawn) {
  giveFindings();
  const std::string picture = run({"graph"}).out;
  for (const char* line :
       {"    \"missing source 9\" [label=\"no source 9\" color=\"#c00000\" fontcolor=\"#c00000\" "
        "fillcolor=\"#fff0f0\" style=\"filled,dashed\"];\n",
        "    \"missing cache 4\" [label=\"no cache 4\" color=\"#c00000\" fontcolor=\"#c00000\" "
        "fillcolor=\"#fff0f0\" style=\"filled,dashed\"];\n",
        "  \"missing source 9\" -> cache0 [color=\"#c00000\" fontcolor=\"#c00000\" style=bold];\n",
        "  \"missing cache 4\" -> session1 [color=\"#c00000\" fontcolor=\"#c00000\"];\n",
        "  source2 -> cache0 [color=\"#c00000\" fontcolor=\"#c00000\" style=dotted "
        "label=\"Enable\"];\n",
        "  source1 -> cache1 [color=\"#b0b0b0\" style=bold];\n"})
    EXPECT_THAT(picture, HasSubstr(line));
}

TEST_F(GraphTest, JsonHoldsTheWiringAndItsFindings) {
  giveFindings();
  const tool::Json wiring = jsonIn(run({"graph", "--json"}).out);
  EXPECT_EQ(wiring.at("sources").size(), 3U);
  EXPECT_EQ(wiring.at("caches").size(), 2U);
  EXPECT_EQ(wiring.at("sessions").at(1).dump(),
            R"({"service":"RTSP","name":"live","id":"live","enabled":true,)"
            R"("channels":[{"cache":4,"role":"video"},{"cache":7,"role":"audio"}]})");
  EXPECT_EQ(wiring.at("findings").size(), 4U);
}

// A section that no code of the graph knows: senders with a channel each, and with a list of them.
TEST(WiringTest, SessionsFollowFromATable) {
  using tool::settings::Kind;
  using tool::settings::Need;
  using tool::settings::Row;
  const tool::settings::Table channels = tool::settings::innerTable(
      "channel", "Channel", "id", nullptr,
      {Row("id", "Id", Kind::Id, Need::Required, "Stream cache").channel()});
  const tool::settings::Table table{
      "live.rtp",
      "rtp",
      "RTP sender",
      "number",
      nullptr,
      "LiveMediaService",
      "RTP",
      {"Sender"},
      {Row("number", "Number", Kind::Id, Need::Required, "Number"),
       Row("enabled", "Enable", Kind::Switch, Need::Required, "Whether it sends"),
       Row("picture", nullptr, Kind::Id, Need::Optional, "Video").fromChannel("Video"),
       Row("more", nullptr, Kind::List, Need::Optional, "Others").of(channels)}};
  const std::vector<tool::media::WiredSession> sessions = tool::media::sessionsOf(
      table, tool::readJson(R"([{"number":4,"enabled":false,"picture":7,"more":[{"id":1},{"id":2}]},
                                {"number":5,"enabled":true,"picture":null,"more":[]}])")
                 .value);
  ASSERT_EQ(sessions.size(), 2U);
  EXPECT_EQ(sessions[0].service, "RTP");
  EXPECT_EQ(sessions[0].name, "sender 4");
  EXPECT_FALSE(sessions[0].enabled);
  ASSERT_EQ(sessions[0].channels.size(), 3U);
  EXPECT_EQ(sessions[0].channels[0].role, "picture");
  EXPECT_EQ(sessions[0].channels[2].cacheId, 2);
  EXPECT_EQ(sessions[0].channels[2].role, "");
  EXPECT_TRUE(sessions[1].enabled);
  EXPECT_TRUE(sessions[1].channels.empty());
}

TEST(WiringPictureTest, NamesCannotLeaveTheirQuotes) {
  EXPECT_EQ(tool::media::dotText("a\"b\\c"), "a\\\"b\\\\c");
  EXPECT_EQ(tool::media::dotText("a\nb\x1b"), "a\\\\nb\\\\x1b");
  EXPECT_EQ(tool::media::dotText("&lt; \\N"), "&amp;lt; \\\\N");
  EXPECT_EQ(tool::media::dotText("\xff\xc3\xbc"), "\xef\xbf\xbd\xc3\xbc");
}

TEST_F(GraphTest, UnknownFormatIsRefused) {
  expectRefused({"graph", "--format", "png"}, 2,
                "graph: unknown format 'png'; there are dot and svg");
}

TEST_F(GraphTest, FaultInAnySectionIsReported) {
  giveWith("Port=\"9001\"", "");
  const ToolRun drawn = run({"graph"});
  EXPECT_EQ(drawn.status, 4);
  EXPECT_THAT(drawn.out, HasSubstr("\"cluster RTSP\""));
  EXPECT_THAT(drawn.err,
              testing::StartsWith("camcfg: graph: left out: /cfg0/mpp_cfg.xml:49: Attr `Port` is "
                                  "required by <SRT><Instance>\n"));
}

TEST_F(GraphTest, SamplePictureIsUpToDate) {
  give(readSampleFiles().at("/app/resource/defcfg/mpp_cfg.xml"));
  std::ifstream file(CAMCFG_SAMPLE_PICTURE, std::ios::binary);
  const std::string saved = {std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(run({"graph", "--format", "svg"}).out, saved)
      << "scripts/draw-sample.sh draws it again";
}

TEST_F(GraphTest, FindingsAreMarkedInSvg) {
  giveFindings();
  const std::string picture = run({"graph", "--format", "svg"}).out;
  EXPECT_THAT(picture,
              HasSubstr("<g class=\"node marked\"><title>cache 0, program, 8 MiB&#10;cache 0 "
                        "carries source 9, which does not exist [enabled-source-missing]"));
  EXPECT_THAT(picture, HasSubstr("<g class=\"node missing\"><title>there is no source 9</title>"));
  EXPECT_THAT(picture, HasSubstr("<title>RTSP live  (video 4, audio 7)&#10;"));
}

}  // namespace
}  // namespace camcfg::tests
