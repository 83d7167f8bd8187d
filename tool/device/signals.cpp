#include "device/signals.h"

#include <pthread.h>

#include <ctime>
#include <initializer_list>

namespace camcfg::tool::device {

HeldSignals::HeldSignals() {
  sigemptyset(&held_);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action {};
    const bool isIgnored = sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    if (!isIgnored) sigaddset(&held_, signal);
  }
  pthread_sigmask(SIG_BLOCK, &held_, &former_);
}

HeldSignals::~HeldSignals() {
  pthread_sigmask(SIG_SETMASK, &former_, nullptr);
}

bool HeldSignals::haveCome() const {
  sigset_t pending{};
  sigpending(&pending);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP})
    if (sigismember(&held_, signal) != 0 && sigismember(&pending, signal) != 0) return true;
  return false;
}

void HeldSignals::ignore() const {
  const timespec now{};
  while (haveCome() && sigtimedwait(&held_, nullptr, &now) > 0) {
  }
}

}  // namespace camcfg::tool::device
