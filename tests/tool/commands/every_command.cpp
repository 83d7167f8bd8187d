#include "tool/commands/every_command.h"

#include <csignal>
#include <iterator>
#include <sstream>

#include "base/plain_text.h"
#include "commands/groups.h"
#include "tool/background.h"

namespace camcfg::tests {
namespace {

// Stand for the paths of input files.
constexpr char kDocument[] = "@document";
constexpr char kPresetTable[] = "@presets";
constexpr char kDamagedFile[] = "@damaged";
constexpr char kOldSet[] = "@old";

// What the next verification restores.
constexpr char kOwn[] = "own.xml";

constexpr struct {
  const char* command;
  const char* line;
} kLines[] = {
    {"summary", "summary"},
    {"report", "report"},
    {"schema", "schema"},
    {"status", "status"},
    {"verify", "verify --resync"},
    {"boot", "boot"},
    {"salvage", "salvage --apply @damaged"},
    {"lint", "lint --fix --rule main-missing=off"},
    {"upgrade", "upgrade --on-conflict factory --from @old"},
    {"history", "history"},
    {"undo", "undo"},
    {"try", "try --for 1s -- set System Rtsp 8554"},
    {"confirm", "confirm"},
    {"cancel", "cancel"},
    {"reset", "reset System WebHttp"},
    {"list", "list"},
    {"get", "get System Rtsp"},
    {"set", "set System Rtsp 8554"},
    {"describe", "describe Rtsp"},
    {"find", "find rtsp port"},
    {"watch", "watch"},
    {"explain", "explain System Rtsp"},
    {"explain parameter", "explain parameter System Rtsp"},
    {"explain card", "explain card Lan0"},
    {"explain preset", "explain preset 0"},
    {"explain session", "explain session srt 1"},
    {"system", "system"},
    {"system http-port", "system http-port 8081"},
    {"system https-port", "system https-port 8444"},
    {"system rtsp-port", "system rtsp-port 8554"},
    {"system rtsp-over-http-port", "system rtsp-over-http-port 8082"},
    {"network cards", "network cards"},
    {"network show", "network show Lan0"},
    {"network set", "network set Lan0 MTU 1400"},
    {"network reset", "network reset Lan0"},
    {"network hostname", "network hostname gate"},
    {"preset list", "preset list"},
    {"preset get", "preset get 0"},
    {"preset set", "preset set 0 --pan 3"},
    {"preset add", "preset add --pan 3"},
    {"preset rename", "preset rename 0 Gate"},
    {"preset delete", "preset delete 0"},
    {"preset export", "preset export"},
    {"preset import", "preset import @presets"},
    {"stream sources", "stream sources"},
    {"stream caches", "stream caches"},
    {"stream cache select", "stream cache 0 select 1"},
    {"stream cache default", "stream cache 0 default 1"},
    {"stream cache allow", "stream cache 0 allow 0 1"},
    {"stream source add", "stream source add 12 kind=VENC name=ch5-main channel=8"},
    {"stream source set", "stream source set 9 enabled=yes"},
    {"stream source delete", "stream source delete 11 --cascade"},
    {"stream cache add", "stream cache add 11 name=aux size=2MiB allowed=0,2"},
    {"stream cache set", "stream cache set 12 size=16MiB"},
    {"stream cache delete", "stream cache delete 10"},
    {"live websocket", "live websocket"},
    {"live websocket add", "live websocket add preview-9 id=2"},
    {"live websocket set", "live websocket set preview-1 name=lobby"},
    {"live websocket delete", "live websocket delete audio"},
    {"live rtsp", "live rtsp"},
    {"live rtsp add", "live rtsp add ch9 channels=0:video"},
    {"live rtsp set", "live rtsp set ch1/main name=stage"},
    {"live rtsp delete", "live rtsp delete ch1/main"},
    {"live rtmp", "live rtmp"},
    {"live rtmp add", "live rtmp add 2 url=rtmp://live.example/app/key video=12"},
    {"live rtmp set", "live rtmp set 0 enabled=no"},
    {"live rtmp delete", "live rtmp delete 0"},
    {"live ndi", "live ndi"},
    {"live ndi add", "live ndi add 4 mainStreamName=Stage"},
    {"live ndi set", "live ndi set 0 groupName=studio"},
    {"live ndi delete", "live ndi delete 0"},
    {"live srt", "live srt"},
    {"live srt add", "live srt add 2 mode=listener port=9002"},
    {"live srt set", "live srt set 1 latency=300"},
    {"live srt delete", "live srt delete 1"},
    {"graph", "graph"},
    {"lang", "lang English MenuLive"},
    {"export", "export"},
    {"import", "import @document"},
    {"diff", "diff --factory"},
    {"run", "run true"},
    {"help", "help"},
    {"man", "man"},
    {"complete bash", "complete bash camcfg x"},
    {"complete zsh", "complete zsh li"},
};

}  // namespace

Words wordsOf(const std::string& line) {
  std::istringstream words(line);
  return {std::istream_iterator<std::string>(words), {}};
}

std::string lineOf(const Words& words) {
  return tool::joined(words, " ");
}

EveryCommandTest::EveryCommandTest() : groups_(tool::commands::allGroups()) {
  device.copyFromHost(CAMCFG_RESOURCE_DIR, "/app/resource");
  device.write(std::string("/app/resource/defcfg/") + kOwn, "<Own/>\n");
  inputs_.write("/document.json", R"({"version": 1, "parameters": {"System": {"Rtsp": 8554}},
                                      "live": {"websocket": []}})");
  inputs_.write("/old/business_param.xml",
                with(device.read(std::string("/app/resource/defcfg/") + kFileNames[0]),
                     "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"79\""));
  inputs_.write("/presets.csv", "id,pan\n0,9\n");
  inputs_.write("/business_param.xml",
                R"(<System><Rtsp Cur="8554" Def="554" Min="1" Max="65535" Step="1"/><Web)");
  renew();
}

