#ifndef CAMCFG_TESTS_SUPPORT_FAILING_ALLOCATIONS_H
#define CAMCFG_TESTS_SUPPORT_FAILING_ALLOCATIONS_H

#include <gtest/gtest.h>

#include <string>

namespace camcfg::tests {

/// Lets this thread's n-th call of operator new fail, from any library of the process, while an
/// object of this class lives. Programs that use it are linked with failing_allocations.cpp.
class FailingAllocations {
 public:
  enum Reach {
    OnlyThatOne,  ///< a moment of shortage
    FromThereOn,  ///< memory has run out
  };

  FailingAllocations(int nth, Reach reach);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  /// Whether an allocation was refused so far.
  bool happened() const;
};

/// Runs `call` with its first allocation failing, then its second and so on, until it passes with
/// none failing; each time `check(failed, result)` judges the result, with memory available again.
template <typename Call, typename Check>
void failEachAllocation(Call call, Check check) {
  for (const auto reach : {FailingAllocations::OnlyThatOne, FailingAllocations::FromThereOn}) {
    int nth = 0;
    for (bool failed = true; failed;) {
      ++nth;
      ASSERT_LT(nth, 10000);
      SCOPED_TRACE("allocation " + std::to_string(nth) +
                   (reach == FailingAllocations::OnlyThatOne ? " alone" : " and those after it"));
      const auto result = [&] {
        const FailingAllocations failing(nth, reach);
        auto value = call();
        failed = failing.happened();
        return value;
      }();
      check(failed, result);
      if (testing::Test::HasFatalFailure()) return;
    }
    EXPECT_GT(nth, 1) << "the call allocates nothing, so nothing was tried";
  }
}

/// Elements nested so deep that a document of them cannot be saved without allocating.
std::string deeplyNested();

}  // namespace camcfg::tests

#endif
