#ifndef CAMCFG_TESTS_SUPPORT_COST_H
#define CAMCFG_TESTS_SUPPORT_COST_H

#include <sys/resource.h>

#include <functional>
#include <ostream>

namespace camcfg::tests {

/// What a call took of the machine.
struct Cost {
  double seconds;  ///< processor time
  long kibibytes;  ///< by which the peak of the process's memory grew

  /// More is not taken even under sanitizers or an emulator on a busy machine; what grows with the
  /// square of a million elements takes hours.
  static constexpr double kMostSeconds = 60;
  static constexpr long kMostKibibytes = 3L << 20;

  bool isBounded() const { return seconds < kMostSeconds && kibibytes < kMostKibibytes; }
};

inline void PrintTo(const Cost& cost, std::ostream* out) {
  *out << cost.seconds << " s of processor time, " << cost.kibibytes << " KiB";
}

inline double secondsOf(const rusage& usage) {
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// @param who  RUSAGE_SELF, or RUSAGE_CHILDREN for a program that the call runs to its end
inline Cost costOf(const std::function<void()>& call, int who = RUSAGE_SELF) {
  rusage before{};
  rusage after{};
  getrusage(who, &before);
  call();
  getrusage(who, &after);
  return {secondsOf(after) - secondsOf(before), after.ru_maxrss - before.ru_maxrss};
}

}  // namespace camcfg::tests

#endif
