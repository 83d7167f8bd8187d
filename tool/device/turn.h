#ifndef CAMCFG_TOOL_DEVICE_TURN_H
#define CAMCFG_TOOL_DEVICE_TURN_H

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/host.h"
#include "device/journal.h"

namespace camcfg::tool::device {

/// How long one run of the tool waits for another.
struct Patience {
  std::chrono::milliseconds untilSaid{1000};  ///< until it says so
  std::chrono::milliseconds most{30000};      ///< until it gives up
};

/// While this object lives, no other run of the tool changes the device: they take turns, by a lock
/// on the directory of the main copies, which goes with its holder however that ends. Where no
/// directory can be locked, everybody's turn is always. Where the programs of the device are kept
/// apart, none of them opens or saves the files of the turn either. Objects within the lifetime of
/// another one do nothing.
class Turn {
 public:
  using Files = std::vector<const char*>;
  static const Files& allFiles();

  /// Waits for its turn.
  /// @param files  main copies that are going to be changed; none: nothing is going to be
  ///               changed, and there is nothing to wait for
  /// @throws Refusal that names the waiting time; or what was interrupted cannot be finished
  /// @param finished  receives what was done about an interrupted run, a line each; null: it is
  ///                  announced
  explicit Turn(const Files& files, const Patience& patience = {},
                std::vector<std::string>* finished = nullptr);
  ~Turn();
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  void lockAll(const Files& files);
  void release();

  std::optional<Descriptor> directory_;
  std::vector<std::string> locked_;
};

/// The change that an interrupted run has left, for those who only report it; none while some run is
/// at work.
std::optional<RecordedChange> interruptedChange();

/// Why the programs of this device do not wait for each other when they change settings: the
/// directory for the locks between them is missing or of no use. Empty if they do.
std::string whyNotKeptApart();

}  // namespace camcfg::tool::device

#endif
