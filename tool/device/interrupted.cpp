#include <camcfg/store.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <tinyxml2.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/files.h"
#include "device/journal.h"
#include "device/save.h"
#include "device/state_changes.h"
#include "device/state_contents.h"
#include "device/state_record.h"
#include "device/trial.h"

namespace camcfg::tool::device {
namespace {

enum class Direction { Forth, Back };

/// What a copy is found to hold, seen from the change.
enum class Held {
  Before,
  After,
  Torn,    ///< missing, or what a save that was cut short or an earlier attempt leaves
  Foreign  ///< something else
};

/// A change with its contents, or why there is none.
struct Found {
  Record::Kind kind = Record::Missing;
  std::string fault;
  RecordedChange change;
};

Found find(const StateFolder& state, const char* name) {
  Record record = readRecord(state, name);
  Found found{record.kind, record.fault, {}};
  if (record.kind == Record::Incomplete) found.fault = "is damaged: its end is missing";
  if (record.kind != Record::Whole) return found;
  std::optional<RecordedChange> change = withContents(state, std::move(record.change));
  if (change) {
    found.change = std::move(*change);
    return found;
  }
  // The contents are flushed with it, so it was never in force if it does not have its name yet.
  return {Record::Incomplete, "is damaged: contents are missing", {}};
}

bool isBeginning(const std::string& bytes, const std::string& whole) {
  return bytes.size() < whole.size() && beginsWith(whole, bytes);
}

// What an earlier attempt was to save counts as torn: it is neither the old nor the new.
bool isTorn(const std::string& bytes, const FileChange& file) {
  return isBeginning(bytes, file.after) || isBeginning(bytes, file.before) ||
         std::any_of(file.earlier.begin(), file.earlier.end(),
                     [&](const std::string& earlier) {
                       return bytes == earlier || isBeginning(bytes, earlier);
                     }) ||
         parsed(bytes)->Error();
}

// What is left where a power cut has lost the emptying of a file but not all that was written after
// it: of each byte the old or the new one. A program that saved such contents saved both copies.
bool isOverwritten(const std::string& bytes, const FileChange& file) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool isOld = i < file.before.size() && bytes[i] == file.before[i];
    const bool isNew = i < file.after.size() && bytes[i] == file.after[i];
    if (!isOld && !isNew) return false;
  }
  return !holds({file.path, bytes});
}

Held heldBy(const std::string& path, const FileChange& file) {
  struct stat status {};
  const bool isThere = lstat(path.c_str(), &status) == 0;
  if (!isThere && errno == ENOENT) return Held::Torn;
  if (!isThere) throw Refusal(Status::Unusable, concat(path, ": ", std::strerror(errno)));
  if (!S_ISREG(status.st_mode) || static_cast<std::size_t>(status.st_size) > kMostBytes)
    return Held::Foreign;
  const std::string bytes = bytesOf(path);
  if (bytes == file.after) return Held::After;
  if (bytes == file.before) return Held::Before;
  return isTorn(bytes, file) || isOverwritten(bytes, file) ? Held::Torn : Held::Foreign;
}

// The main copy counts; of one that is as before, the backup may not be so.
Held heldBy(const FileChange& file) {
  const Held main = heldBy(file.path, file);
  if (main != Held::Before) return main;
  const Held backup = heldBy(pathOf(Place::Backup, file.path), file);
  return backup == Held::After || backup == Held::Torn ? Held::Torn : Held::Before;
}

/// What is to be done to bring a change to its end.
struct Remainder {
  std::vector<std::string> foreign;  ///< files that another program has saved since
  std::vector<Contents> saves;
};

// The library reads a file to its first NUL.
std::string formerBytes(const FileChange& file) {
  return file.before.substr(0, file.before.find('\0'));
}

// A change that cannot be brought to its end everywhere is taken back where it can.
Remainder remainderOf(const RecordedChange& change, Direction direction) {
  Remainder remainder;
  std::vector<Held> held;
  for (const FileChange& file : change.files) {
    held.push_back(heldBy(file));
    if (held.back() == Held::Foreign) remainder.foreign.push_back(file.path);
  }
  const bool isForth = direction == Direction::Forth && remainder.foreign.empty();
  for (std::size_t i = 0; i < held.size(); ++i) {
    const FileChange& file = change.files[i];
    const bool isTouched = held[i] == Held::After || held[i] == Held::Torn;
    if (!remainder.foreign.empty() && !isTouched) continue;
    const Contents save{file.path, isForth ? file.after : formerBytes(file)};
    if (!holds(save)) remainder.saves.push_back(save);
  }
  return remainder;
}

