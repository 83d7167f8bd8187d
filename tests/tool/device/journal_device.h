#ifndef CAMCFG_TESTS_TOOL_DEVICE_JOURNAL_DEVICE_H
#define CAMCFG_TESTS_TOOL_DEVICE_JOURNAL_DEVICE_H

#include <string>
#include <vector>

#include "base/caller.h"
#include "base/outcome.h"
#include "device/history.h"
#include "device/journal.h"
#include "device/save.h"
#include "tool/tool_test.h"

namespace camcfg::tests {

constexpr char kPresetBackup[] = "/cfg1/preset_cfg.xml";
constexpr char kState[] = "/cfg1/.camcfg";
constexpr char kJournal[] = "/cfg1/.camcfg/journal";
constexpr char kNewJournal[] = "/cfg1/.camcfg/journal.new";
constexpr char kAside[] = "/cfg1/.camcfg/aside-1";

constexpr char kOldBusiness[] = "<System>\n    <Rtsp Cur=\"554\"/>\n</System>\n";
constexpr char kNewBusiness[] = "<System>\n    <Rtsp Cur=\"8554\"/>\n</System>\n";
constexpr char kOldPreset[] = "<Preset><One/></Preset>\n";
constexpr char kNewPreset[] = "<Preset><Two/></Preset>\n";
constexpr char kOthers[] = "<System><Rtsp Cur=\"1\"/></System>\n";

/// A device with two files that one change is about.
class JournalTest : public testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  explicit JournalTest(testkit::DeviceRoot::Entry entry = testkit::DeviceRoot::Enter)
      : device(entry) {
    const char* words[] = {"camcfg", "import", "settings.json"};
    tool::rememberCaller(3, words);
    putBack();
  }

  void giveBoth(const std::string& business, const std::string& preset) const {
    device.write(kBusiness, business);
    device.write(kBusinessBackup, business);
    device.write(kPreset, preset);
    device.write(kPresetBackup, preset);
  }
  void putBack() const { giveBoth(kOldBusiness, kOldPreset); }

  static std::vector<tool::device::FileChange> files() {
    return {{kBusiness, kOldBusiness, kNewBusiness}, {kPreset, kOldPreset, kNewPreset}};
  }
  static void open() { tool::device::openJournal(files()); }

  /// A change of the ports, from the file as it is.
  void complete(const std::string& business) const {
    tool::device::openJournal({{kBusiness, device.read(kBusiness), business}});
    tool::device::saveContents({{kBusiness, business}});
    tool::device::closeJournal();
  }

  bool isOld() const { return hold(kOldBusiness, kOldPreset); }
  bool isNew() const { return hold(kNewBusiness, kNewPreset); }
  static bool hold(const std::string& business, const std::string& preset) {
    return tool::device::holds({kBusiness, business}) && tool::device::holds({kPreset, preset});
  }

  /// What was done, without the times.
  static Lines finish() {
    Lines lines = tool::device::finishInterrupted();
    for (std::string& line : lines) {
      const std::size_t begin = line.find(" (2");
      if (begin != std::string::npos) line.erase(begin, line.find(')') + 1 - begin);
    }
    return lines;
  }

  bool isIdle() const {
    for (const char* name : {"journal", "journal.new", "rollback"})
      if (device.exists(std::string(kState) + "/" + name)) return false;
    return true;
  }

  testkit::DeviceRoot device;
};

}  // namespace camcfg::tests

#endif
