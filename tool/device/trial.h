#ifndef CAMCFG_TOOL_DEVICE_TRIAL_H
#define CAMCFG_TOOL_DEVICE_TRIAL_H

#include <chrono>
#include <optional>
#include <string>

#include "base/host.h"
#include "device/journal.h"
#include "device/state_folder.h"

namespace camcfg::tool::device {

// A change on trial is in force, and is rolled back unless somebody confirms it in time. Its record is
// "/cfg1/.camcfg/trial" until then. A trial that began before the device was started again is over: it
// may have been started for the very reason that nobody could reach it.

/// From now on the change that this process makes is on trial for so long.
void putOnTrial(std::chrono::seconds length);

/// From now on a change of this process confirms the one on trial first.
void confirmFirst();

/// While this object lives, the changes that this process makes roll back the one on trial, and are
/// called so in the history.
class RollingBack {
 public:
  explicit RollingBack(const RecordedChange& change);
  ~RollingBack();
  RollingBack(const RollingBack&) = delete;
  RollingBack& operator=(const RollingBack&) = delete;
};

/// The trial of a change that is made now; none unless putOnTrial() was called.
std::optional<Trial> nextTrial();

/// Gives the record of a change that rolls back the one on trial its command and takesBack; leaves
/// that of any other as it is.
void nameRollback(RecordedChange& change);

/// The change on trial, with its contents; none if there is none.
/// @throws Refusal  the tool's own directory cannot be used
std::optional<RecordedChange> changeOnTrial();

/// How long it may still be confirmed; 0 from the end on, or when the device was started since. What
/// anybody sets the clock to makes no difference.
std::chrono::milliseconds timeLeft(const Trial& trial);

/// When that is, in seconds since 1970 by the device's clock as it is now.
std::int64_t endOf(const Trial& trial);

/// Whether there is a trial that is over, or being ended: its change does not count any more. Also of
/// one that an interrupted run has left in the journal.
bool isTrialOver();

/// Makes sure that no change is on trial, or confirms it if confirmFirst() was called.
/// @throws Refusal  that names it, and what may be done
void requireNoTrial();

/// What the end of a trial is.
enum class TrialEnd { Confirmed, RolledBack };

/// The trial ends, and the change goes into the history. That is on the medium when this returns.
/// @throws Refusal  that failed; the change may still be on trial
void endTrial(TrialEnd how);

/// The same, not yet on the medium. False, with errno set, when that failed.
bool moveTrial(const StateFolder& state, TrialEnd how);

/// A record in the place of the trial that is of no use is put aside.
/// @return why and where; empty if it was not
std::string putUselessTrialAside(const StateFolder& state);

/// Waits for the end of the trial, for others to see, while this object lives.
class TrialWait {
 public:
  /// Begins with the trial that there is.
  TrialWait();

  /// How the trial has ended; none: it has not.
  std::optional<TrialEnd> end() const;

 private:
  Descriptor record_;
};

/// Whether some process does.
bool isTrialWaitedFor();

}  // namespace camcfg::tool::device

#endif
