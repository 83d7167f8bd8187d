#ifndef CAMCFG_TESTS_SUPPORT_COST_H
#define CAMCFG_TESTS_SUPPORT_COST_H

#include <sys/resource.h>

#include <functional>
#include <ostream>

namespace camcfg::tests {

/// What a call took of the machine. How long it took is left to the limit that every test has: what
/// grows with the square of a million elements takes hours.
struct Cost {
  long kibibytes;  ///< by which the peak of the process's memory grew

  /// More is not taken even under sanitizers or an emulator.
  static constexpr long kMostKibibytes = 3L << 20;

  bool isBounded() const { return kibibytes < kMostKibibytes; }
};

inline void PrintTo(const Cost& cost, std::ostream* out) {
  *out << cost.kibibytes << " KiB";
}

/// @param who  RUSAGE_SELF, or RUSAGE_CHILDREN for a program that the call runs to its end
inline Cost costOf(const std::function<void()>& call, int who = RUSAGE_SELF) {
  rusage before{};
  rusage after{};
  getrusage(who, &before);
  call();
  getrusage(who, &after);
  return {after.ru_maxrss - before.ru_maxrss};
}

}  // namespace camcfg::tests

#endif
