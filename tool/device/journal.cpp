#include "device/journal.h"

#include <cerrno>
#include <cstring>
#include <ctime>

#include "base/caller.h"
#include "base/concat.h"
#include "base/outcome.h"
#include "device/state_changes.h"
#include "device/state_contents.h"
#include "device/state_record.h"
#include "device/trial.h"

namespace camcfg::tool::device {
namespace {

[[noreturn]] void refuse(const std::string& why) {
  throw Refusal(concat(kStateDirectory, "/", kJournal, " cannot be written: ", why));
}

// What the journal promises must be possible whenever it is read.
void requireSavable(const FileChange& file) {
  if (!isMainCopy(file.path)) refuse(file.path + " is no main copy that can be saved");
  if (file.after.find('\0') != std::string::npos) refuse(file.path + " is to hold a NUL byte");
  if (std::max(file.before.size(), file.after.size()) > kMostBytes)
    refuse(file.path + " is too long");
}

// What an earlier attempt has saved belongs to the change as well.
void addEarlier(const StateFolder& state, std::vector<FileChange>& files) {
  const Record record = readRecord(state, kJournal);
  const auto former =
      record.kind == Record::Whole ? withContents(state, record.change) : std::nullopt;
  if (!former) return;
  for (FileChange& file : files)
    for (const FileChange& same : former->files) {
      if (same.path != file.path) continue;
      file.earlier = same.earlier;
      file.earlier.push_back(same.after);
    }
}

// A change that is to be put in the journal.
struct NewJournal {
  explicit NewJournal(RecordedChange made)
      : change(std::move(made)), hashes(withHashes(change)), text(recordText(hashes)) {}

  RecordedChange change;
  RecordedChange hashes;
  std::string text;
};

bool put(const StateFolder& state, NewJournal& journal) {
  for (std::size_t i = 0; i < journal.change.files.size(); ++i) {
    const std::vector<std::string*> contents = contentsIn(journal.change.files[i]);
    const std::vector<std::string*> hashes = contentsIn(journal.hashes.files[i]);
    for (std::size_t j = 0; j < contents.size(); ++j)
      if (!keepContents(state, *hashes[j], *contents[j])) return false;
  }
  // Last, since it counts from its last byte on.
  return state.write(kNewJournal, journal.text);
}

bool isRoomShort() {
  return errno == ENOSPC || errno == EDQUOT;
}

// One flush for all. If it fails, what was written must not come into force later.
void make(const StateFolder& state, NewJournal& journal) {
  bool isPut = put(state, journal);
  while (!isPut && isRoomShort() && dropOldest(state)) isPut = put(state, journal);
  if (isPut && state.flush() && state.rename(kNewJournal, state, kJournal)) return;
  const std::string fault = std::strerror(errno);
  // On a medium that takes no change any more.
  const bool isLeft = isPut && !state.remove(kNewJournal);
  prune(state);
  if (isPut) state.flush();
  refuse(fault + (isLeft ? ", nor removed; the next 'camcfg verify' carries the change out" : ""));
}

void end(const StateFolder& state) {
  if (state.remove(kRollback)) return prune(state);
  const Record record = readRecord(state, kJournal);
  const bool isWhole = record.kind == Record::Whole;
  // First, so that the trial ends however often this is interrupted.
  if (isWhole && record.change.takesBack != 0 &&
      record.change.takesBack == readRecord(state, kTrial).change.number)
    moveTrial(state, TrialEnd::RolledBack);
  const bool isKept = isWhole && record.change.trial ? state.rename(kJournal, state, kTrial)
                                                     : moveToHistory(state, kJournal);
  if (!isKept) state.remove(kJournal);
  prune(state);
}

}  // namespace

// The name "journal" is not flushed: after a power cut, a complete "journal.new" counts as well, and
// one that is not complete was not flushed either, so that no file was touched yet.
void openJournal(const std::vector<FileChange>& files) {
  for (const FileChange& file : files) requireSavable(file);
  const StateFolder state = StateFolder::made();
  state.madeFolder(kChanges);  // now, so that the change can be closed without any room
  RecordedChange change{
      nextNumber(state), std::time(nullptr), caller().command, caller().name, files, nextTrial()};
  nameRollback(change);
  addEarlier(state, change.files);
  NewJournal journal(std::move(change));
  if (journal.text.size() > kMostRecordBytes) refuse("it is too long");
  make(state, journal);
}

void turnJournal() {
  const StateFolder state = StateFolder::existing();
  if (!state.rename(kJournal, state, kRollback))
    throw Refusal(Status::Unusable, concat(kStateDirectory, "/", kJournal,
                                           " cannot be renamed: ", std::strerror(errno),
                                           "; the change stays in force: make room and run "
                                           "'camcfg verify', which completes it"));
  // If this fails and power fails too, the change takes effect, as a whole.
  state.flush();
}

// No flush: a journal whose new name is lost in a power cut is finished again, which changes
// nothing. The next save of any file makes the name durable, since the library flushes everything.
void closeJournal() {
  try {
    end(StateFolder::existing());
  } catch (const Refusal&) {
    return;  // it is no longer the tool's own directory, and no longer its journal
  }
}

}  // namespace camcfg::tool::device
