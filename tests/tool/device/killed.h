#ifndef CAMCFG_TESTS_TOOL_DEVICE_KILLED_H
#define CAMCFG_TESTS_TOOL_DEVICE_KILLED_H

#include <functional>

#include "support/traced_child.h"

namespace camcfg::tests {

/// Odd, so that calls are cut both at their beginning and their end.
constexpr int kCallStep = 3;

/// Runs a piece of work in a child process that is killed right before one of its system calls.
/// @param call  which one, counted from 0, of those that begin or end; below 0: none
/// @return whether it was killed, and not over before
inline bool killAtCall(int call, const std::function<void()>& work) {
  TracedChild child(work);
  for (int left = call; left != 0 && child.isStopped(); --left) child.goOn();
  const bool isKilled = child.isStopped();
  if (isKilled) child.killNow();
  return isKilled;
}

}  // namespace camcfg::tests

#endif
