#ifndef CAMCFG_TESTS_SUPPORT_LATER_CLOCK_H
#define CAMCFG_TESTS_SUPPORT_LATER_CLOCK_H

namespace camcfg::tests {

/// While an object of this class lives, the system's clock is ahead of that of the file system, so that
/// nobody waits to see whether a file that was changed just now is going to change again. Programs that
/// use it are linked with later_clock.cpp.
class LaterClock {
 public:
  LaterClock();
  ~LaterClock();
  LaterClock(const LaterClock&) = delete;
  LaterClock& operator=(const LaterClock&) = delete;
};

}  // namespace camcfg::tests

#endif
