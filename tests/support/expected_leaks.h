#ifndef CAMCFG_TESTS_SUPPORT_EXPECTED_LEAKS_H
#define CAMCFG_TESTS_SUPPORT_EXPECTED_LEAKS_H

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace camcfg::tests {

/// While an object of this class lives, what this thread allocates may be forgotten: a document
/// whose lock cannot be had is abandoned on purpose, and tinyxml2 forgets the text of an error that
/// it has no memory to keep.
class ExpectedLeaks {
#ifdef __SANITIZE_ADDRESS__
  const __lsan::ScopedDisabler disabler_;
#endif
 public:
  ExpectedLeaks() {}
  ExpectedLeaks(const ExpectedLeaks&) = delete;
  ExpectedLeaks& operator=(const ExpectedLeaks&) = delete;
  ~ExpectedLeaks() {}
};

}  // namespace camcfg::tests

#endif
