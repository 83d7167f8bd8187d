#ifndef CAMCFG_TESTS_SUPPORT_DEVICE_IN_MEMORY_H
#define CAMCFG_TESTS_SUPPORT_DEVICE_IN_MEMORY_H

#include <unistd.h>

#include <cstdlib>

namespace camcfg::tests {

/// Puts the scratch device into memory, where the host has a file system for that: for tests that
/// save thousands of times, in programs linked with no_sync.cpp. First base class of the test's
/// fixture, so that it is there before the device.
class DeviceInMemory {
 protected:
  DeviceInMemory() {
    constexpr char kMemory[] = "/dev/shm";
    if (access(kMemory, R_OK | W_OK | X_OK) == 0) setenv("TMPDIR", kMemory, 1);
  }
};

}  // namespace camcfg::tests

#endif
