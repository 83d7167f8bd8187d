#include "support/later_clock.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <ctime>

namespace camcfg::tests {
namespace {

constexpr time_t kLater = 3600;
time_t secondsLater = 0;

}  // namespace

LaterClock::LaterClock() {
  secondsLater = kLater;
}

LaterClock::~LaterClock() {
  secondsLater = 0;
}

}  // namespace camcfg::tests

// Called instead of the C library's own, by the C++ library's clocks.
extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* time) noexcept {
  const long result = syscall(SYS_clock_gettime, clock, time);
  if (result == 0 && clock == CLOCK_REALTIME) time->tv_sec += camcfg::tests::secondsLater;
  return static_cast<int>(result);
}
