#include <algorithm>
#include <chrono>
#include <iterator>
#include <thread>

#include "tool/commands/every_command.h"
#include "tool/opened_files.h"

namespace camcfg::tests {
namespace {

// How often each command opens business_param.xml, mpp_cfg.xml and preset_cfg.xml for reading, in each
// directory, and in those of the scratch devices on which changes are worked out. A save reads the main
// copy once, to copy it to the backup.
constexpr struct {
  const char* command;
  const char* reads;
} kReads[] = {
    {"summary", "main 14 15 4, backup 1 1 1, default 1 1 1"},
    {"report", "main 24 45 14, backup 4 4 4, default 6 7 7, draft 16 14 2"},
    {"status", "main 5 15 4, backup 1 1 1, default 1 1 1"},
    {"verify", "main 5 5 5, backup 3 3 3, default 3 3 3"},
    {"boot", "main 21 27 16, backup 8 7 7, default 12 12 12, draft 2 28 4"},
    {"salvage", "main 7 0 0, backup 5 0 0, default 1 0 0, draft 2 0 0"},
    {"lint", "main 8 4 4, backup 3 2 2, default 2 2 2, draft 2 0 0"},
    {"list", "main 1 0 0"},
    {"get", "main 1 0 0"},
    {"set", "main 4 1 1, backup 1 0 0, draft 3 0 0"},
    {"describe", "main 1 0 0"},
    {"find", "main 2 7 2"},
    {"explain", "main 1 0 0, backup 1 0 0, default 1 0 0"},
    {"explain parameter", "main 1 0 0, backup 1 0 0, default 1 0 0"},
    {"explain card", "main 1 0 0, backup 1 0 0, default 1 0 0"},
    {"explain preset", "main 0 0 1, backup 0 0 1, default 0 0 1"},
    {"explain session", "main 2 8 1, backup 1 2 1, default 1 2 1, draft 4 14 2"},
    {"system", "main 9 0 0"},
    {"system http-port", "main 4 1 1, backup 1 0 0, draft 3 0 0"},
    {"system https-port", "main 4 1 1, backup 1 0 0, draft 3 0 0"},
    {"system rtsp-port", "main 4 1 1, backup 1 0 0, draft 3 0 0"},
    {"system rtsp-over-http-port", "main 4 1 1, backup 1 0 0, draft 3 0 0"},
    {"network cards", "main 2 0 0"},
    {"network show", "main 2 0 0"},
    {"network set", "main 5 1 1, backup 1 0 0, draft 3 0 0"},
    {"network reset", "main 5 0 0, backup 1 0 0, default 1 0 0, draft 3 0 0"},
    {"network hostname", "main 5 1 1, backup 1 0 0, draft 3 0 0"},
    {"preset list", "main 0 0 2"},
    {"preset get", "main 0 0 1"},
    {"preset set", "main 1 1 5, backup 0 0 1, draft 0 0 3"},
    {"preset add", "main 1 1 7, backup 0 0 1, draft 0 0 3"},
    {"preset rename", "main 1 1 6, backup 0 0 1, draft 0 0 3"},
    {"preset delete", "main 1 1 5, backup 0 0 1, draft 0 0 3"},
    {"preset export", "main 0 0 1"},
    {"preset import", "main 1 1 5, backup 0 0 1, draft 0 0 3"},
    {"stream sources", "main 0 1 0"},
    {"stream caches", "main 0 2 0"},
    {"stream cache select", "main 1 7 1, backup 0 1 0, draft 0 3 0"},
    {"stream cache default", "main 1 7 1, backup 0 1 0, draft 0 3 0"},
    {"stream cache allow", "main 1 8 1, backup 0 1 0, draft 0 3 0"},
    {"stream source add", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"stream source set", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"stream source delete", "main 1 16 1, backup 0 1 0, draft 0 7 0"},
    {"stream cache add", "main 1 15 1, backup 0 1 0, draft 0 4 0"},
    {"stream cache set", "main 1 15 1, backup 0 1 0, draft 0 4 0"},
    {"stream cache delete", "main 1 15 1, backup 0 1 0, draft 0 4 0"},
    {"live websocket", "main 0 1 0"},
    {"live websocket add", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live websocket set", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live websocket delete", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live rtsp", "main 0 1 0"},
    {"live rtsp add", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live rtsp set", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live rtsp delete", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live rtmp", "main 0 1 0"},
    {"live rtmp add", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live rtmp set", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live rtmp delete", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live ndi", "main 0 1 0"},
    {"live ndi add", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live ndi set", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live ndi delete", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live srt", "main 0 1 0"},
    {"live srt add", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live srt set", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"live srt delete", "main 1 12 1, backup 0 1 0, draft 0 4 0"},
    {"graph", "main 0 9 0"},
    {"export", "main 6 8 2"},
    {"import", "main 8 7 1, backup 1 1 0, draft 3 4 0"},
    {"diff", "main 3 9 3, default 1 2 2, draft 2 7 1"},
    {"reset", "main 7 0 0, backup 1 0 0, default 1 0 0, draft 3 0 0"},
    {"schema", "main 4 0 0"},
    {"history", ""},
    {"undo", "main 6 0 0, backup 1 0 0, draft 6 0 0"},
    {"try", "main 10 1 1, backup 2 0 0, draft 5 0 0"},
    {"confirm", ""},
    {"cancel", "main 6 0 0, backup 1 0 0, draft 2 0 0"},
    {"upgrade", "main 8 4 4, backup 1 0 0, default 4 4 4, draft 2 28 4"},
    {"lang", ""},
    {"run", ""},
    {"help", ""},
    {"man", ""},
    {"complete bash", ""},
    {"complete zsh", ""},
};

// Copies that are in doubt are compared, and so read once more, if they were saved a moment ago.
constexpr std::chrono::milliseconds kSettled(400);

class ReadsTest : public EveryCommandTest {
 protected:
  // A file that is missing would be looked for until nobody may be saving it any more: for how long
  // depends on the machine.
  ReadsTest() { device.remove("/app/resource/defcfg/own.xml"); }

  OpenedFiles opened(Words line) const {
    line.insert(line.begin(), {"--root", device.hostPath()});
    return filesOpenedBy(device.hostPath(), [&] { becomeCamcfg(line); });
  }
};

// "main 1 0 2"; nothing if no file of the directory is opened.
std::string readsIn(const std::map<std::string, int>& files, const std::string& directory,
                    const char* what) {
  std::string text = what;
  bool isRead = false;
  for (const char* name : {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"}) {
    const auto found = files.find(directory + name);
    isRead = isRead || found != files.end();
    text += " " + std::to_string(found == files.end() ? 0 : found->second);
  }
  return isRead ? text : "";
}

std::string readsOf(const OpenedFiles& files) {
  std::string text;
  for (const std::string& reads :
       {readsIn(files.onDevice, "/cfg0/", "main"), readsIn(files.onDevice, "/cfg1/", "backup"),
        readsIn(files.onDevice, "/app/resource/defcfg/", "default"),
        readsIn(files.elsewhere, "/cfg0/", "draft")})
    text += (text.empty() || reads.empty() ? "" : ", ") + reads;
  return text;
}

std::string listedFor(const tool::cli::Command& command) {
  const auto* row = std::find_if(std::begin(kReads), std::end(kReads), [&](const auto& each) {
    return each.command == std::string(command.name);
  });
  return row == std::end(kReads) ? "no row" : row->reads;
}

// All but the one that reads again whenever something changes, until it is interrupted.
TEST_F(ReadsTest, EveryCommandReadsTheSettingsAsOftenAsListed) {
  for (const tool::cli::Command* command : commands()) {
    if (command->name == std::string("watch")) continue;
    renewFor(*command);
    std::this_thread::sleep_for(kSettled);
    EXPECT_EQ(readsOf(opened(lineFor(*command))), listedFor(*command)) << command->name;
  }
}

TEST_F(ReadsTest, OneSettingIsReadFromOneFileOnce) {
  for (const char* place : {"System/Rtsp", "Rtsp", "NetWork/Lan0/MTU"})
    EXPECT_EQ(readsOf(opened({"get", place})), "main 1 0 0") << place;
  for (const char* place : {"live.srt[1].latency", "live.rtsp[ch1/main]", "stream.caches[12].size"})
    EXPECT_EQ(readsOf(opened({"get", place})), "main 0 1 0") << place;
  EXPECT_EQ(readsOf(opened({"get", "presets[0].pan"})), "main 0 0 1");
}

// Once to know what it holds, once to be sure that it still does, once for the backup, once to be sure
// that the change is in it.
TEST_F(ReadsTest, SettingsThatAreSavedTogetherAreReadTogether) {
  const std::string once = readsOf(opened({"set", "System", "Rtsp", "8554"}));
  renew();
  EXPECT_EQ(readsOf(opened({"set", "System/Rtsp=8554", "System/WebHttp=8081"})), once);
}

}  // namespace
}  // namespace camcfg::tests