void EveryCommandTest::renew() const {
  for (const std::string name : kFileNames) {
    std::string contents = device.read("/app/resource/defcfg/" + name);
    if (name == kFileNames[0])
      contents = with(with(contents, "<WebHttp Cur=\"80\"", "<WebHttp Cur=\"81\""),
                      "<MTU Cur=\"1500\"", "<MTU Cur=\"1300\"");
    if (name == kFileNames[0])
      contents = with(contents, "<Ch2SubGop Cur=\"30\" Def", "<Ch2SubGop Cur=\"30\" def");
    for (const char* directory : {"/cfg0/", "/cfg1/"}) device.write(directory + name, contents);
  }
  for (const std::string directory : {"/cfg0/", "/cfg1/"}) device.remove(directory + kOwn);
  EXPECT_EQ(run({"set", "System", "WebHttps", "8443"}).status, 0);
}

void EveryCommandTest::renewFor(const tool::cli::Command& command) const {
  renew();
  if (command.name != std::string("confirm") && command.name != std::string("cancel")) return;
  Background trial({"--root", device.hostPath(), "try", "set", "System", "Rtsp", "8554"});
  EXPECT_TRUE(trial.says("is on trial"));
  trial.end(SIGKILL);
}

std::vector<const tool::cli::Command*> EveryCommandTest::commands() const {
  std::vector<const tool::cli::Command*> commands;
  for (const tool::cli::Command* command : commandsIn(groups_))
    if (command->run) commands.push_back(command);
  return commands;
}

Words EveryCommandTest::lineFor(const tool::cli::Command& command) const {
  Words line;
  for (const auto& sample : kLines)
    if (std::string(sample.command) == command.name) line = wordsOf(sample.line);
  EXPECT_FALSE(line.empty()) << "no line for " << command.name;
  for (std::string& word : line) {
    if (word == kDocument) word = inputs_.hostPath() + "/document.json";
    if (word == kOldSet) word = inputs_.hostPath() + "/old";
    if (word == kPresetTable) word = inputs_.hostPath() + "/presets.csv";
    if (word == kDamagedFile) word = inputs_.hostPath() + "/business_param.xml";
  }
  return line;
}

}  // namespace camcfg::tests
