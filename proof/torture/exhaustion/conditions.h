#ifndef CAMCFG_TORTURE_EXHAUSTION_CONDITIONS_H
#define CAMCFG_TORTURE_EXHAUSTION_CONDITIONS_H

#include <vector>

#include "torture/tracer/traced.h"

namespace camcfg::torture {

/// Something that a system may be short of, or may have lost.
struct Condition {
  const char* name;
  int error;
  /// Whether a system call fails of it; null: allocations do.
  bool (*strikes)(const FileCall&);
};

const std::vector<Condition>& conditions();

/// How long it lasts, once it has begun.
enum class Lasting { OneCall, FromThenOn };

}  // namespace camcfg::torture

#endif
