#ifndef CAMCFG_TESTS_SUPPORT_QUICK_SAVES_H
#define CAMCFG_TESTS_SUPPORT_QUICK_SAVES_H

#include <functional>

namespace camcfg::tests {

/// What the library's sync() does instead of its own work, if set.
extern std::function<void()> insteadOfSync;

/// For tests that save thousands of times: puts the scratch device into memory, where the host has
/// a file system for that, and lets sync() return at once. First base class of the test's fixture,
/// so that it is there before the device. Programs that use it are linked with quick_saves.cpp.
class QuickSaves {
 protected:
  QuickSaves();
  ~QuickSaves();
};

}  // namespace camcfg::tests

#endif
