#ifndef CAMCFG_TESTS_TOOL_PROMISES_COMPARISON_H
#define CAMCFG_TESTS_TOOL_PROMISES_COMPARISON_H

#include "tool/promises/scene.h"

namespace camcfg::tests {

/// Compares what `status` promises of a device with what happens to it: at a start, at `boot`, and after
/// its advice was followed, each piece by itself and all together. For a process that has a scratch
/// device as its root.
void expectPromisesKept(const Scene& scene);

}  // namespace camcfg::tests

#endif
