#ifndef CAMCFG_TOOL_DEVICE_SIGNALS_H
#define CAMCFG_TOOL_DEVICE_SIGNALS_H

#include <csignal>

namespace camcfg::tool::device {

/// While this object lives, the user's wish to end the tool (SIGINT, SIGTERM, SIGHUP) waits. Once a change
/// is in force, it waits until the tool has ended by itself, with an exit status that says so.
class HeldSignals {
 public:
  HeldSignals();
  /// One that has come meanwhile has its effect now, unless it was ignored or a change is in force.
  ~HeldSignals();
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  /// Whether one has come.
  bool haveCome() const;
  /// Forgets those that have come, unless somebody held them before and waits for them.
  void ignore() const;

 private:
  sigset_t held_{};
  sigset_t former_{};
};

}  // namespace camcfg::tool::device

#endif
