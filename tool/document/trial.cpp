#include "document/trial.h"

#include "base/concat.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "base/system_log.h"
#include "device/trial.h"
#include "device/turn.h"
#include "document/past.h"

namespace camcfg::tool::document {
namespace {

using device::RecordedChange;
using device::TrialEnd;
using device::Turn;

constexpr char kTooLate[] = "it was not confirmed in time";

RecordedChange requireOnTrial() {
  std::optional<RecordedChange> change = device::changeOnTrial();
  if (!change) throw Refusal("no change is on trial");
  return std::move(*change);
}

bool isOver(const RecordedChange& change) {
  return device::timeLeft(*change.trial).count() == 0;
}

/// What was rolled back, and how that is said.
struct RolledBack {
  std::vector<std::string> conflicts;
  std::string line;
};

// Where nothing is left to be changed, no change ends the trial.
RolledBack rollBack(const RecordedChange& change, const std::string& why) {
  const device::RollingBack rollingBack(change);
  RolledBack rolledBack{takeBack(change), ""};
  if (device::changeOnTrial()) device::endTrial(TrialEnd::RolledBack);
  rolledBack.line =
      concat("rolled back change ", change.number, ", since ", why, ": ", describe(change));
  if (!rolledBack.conflicts.empty())
    rolledBack.line +=
        "; set to something else since, and left so: " + joined(rolledBack.conflicts);
  logToSystem(rolledBack.line);
  announce(rolledBack.line);
  return rolledBack;
}

}  // namespace

Json pendingChange() try {
  const std::optional<RecordedChange> change = device::changeOnTrial();
  if (!change) return nullptr;
  return {{"number", change->number},
          {"caller", change->caller},
          {"command", change->command},
          {"until", utcText(device::endOf(*change->trial))},
          {"secondsLeft", device::timeLeft(*change->trial).count() / 1000}};
} catch (const Refusal&) {
  return nullptr;
}

Outcome confirmChange() {
  const Turn turn(Turn::allFiles());
  const RecordedChange change = requireOnTrial();
  if (isOver(change)) {
    rollBack(change, kTooLate);
    throw Refusal(concat("too late: change ", change.number, " was rolled back"));
  }
  device::endTrial(TrialEnd::Confirmed);
  noteChange();
  return {recordOf(change), {}};
}

Outcome rollBack(const std::string& why) {
  const Turn turn(Turn::allFiles());
  const RecordedChange change = requireOnTrial();
  Outcome outcome{recordOf(change), {}};
  outcome.value["conflicts"] = rollBack(change, why).conflicts;
  return outcome;
}

void rollBackWhatIsOver() try {
  if (!device::isTrialOver()) return;
  const Turn turn(Turn::allFiles());
  const std::optional<RecordedChange> change = device::changeOnTrial();
  if (change && isOver(*change)) rollBack(*change, kTooLate);
} catch (const Refusal& refusal) {
  announce(std::string("a change on trial could not be rolled back: ") + refusal.what());
}

std::vector<std::string> rollBackAtStart() {
  const std::optional<RecordedChange> change = device::changeOnTrial();
  if (!change || (!isOver(*change) && device::isTrialWaitedFor())) return {};
  return {rollBack(*change, kTooLate).line};
}

}  // namespace camcfg::tool::document
