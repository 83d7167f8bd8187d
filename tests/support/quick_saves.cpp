#include "support/quick_saves.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>

namespace {

bool syncIsIdle = false;

}  // namespace

namespace camcfg::tests {

QuickSaves::QuickSaves() {
  constexpr char kMemory[] = "/dev/shm";
  if (access(kMemory, R_OK | W_OK | X_OK) == 0) setenv("TMPDIR", kMemory, 1);
  syncIsIdle = true;
}

QuickSaves::~QuickSaves() {
  syncIsIdle = false;
}

}  // namespace camcfg::tests

// Stands before the C library's own: the library's saves end up here.
extern "C" __attribute__((visibility("default"))) void sync() noexcept {
  if (!syncIsIdle) syscall(SYS_sync);
}
