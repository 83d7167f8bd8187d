// Runs one case once under callgrind, which counts what is between the two marks:
//   camcfg-instructions CASE SIZE library|floor
#include <fcntl.h>
#include <unistd.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/cases.h"
#include "camcfg/testkit/device_root.h"

extern "C" void UTIL_LOG_Print(int, char*, char*, ...) {}

namespace {

const camcfg::bench::Case* findCase(const std::string& name) {
  for (const auto& candidate : camcfg::bench::cases())
    if (candidate.name == name) return &candidate;
  return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  const auto* chosen = argc == 4 ? findCase(argv[1]) : nullptr;
  if (chosen == nullptr) {
    std::fprintf(stderr, "usage: %s CASE SIZE library|floor\n", argv[0]);
    return 2;
  }
  // What the library prints is not measured.
  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  const camcfg::testkit::DeviceRoot device;
  chosen->prepare(std::atoi(argv[2]));
  const auto& run = std::strcmp(argv[3], "library") == 0 ? chosen->library : chosen->floor;
  run();  // the first run resolves symbols and makes the lock record
  CALLGRIND_TOGGLE_COLLECT;
  run();
  CALLGRIND_TOGGLE_COLLECT;
  return 0;
}
