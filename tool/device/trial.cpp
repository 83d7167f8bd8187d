#include "device/trial.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <iterator>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/state_changes.h"
#include "device/state_record.h"

namespace camcfg::tool::device {
namespace {

std::optional<std::chrono::seconds> trialLength;
bool isConfirmedFirst = false;
// What the change that rolls another one back is called, and the other one's number.
std::string rollback;
int rolledBack = 0;

// By default of the clock that begins with the kernel, goes on while the device sleeps, and that nobody
// sets.
std::int64_t millisecondsNow(clockid_t clock = CLOCK_BOOTTIME) {
  timespec now{};
  clock_gettime(clock, &now);
  return std::int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

bool isOver(const RecordedChange& change) {
  return change.takesBack != 0 || (change.trial && timeLeft(*change.trial).count() == 0);
}

[[noreturn]] void refuseWhile(const RecordedChange& change) {
  const std::string what = concat("change ", change.number, " is on trial until ",
                                  utcText(endOf(*change.trial)), ": ", printable(change.command));
  throw Refusal(what +
                "; 'camcfg confirm' keeps it, 'camcfg cancel' rolls it back, '--force' keeps it "
                "and goes on; nothing was changed");
}

}  // namespace

void putOnTrial(std::chrono::seconds length) {
  trialLength = length;
}

void confirmFirst() {
  isConfirmedFirst = true;
}

RollingBack::RollingBack(const RecordedChange& change) {
  rolledBack = change.number;
  rollback = concat("rollback of change ", change.number, ": ", change.command);
}

RollingBack::~RollingBack() {
  rolledBack = 0;
}

std::optional<Trial> nextTrial() {
  if (!trialLength || rolledBack != 0) return std::nullopt;
  const std::int64_t now = millisecondsNow();
  return Trial{bootName(), now, now + std::chrono::milliseconds(*trialLength).count()};
}

void nameRollback(RecordedChange& change) {
  if (rolledBack == 0) return;
  change.command = rollback;
  change.takesBack = rolledBack;
}

std::optional<RecordedChange> changeOnTrial() {
  const StateFolder state = StateFolder::existing();
  Record record = readRecord(state, kTrial);
  if (record.kind != Record::Whole || !record.change.trial) return std::nullopt;
  return withContents(state, std::move(record.change));
}

std::chrono::milliseconds timeLeft(const Trial& trial) {
  const std::int64_t now = millisecondsNow();
  const bool isSameBoot = trial.boot == bootName() && trial.begin <= now;
  return std::chrono::milliseconds(isSameBoot && now < trial.end ? trial.end - now : 0);
}

std::int64_t endOf(const Trial& trial) {
  return (millisecondsNow(CLOCK_REALTIME) + timeLeft(trial).count() + 500) / 1000;
}

bool isTrialOver() try {
  const StateFolder state = StateFolder::existing();
  const char* names[] = {kTrial, kNewJournal, kJournal};
  return state && std::any_of(std::begin(names), std::end(names), [&](const char* name) {
           const Record record = readRecord(state, name);
           return record.kind == Record::Whole && isOver(record.change);
         });
} catch (const Refusal&) {
  return false;
}

void requireNoTrial() {
  if (rolledBack != 0) return;
  const std::optional<RecordedChange> change = changeOnTrial();
  if (!change) return;
  if (!isConfirmedFirst || isOver(*change)) refuseWhile(*change);
  endTrial(TrialEnd::Confirmed);
}

bool moveTrial(const StateFolder& state, TrialEnd how) {
  state.seal(kTrial, how == TrialEnd::Confirmed);
  return moveToHistory(state, kTrial) || state.remove(kTrial);
}

// What is not known to be on the medium is taken for not done.
void endTrial(TrialEnd how) {
  const StateFolder state = StateFolder::existing();
  const std::string number = std::to_string(readRecord(state, kTrial).change.number);
  const bool isMoved = moveTrial(state, how);
  if (isMoved && state.flush()) return prune(state);
  const std::string fault = std::strerror(errno);
  const bool isLeft = isMoved && !state.folder(kChanges).rename(number, state, kTrial);
  throw Refusal(Status::Unusable, concat(kStateDirectory, "/", kTrial, " cannot be moved: ", fault,
                                         isLeft ? "; the change stays in force" : ""));
}

std::string putUselessTrialAside(const StateFolder& state) {
  const Record record = readRecord(state, kTrial);
  if (record.kind == Record::Missing) return "";
  std::string fault = record.fault;
  if (record.kind == Record::Whole && !record.change.trial)
    fault = "is damaged: it is about no trial";
  else if (record.kind == Record::Whole && !withContents(state, record.change))
    fault = "is damaged: contents are missing";
  if (fault.empty()) return "";
  return concat(kStateDirectory, "/", kTrial, " ", fault, "; it was put aside as ",
                putAside(state, kTrial), "; the change that was on trial stays");
}

TrialWait::TrialWait() : record_(StateFolder::existing().open(kTrial)) {
  // Others hold it for no longer than they look.
  while (flock(record_.get(), LOCK_EX) != 0 && errno == EINTR) continue;
}

// A sealed record is that of a confirmed change, wherever it has gone.
std::optional<TrialEnd> TrialWait::end() const {
  if (StateFolder::existing().has(kTrial, record_)) return std::nullopt;
  struct stat status {};
  const bool isSealed = fstat(record_.get(), &status) == 0 && (status.st_mode & S_IWUSR) == 0;
  return isSealed ? TrialEnd::Confirmed : TrialEnd::RolledBack;
}

bool isTrialWaitedFor() {
  const Descriptor record = StateFolder::existing().open(kTrial);
  return record && flock(record.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace camcfg::tool::device
