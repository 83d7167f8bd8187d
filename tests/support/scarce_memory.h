#ifndef CAMCFG_TESTS_SUPPORT_SCARCE_MEMORY_H
#define CAMCFG_TESTS_SUPPORT_SCARCE_MEMORY_H

#include <ostream>

namespace camcfg::tests {

/// How long memory is short, once it is.
enum class Shortage { OneAllocation, FromThenOn };

inline void PrintTo(Shortage shortage, std::ostream* out) {
  *out << (shortage == Shortage::OneAllocation ? "OneAllocation" : "FromThenOn");
}

/// Lets an allocation with `new` fail while this object lives, anywhere in the process: the first,
/// the second and so on, counted from 1. One object at a time.
class ScarceMemory {
 public:
  ScarceMemory(int allocation, Shortage shortage);
  ~ScarceMemory();
  ScarceMemory(const ScarceMemory&) = delete;
  ScarceMemory& operator=(const ScarceMemory&) = delete;

  /// Whether an allocation has failed.
  bool struck() const;
};

/// How many allocations with `new` are not freed yet, in the whole process.
long allocationsAlive();

}  // namespace camcfg::tests

#endif
