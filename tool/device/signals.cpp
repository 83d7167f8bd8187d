#include "device/signals.h"

#include <pthread.h>

#include <algorithm>
#include <ctime>
#include <iterator>

#include "base/outcome.h"

namespace camcfg::tool::device {
namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

}  // namespace

HeldSignals::HeldSignals() {
  sigemptyset(&held_);
  for (const int signal : kSignals) {
    struct sigaction action {};
    const bool isIgnored = sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    if (!isIgnored) sigaddset(&held_, signal);
  }
  pthread_sigmask(SIG_BLOCK, &held_, &former_);
}

HeldSignals::~HeldSignals() {
  if (!changeWasMade()) pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

bool HeldSignals::haveCome() const {
  sigset_t pending{};
  sigpending(&pending);
  return std::any_of(std::begin(kSignals), std::end(kSignals), [&](int signal) {
    return sigismember(&held_, signal) != 0 && sigismember(&pending, signal) != 0;
  });
}

void HeldSignals::ignore() const {
  sigset_t ours = held_;
  for (const int signal : kSignals)
    if (sigismember(&former_, signal) != 0) sigdelset(&ours, signal);
  const timespec now{};
  while (sigtimedwait(&ours, nullptr, &now) > 0) {
  }
}

}  // namespace camcfg::tool::device
