#ifndef CAMCFG_TESTS_TOOL_AS_NOBODY_H
#define CAMCFG_TESTS_TOOL_AS_NOBODY_H

#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "camcfg/testkit/device_root.h"
#include "support/run_camcfg.h"
#include "testkit/enter_root.h"

namespace camcfg::tests {

/// Runs the tool as a user without privileges: this test's own user, or "nobody" where the tests
/// run as root.
class Nobody {
 public:
  /// Gives the device's files to that user, and copies the tool to where that user can reach it.
  explicit Nobody(const testkit::DeviceRoot& device) : device_(device.hostPath()) {
    if (geteuid() != 0) return;
    namespace fs = std::filesystem;
    fs::copy(CAMCFG_TOOL, program());
    fs::copy(CAMCFG_LIBRARY,
             tools_.hostPath() + "/" + fs::path(CAMCFG_LIBRARY).filename().string());
    fs::permissions(tools_.hostPath(), fs::perms(0755));
    give(device_);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(device_))
      give(entry.path());
  }

  /// Why this user cannot enter a root; empty if it can.
  std::string whyNotEnter() const {
    int ends[2];
    if (pipe(ends) != 0) return "pipe";
    const pid_t child = fork();
    if (child == 0) {
      become();
      prctl(PR_SET_DUMPABLE, 1);  // as after the start of a program
      const std::string error = enterRoot(device_);
      const bool told = write(ends[1], error.data(), error.size()) >= 0;
      _exit(told ? 0 : 1);
    }
    close(ends[1]);
    waitpid(child, nullptr, 0);
    char error[256] = {};
    const ssize_t got = read(ends[0], error, sizeof error - 1);
    close(ends[0]);
    return got < 0 ? "read" : error;
  }

  ToolRun run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--root", device_});
    return runCamcfg(
        arguments, [this] { become(); }, geteuid() == 0 ? program() : CAMCFG_TOOL);
  }

 private:
  static constexpr unsigned kNobody = 65534;

  std::string program() const { return tools_.hostPath() + "/camcfg"; }

  static void give(const std::filesystem::path& path) {
    if (lchown(path.c_str(), kNobody, kNobody) != 0) throw std::runtime_error("lchown");
  }

  void become() const {
    if (geteuid() != 0) return;
    setenv("LD_LIBRARY_PATH", tools_.hostPath().c_str(), 1);
    if (setgid(kNobody) != 0 || setuid(kNobody) != 0) _exit(1);
  }

  std::string device_;
  testkit::DeviceRoot tools_{testkit::DeviceRoot::StayOut};
};

}  // namespace camcfg::tests

#endif
