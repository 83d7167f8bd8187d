#include <algorithm>

#include "tool/commands/every_command.h"
#include "tool/json_in.h"
#include "tool/sample_test.h"
#include "tool/typed_input.h"

namespace camcfg::tests {
namespace {

using testing::HasSubstr;

/// A task as somebody would put it, and the one command that does it on the sample device as it is new.
struct Task {
  const char* task;
  Words line;
  const char* input;   ///< what is typed or piped in
  Words check;         ///< a command whose answer shows that it is done
  const char* answer;  ///< a part of that
};

void PrintTo(const Task& task, std::ostream* stream) {
  *stream << task.task;
}

const Task kTasks[] = {
    {"find the port of RTSP",
     {"find", "rtsp", "port"},
     "",
     {"find", "RTSP", "Port"},
     "System/Rtsp"},
    {"find what is known of the programme",
     {"find", "program"},
     "",
     {"find", "program"},
     "live.rtsp[program].channels[12].id"},
    {"change the port of RTSP", {"set", "System/Rtsp=8554"}, "", {"get", "Rtsp"}, "8554\n"},
    {"change two ports and a codec",
     {"set", "System/Rtsp=8554", "System/WebHttp=8000", "VideoCh1/Ch1MainCodec=H264"},
     "",
     {"list"},
     "VideoCh1     Ch1MainCodec             H264"},
    {"add an RTSP session",
     {"live", "rtsp", "add", "ch9", "channels=0:video,8:audio"},
     "",
     {"live", "rtsp"},
     "ch9       0 video, 8 audio\n"},
    {"give an RTSP session another name",
     {"live", "rtsp", "set", "ch1/main", "name=stage"},
     "",
     {"live", "rtsp"},
     "stage     0 video, 8 audio\n"},
    {"delete an RTSP session",
     {"live", "rtsp", "delete", "ch1/main"},
     "",
     {"live", "rtsp"},
     "NAME      CHANNELS\nch1/sub"},
    {"call another SRT receiver",
     {"live", "srt", "add", "2", "mode=caller", "hostname=relay.example", "port=9001",
      "streams=program:12+8"},
     "",
     {"live", "srt"},
     "2   caller    relay.example       9001  0              20       program (12, 8)"},
    {"set a pass phrase without showing it",
     {"live", "srt", "set", "1", "latency=250", "password=-"},
     "open sesame\n",
     {"live", "srt", "--show-secrets"},
     "open sesame  250"},
    {"add an RTMP target that is not sent to yet",
     {"live", "rtmp", "add", "2", "url=rtmp://live.example/app/key", "video=12", "audio=8",
      "enabled=no"},
     "",
     {"live", "rtmp", "--show-secrets"},
     "2   no       rtmp://live.example/app/key"},
    {"announce an NDI instance in another group",
     {"live", "ndi", "set", "0", "groupName=studio"},
     "",
     {"get", "live.ndi[0].groupName"},
     "studio\n"},
    {"show a preview in browsers",
     {"live", "websocket", "add", "preview-9", "id=2"},
     "",
     {"live", "websocket"},
     "2   preview-9\n"},
    {"switch the microphone on",
     {"stream", "source", "set", "9", "enabled=yes"},
     "",
     {"get", "stream.sources[9].enabled"},
     "yes\n"},
    {"add a stream cache",
     {"stream", "cache", "add", "11", "name=aux", "size=2MiB", "allowed=0,2", "default=0"},
     "",
     {"stream", "caches"},
     "11  aux        2 MiB      0, 2        0"},
    {"give a camera position another name",
     {"preset", "rename", "Lectern", "Desk"},
     "",
     {"preset", "get", "Desk"},
     "id           3\n"},
    {"correct a camera position",
     {"preset", "set", "Lectern", "--pan", "-1750"},
     "",
     {"preset", "get", "Lectern"},
     "pan          -1750\n"},
    {"delete a camera position",
     {"preset", "delete", "Lectern"},
     "",
     {"find", "Whiteboard"},
     "presets[4].description"},
    {"give a card a fixed address",
     {"network", "set", "eth0", "address=192.0.2.7/24", "gateway=192.0.2.1",
      "dns=192.0.2.53,192.0.2.54", "mode=static"},
     "",
     {"network", "cards"},
     "Lan0  eth0       On      StaticIp  192.0.2.7\n"},
    {"let the network give a card its address",
     {"network", "set", "eth1", "mode=dhcp"},
     "",
     {"get", "network.cards.Lan1.dnsMode"},
     "AutoMode\n"},
    {"let a card send smaller packets",
     {"network", "set", "LAN0", "mtu", "1400"},
     "",
     {"get", "network.cards.Lan0.mtu"},
     "1400\n"},
    {"give the device a name",
     {"network", "hostname", "gate"},
     "",
     {"network", "hostname"},
     "gate\n"},
    {"change the port of the web pages",
     {"system", "http-port", "8081"},
     "",
     {"get", "System/WebHttp"},
     "8081\n"},
    {"change something that a search has found",
     {"set", "live.srt[0].latency=80"},
     "",
     {"get", "live.srt[0].latency"},
     "80\n"},
};

class TaskTest : public SampleTest, public testing::WithParamInterface<Task> {};

TEST_P(TaskTest, IsDoneByOneCommandAndUndoneByAnother) {
  const Task& task = GetParam();
  const std::string before = run({"export"}).out;
  const ToolRun rehearsal = [&] {
    Words line = task.line;
    if (line.front() != "find") line.emplace_back("--dry-run");
    return run(line, withInput(task.input));
  }();
  EXPECT_EQ(rehearsal.status, 0) << rehearsal.err;
  EXPECT_EQ(run({"export"}).out, before);

  const ToolRun result = run(task.line, withInput(task.input));
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(run(task.check).out, HasSubstr(task.answer));

  const tool::Json history = jsonIn(run({"history", "--json"}).out)["changes"];
  const bool isSearch = task.line.front() == "find";
  EXPECT_EQ(history.size(), isSearch ? 0U : 1U);
  if (isSearch) return;
  EXPECT_EQ(run({"undo"}).status, 0);
  EXPECT_EQ(run({"export"}).out, before);
}

TEST_P(TaskTest, AnswersInJson) {
  Words line = GetParam().line;
  line.emplace_back("--json");
  EXPECT_FALSE(jsonIn(run(line, withInput(GetParam().input)).out).is_null());
}

INSTANTIATE_TEST_SUITE_P(Newcomers, TaskTest, testing::ValuesIn(kTasks));

}  // namespace
}  // namespace camcfg::tests