bool isRoomShort(const std::vector<Contents>& saves) {
  constexpr std::uintmax_t kMargin = std::uintmax_t{64} << 10;
  std::uintmax_t needed = kMargin;
  for (const Contents& save : saves) needed += 2 * save.bytes.size();
  struct statvfs space {};
  return statvfs(CFG_DIR_BACKUP, &space) == 0 &&
         static_cast<std::uintmax_t>(space.f_bavail) * space.f_frsize < needed;
}

void removeHeld(std::vector<Contents>& saves) {
  saves.erase(std::remove_if(saves.begin(), saves.end(), holds), saves.end());
}

// The library does not report a failed write.
void carryOut(const StateFolder& state, std::vector<Contents> saves, const RecordedChange& change) {
  do {
    saveContents(saves);
    removeHeld(saves);
    if (saves.empty()) return;
  } while (isRoomShort(saves) && dropOldest(state));
  throw Refusal(Status::Unusable, concat("an interrupted change cannot be finished: ",
                                         describe(change), ": ", saves.front().path,
                                         " could not be saved; make room and run 'camcfg verify'"));
}

std::string whole(const char* name) {
  return concat(kStateDirectory, "/", name);
}

std::string uselessLine(const StateFolder& state, const char* name, const std::string& fault) {
  return concat(whole(name), " ", fault, "; it was put aside as ", putAside(state, name),
                " and not applied");
}

std::string foreignLine(const StateFolder& state, const char* name, const Remainder& remainder,
                        const RecordedChange& change) {
  std::vector<std::string> back;
  for (const Contents& save : remainder.saves) back.push_back(save.path);
  return concat(
      "an interrupted change was not finished: ", describe(change), ": ", joined(remainder.foreign),
      remainder.foreign.size() == 1 ? " holds" : " hold", " something else by now",
      back.empty() ? "" : concat("; the previous contents of ", joined(back), " were restored"),
      "; the journal was put aside as ", putAside(state, name));
}

void end(const StateFolder& state, const char* name, Direction direction,
         std::vector<std::string>& lines) {
  const Found found = find(state, name);
  if (found.kind == Record::Missing) return;
  if (found.kind != Record::Whole) {
    lines.push_back(uselessLine(state, name, found.fault));
    return;
  }
  const Remainder remainder = remainderOf(found.change, direction);
  carryOut(state, remainder.saves, found.change);
  if (!remainder.foreign.empty()) {
    lines.push_back(foreignLine(state, name, remainder, found.change));
    return;
  }
  closeJournal();
  if (remainder.saves.empty()) return;
  lines.push_back((direction == Direction::Forth ? "finished an interrupted change: "
                                                 : "took back an interrupted change: ") +
                  describe(found.change));
}

// A journal that is complete but does not have its name yet. One that is not complete was never in
// force.
void adoptNewJournal(const StateFolder& state, std::vector<std::string>& lines) {
  const Found found = find(state, kNewJournal);
  if (found.kind == Record::Incomplete)
    state.remove(kNewJournal);
  else if (found.kind == Record::Useless)
    lines.push_back(uselessLine(state, kNewJournal, found.fault));
  else if (found.kind == Record::Whole)
    state.rename(kNewJournal, state, kJournal);
}

std::optional<RecordedChange> ifWaiting(Found found, Direction direction) {
  if (found.kind != Record::Whole) return std::nullopt;
  const Remainder remainder = remainderOf(found.change, direction);
  if (!remainder.foreign.empty() || remainder.saves.empty()) return std::nullopt;
  return std::move(found.change);
}

}  // namespace

std::optional<RecordedChange> waitingChange() try {
  const StateFolder state = StateFolder::existing();
  if (!state) return std::nullopt;
  std::optional<RecordedChange> change = ifWaiting(find(state, kRollback), Direction::Back);
  if (change) return change;
  Found found = find(state, kNewJournal);
  if (found.kind != Record::Whole) found = find(state, kJournal);
  return ifWaiting(std::move(found), Direction::Forth);
} catch (const Refusal&) {
  return std::nullopt;
}

bool hasLeftJournal() try {
  const StateFolder state = StateFolder::existing();
  const char* names[] = {kRollback, kNewJournal, kJournal};
  return std::any_of(std::begin(names), std::end(names), [&](const char* name) {
    return readRecord(state, name).kind != Record::Missing;
  });
} catch (const Refusal&) {
  return false;
}

std::vector<std::string> finishInterrupted() {
  std::optional<StateFolder> state;
  try {
    state.emplace(StateFolder::existing());
  } catch (const Refusal& refusal) {
    return {refusal.what()};
  }
  std::vector<std::string> lines;
  if (!*state) return lines;
  end(*state, kRollback, Direction::Back, lines);
  adoptNewJournal(*state, lines);
  end(*state, kJournal, Direction::Forth, lines);
  if (const std::string line = putUselessTrialAside(*state); !line.empty()) lines.push_back(line);
  return lines;
}

}  // namespace camcfg::tool::device
