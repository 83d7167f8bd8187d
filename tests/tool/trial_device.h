#ifndef CAMCFG_TESTS_TOOL_TRIAL_DEVICE_H
#define CAMCFG_TESTS_TOOL_TRIAL_DEVICE_H

#include <csignal>
#include <string>
#include <vector>

#include "device/state_contents.h"
#include "tool/background.h"
#include "tool/json_in.h"
#include "tool/tool_test.h"

namespace camcfg::tests {

constexpr char kTrial[] = "/cfg1/.camcfg/trial";

/// A change that is put on trial, and the program that waits for its end.
class OnTrial : public Background {
 public:
  /// @param words  those after the root
  OnTrial(const testkit::DeviceRoot& device, std::vector<std::string> words,
          const std::function<void()>& inChild = {})
      : Background(withRoot(device, std::move(words)), inChild) {
    EXPECT_TRUE(says("is on trial until"));
  }

 private:
  static std::vector<std::string> withRoot(const testkit::DeviceRoot& device,
                                           std::vector<std::string> words) {
    words.insert(words.begin(), {"--root", device.hostPath()});
    return words;
  }
};

/// A device whose RTSP port is 554, and 8554 on trial.
class TrialTest : public ParametersTest {
 protected:
  static Words trying(const std::string& length = "10m") {
    return {"try", "--for", length, "--", "set", "System", "Rtsp", "8554"};
  }

  std::string port() const { return run({"get", "System", "Rtsp"}).out; }
  bool isOld() const {
    return device.read(kBusiness) == kParameters && device.read(kBusinessBackup) == kParameters;
  }
  tool::Json pending() const { return jsonIn(run({"status", "--json"}).out)["pending"]; }
  std::vector<std::string> history() const {
    const tool::Json answer = jsonIn(run({"history", "--json"}).out);
    std::vector<std::string> commands;
    for (const tool::Json& change : answer["changes"]) commands.push_back(change["command"].text());
    return commands;
  }

  /// A change whose waiting program was killed.
  void leaveOnTrial(const std::string& length = "10m") const {
    OnTrial trial(device, trying(length));
    EXPECT_EQ(trial.end(SIGKILL), 128 + SIGKILL);
  }

  /// Replaces a part of the record.
  void editRecord(const std::string& part, const std::string& other) const {
    const std::string text = device.read(kTrial);
    const std::string rest = with(text.substr(text.find('\n') + 1), part, other);
    device.write(kTrial, "camcfg-change 1 " + std::to_string(rest.size()) + " " +
                             tool::device::hashOf(rest) + "\n" + rest);
  }
  /// What follows a name in the record, up to the end of its line.
  std::string recorded(const std::string& name) const {
    const std::string text = device.read(kTrial);
    const std::size_t at = text.find("\"" + name + "\": ");
    EXPECT_NE(at, std::string::npos);
    return text.substr(at, text.find_first_of(",\n", at) - at);
  }
};

}  // namespace camcfg::tests

#endif
