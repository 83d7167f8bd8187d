#include <iterator>
#include <numeric>

#include "tool/commands/every_command.h"
#include "tool/opened_files.h"

namespace camcfg::tests {
namespace {

constexpr struct {
  const char* command;
  const char* reads;  // see readsIn
} kReads[] = {
    {"get", ""},
};

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

// " main 1 0 2": how often business_param.xml, mpp_cfg.xml and preset_cfg.xml are opened in a
// directory; nothing if they are not.
std::string readsIn(const std::map<std::string, int>& files, const std::string& directory,
                    const char* what) {
  int counts[3] = {};
  for (int i = 0; i < 3; ++i) {
    const char* names[] = {"business_param.xml", "mpp_cfg.xml", "preset_cfg.xml"};
    const auto found = files.find(directory + names[i]);
    if (found != files.end()) counts[i] = found->second;
  }
  if (std::accumulate(std::begin(counts), std::end(counts), 0) == 0) return "";
  std::string text = std::string(" ") + what;
  for (const int count : counts) text += " " + std::to_string(count);
  return text;
}

std::string readsOf(const OpenedFiles& files) {
  return readsIn(files.onDevice, "/cfg0/", "main") +
         readsIn(files.onDevice, "/cfg1/", "backup") +
         readsIn(files.onDevice, "/app/resource/defcfg/", "default") +
         readsIn(files.elsewhere, "/cfg0/", "draft");
}

TEST_F(ReadsTest, EveryCommandReadsTheSettingsAsOftenAsListed) {
  for (const tool::cli::Command* command : commands()) {
    // It goes on reading.
    if (command->name == std::string("watch")) continue;
    renewFor(*command);
    const OpenedFiles files = opened(lineFor(*command));
    std::printf("    {\"%s\", \"%s\"},  // %d\n", command->name, readsOf(files).c_str(), files.status);
  }
}

}  // namespace
}  // namespace camcfg::tests
