#ifndef CAMCFG_TESTS_SUPPORT_NO_SYNC_H
#define CAMCFG_TESTS_SUPPORT_NO_SYNC_H

#include <functional>

namespace camcfg::tests {

/// What programs linked with no_sync.cpp do where the library syncs; nothing unless a test says.
extern std::function<void()> insteadOfSync;

}  // namespace camcfg::tests

#endif
