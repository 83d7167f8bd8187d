#ifndef CAMCFG_TESTS_SUPPORT_EACH_SHORTAGE_H
#define CAMCFG_TESTS_SUPPORT_EACH_SHORTAGE_H

#include <gtest/gtest.h>

#include <string>

#include "support/scarce_memory.h"

namespace camcfg::tests {

/// Runs `call` with its first allocation failing, then its second and so on, until it passes with
/// none failing; each time `check(struck, result)` judges the result, with memory there again.
/// Programs that use it are linked with scarce_memory.cpp.
template <typename Call, typename Check>
void underEachShortage(Call call, Check check) {
  for (const auto shortage : {Shortage::OneAllocation, Shortage::FromThenOn}) {
    int allocation = 0;
    for (bool struck = true; struck;) {
      ++allocation;
      SCOPED_TRACE(testing::PrintToString(shortage) + " " + std::to_string(allocation));
      const auto result = [&] {
        const ScarceMemory memory(allocation, shortage);
        const auto value = call();
        struck = memory.struck();
        return value;
      }();
      check(struck, result);
      if (testing::Test::HasFailure()) return;
    }
    EXPECT_GT(allocation, 1) << "the call allocates nothing, so nothing was tried";
  }
}

/// How often `call` allocates, which must be as often whenever it is called. Programs that use it are
/// linked with scarce_memory.cpp.
template <typename Call>
int allocationsOf(Call call) {
  for (int allocations = 0;; ++allocations) {
    const ScarceMemory memory(allocations + 1, Shortage::OneAllocation);
    call();
    if (!memory.struck()) return allocations;
  }
}

/// Elements nested so deep that a document of them cannot be saved without allocating.
inline std::string deeplyNested() {
  constexpr int kDepth = 60;
  std::string xml;
  for (int i = 0; i < kDepth; ++i) xml += "<Level>";
  for (int i = 0; i < kDepth; ++i) xml += "</Level>";
  return xml;
}

}  // namespace camcfg::tests

#endif
