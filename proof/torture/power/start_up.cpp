#include "torture/power/start_up.h"

#include <stdexcept>

#include "camcfg/store.h"
#include "torture/harness/child.h"

namespace camcfg::torture {

const char* wordFor(StartUp startUp) {
  return startUp == StartUp::Verification ? "verification only" : "verify --resync";
}

std::vector<std::string> resyncCommand(const Device& device) {
  return {CAMCFG_TOOL, "--root", device.root(), "verify", "--resync"};
}

void start(const Device& device, StartUp startUp) {
  if (startUp == StartUp::Verification) {
    runInside(device.root(), CFG_VerifyFileFormat);
    return;
  }
  // Its files, not its status, show whether it did its work; but it must have run.
  constexpr int kHighestStatus = 3;
  if (runProgram(resyncCommand(device)) > kHighestStatus) throw std::runtime_error("the tool");
}

}  // namespace camcfg::torture
