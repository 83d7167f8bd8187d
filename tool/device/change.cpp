#include "device/change.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "base/progress.h"
#include "device/calm.h"
#include "device/draft.h"
#include "device/history.h"
#include "device/room.h"
#include "device/save.h"
#include "device/shared_files.h"
#include "device/signals.h"
#include "device/trial.h"
#include "device/turn.h"

namespace camcfg::tool::device {
namespace {

constexpr int kAttempts = 3;

// The innermost; null if there is none.
const Reviewed* currentReview = nullptr;

void review(const std::vector<FileChange>& draft) {
  if (currentReview != nullptr) currentReview->look(draft);
}

// What became of a file that was saved.
enum class Arrival {
  Complete,     // it holds what it is to hold, or what another program made of that
  WriteFailed,  // it ends before its end
  Undone,       // another program saved it, and the change is not in it
};

Contents afterOf(const FileChange& file) {
  return {file.path, file.after};
}

Contents beforeOf(const FileChange& file) {
  return {file.path, file.before};
}

// Both copies are written while the space of the previous ones may not be free yet.
std::string whyNotSaved(const std::vector<FileChange>& files) {
  const SharedFiles shared;
  std::vector<Writing> writings;
  for (const FileChange& file : files)
    for (const Place place : {Place::Main, Place::Backup}) {
      const std::string path = pathOf(place, file.path);
      const std::string other = shared.ofAnotherName(path);
      if (!other.empty()) return sameFileFault(path, other);
      writings.push_back({path, file.after.size()});
    }
  return whyNotWritable(writings);
}

// Changes that are carried out together.
class Undertaking {
 public:
  explicit Undertaking(const std::vector<Change>& changes) : changes_(changes) {}

  void carryOut() {
    if (isMade()) return requireBackups();
    const std::string fault = undone();
    takeBack();
    throw Refusal(fault);
  }

 private:
  // Whatever stops a further attempt, what an earlier one did must not stay in force.
  bool isMade() try {
    for (int left = kAttempts; left > 0; --left)
      if (attempt()) return true;
    return false;
  } catch (...) {
    takeBack();
    throw;
  }

  // False if another program's save came in between.
  bool attempt() {
    const std::vector<FileChange> draft = draftOf(changes_, isOpen_);
    requireRoomFor(draft);
    review(draft);
    note(draft);
    if (files_.empty()) return true;
    putInForce();
    if (!areAsBefore(draft)) return false;
    const Signature before = signatureOf(files_.front().path);
    save(draft);
    waitForOthers(before);
    return areComplete();
  }

  // Other programs save the files as well, unless the device keeps them apart.
  bool areAsBefore(const std::vector<FileChange>& files) const {
    return std::all_of(files.begin(), files.end(),
                       [this](const FileChange& file) { return isAsBefore(file); });
  }

  bool isAsBefore(const FileChange& file) const {
    const std::optional<std::string> now = readFile(file.path);
    return isReplaced(now, changeOf(file)) || (now ? *now : bytesOf(file.path)) == file.before;
  }

  // The first change of a file.
  const Change& changeOf(const FileChange& file) const {
    return *std::find_if(changes_.begin(), changes_.end(),
                         [&](const Change& change) { return change.path == file.path; });
  }

  // A file that an earlier attempt has changed held something else before.
  void note(std::vector<FileChange> draft) {
    for (FileChange& file : draft)
      for (const FileChange& earlier : files_)
        if (earlier.path == file.path && earlier.after == file.before) file.before = earlier.before;
    draft.erase(std::remove_if(draft.begin(), draft.end(),
                               [](const FileChange& file) {
                                 return file.before == file.after && holds(afterOf(file));
                               }),
                draft.end());
    files_ = std::move(draft);
  }

  bool isNoted(const std::string& path) const {
    return std::any_of(files_.begin(), files_.end(),
                       [&](const FileChange& file) { return file.path == path; });
  }

  void putInForce() {
    if (signals_.haveCome() && !isOpen_) throw Refusal("interrupted; nothing was changed");
    openJournal(files_);
    isOpen_ = true;
    requireRoomFor(files_);
  }

  // The journal takes up room as well, and so does the history.
  void requireRoomFor(const std::vector<FileChange>& files) {
    std::string obstacle = whyNotSaved(files);
    while (beginsWith(obstacle, kNoRoom) && forgetOldest()) obstacle = whyNotSaved(files);
    if (obstacle.empty()) return;
    throw Refusal((changes_.size() == 1 ? changes_.front().what + ": " : "") + obstacle);
  }

  // An earlier attempt may have saved some of the files, which are as they were drafted.
  void save(const std::vector<FileChange>& draft) {
    isBegun_ = true;
    std::vector<Contents> contents;
    for (const FileChange& file : draft)
      if (isNoted(file.path) && (file.before != file.after || !holds(afterOf(file))))
        contents.push_back(afterOf(file));
    for (const Contents& file : contents) workingOn(file.path);
    saveContents(contents);
  }

  // Another program that loaded the file before the change saves what it loaded shortly after it.
  // Where programs are kept apart, or nobody has saved lately, nobody is expected to.
  static void waitForOthers(const Signature& before) {
    constexpr std::chrono::milliseconds kLately(1000);
    constexpr std::chrono::milliseconds kShortly(20);
    if (ageOf(before) < kLately && !whyNotKeptApart().empty())
      std::this_thread::sleep_for(kShortly);
  }

  bool areComplete() {
    whole_.clear();
    return std::all_of(files_.begin(), files_.end(), [this](const FileChange& file) {
      const Arrival arrival = arrivalOf(file);
      if (arrival == Arrival::WriteFailed) refuseAfter(file);
      return arrival == Arrival::Complete;
    });
  }

  Arrival arrivalOf(const FileChange& file) {
    const std::string now = bytesOf(file.path);
    if (now == file.after) {
      whole_.push_back(file.path);
      return Arrival::Complete;
    }
    const Copy main = loadCalmly(file.path);
    if (!main.loads() || beginsWith(file.after, now)) return Arrival::WriteFailed;
    return firstMissing(file, *main.document) == nullptr ? Arrival::Complete : Arrival::Undone;
  }

  // The first change of a file that a document does not hold.
  const Change* firstMissing(const FileChange& file, tinyxml2::XMLDocument& document) const {
    const auto missing = std::find_if(changes_.begin(), changes_.end(), [&](const Change& change) {
      return change.path == file.path && !change.arrived(document);
    });
    return missing == changes_.end() ? nullptr : &*missing;
  }

  [[noreturn]] void refuseAfter(const FileChange& failed) {
    const Change& change = changeOf(failed);
    throw Refusal(concat(change.what, ": the change is not in ", failed.path, "; ",
                         takeBack()
                             ? "the previous contents were restored"
                             : "the previous contents could not be restored; make room and run "
                               "'camcfg verify'"));
  }

  // Puts the previous contents back where the change, or a part of it, is. What other programs saved
  // stays, and so does a damaged file before the first save. False if that failed; it is then tried
  // again by the next run.
  bool takeBack() {
    if (!isOpen_) return true;
    turnJournal();
    std::vector<Contents> former;
    for (const FileChange& file : files_)
      if (isBegun_ && (beginsWith(file.after, bytesOf(file.path)) || !loadCopy(file.path).loads()))
        former.push_back(beforeOf(file));
    saveContents(former);
    const bool isRestored = std::all_of(former.begin(), former.end(), [](const Contents& file) {
      return bytesOf(file.path) == file.bytes;
    });
    if (isRestored) closeJournal();
    isOpen_ = false;
    return isRestored;
  }

  void requireBackups() {
    if (isOpen_) {
      closeJournal();
      noteChange();
    }
    signals_.ignore();
    for (const FileChange& file : files_) {
      const std::string backup = pathOf(Place::Backup, file.path);
      const bool isAlike =
          (isAmong(whole_, file.path) ? readFile(backup) == file.after : holds(afterOf(file))) ||
          calmly([&] { return sameContents(loadCopy(file.path), loadCopy(backup)); },
                 [](bool alike) { return !alike; });
      if (!isAlike)
        throw Refusal(concat(changes_.front().what, ": stored in ", file.path,
                             " but not in its backup ", backup, "; run 'camcfg verify --resync'"));
    }
  }

  std::string undone() const {
    for (const FileChange& file : files_) {
      const Copy main = loadCalmly(file.path);
      if (!main.loads()) continue;
      if (const Change* change = firstMissing(file, *main.document))
        return undone(*change, *main.document);
    }
    return undone(changes_.front());
  }

  static std::string undone(const Change& change) {
    return concat(change.what, ": another program's save undid it ", kAttempts, " times");
  }

  static std::string undone(const Change& change, tinyxml2::XMLDocument& main) {
    if (!change.standing) return undone(change);
    const std::optional<std::string> value = change.standing(main);
    return concat(undone(change), "; ", value ? quoted(*value) : "nothing", " is set now");
  }

  const std::vector<Change>& changes_;
  const HeldSignals signals_;
  std::vector<FileChange> files_;
  std::vector<std::string>
      whole_;  // main copies that were read after the save, and are as they should
  bool isOpen_ = false;
  bool isBegun_ = false;  // files have been written
};

Turn::Files pathsOf(const std::vector<Change>& changes) {
  Turn::Files paths;
  for (const Change& change : changes)
    if (std::none_of(paths.begin(), paths.end(),
                     [&](const char* path) { return change.path == path; }))
      paths.push_back(change.path.c_str());
  return paths;
}

}  // namespace

Change changeTo(const Contents& file, const std::string& instead) {
  const auto make = [file] {
    saveContents({file});
    return true;
  };
  const auto arrived = [file](tinyxml2::XMLDocument& document) {
    return written(document) == written(*parsed(file.bytes));
  };
  return {file.path, file.path, make, arrived, {}, instead};
}

Reviewed::Reviewed(Review review) : review_(std::move(review)), outer_(currentReview) {
  currentReview = this;
}

Reviewed::~Reviewed() {
  currentReview = outer_;
}

void Reviewed::look(const std::vector<FileChange>& changes) const {
  if (outer_ != nullptr) outer_->look(changes);
  review_(changes);
}

void makeChanges(const std::vector<Change>& changes, bool rehearse) {
  if (changes.empty()) return;
  if (rehearse) {
    if (currentReview != nullptr) review(draftOf(changes));
    return;
  }
  const Turn turn(pathsOf(changes));
  // What a start salvages comes before the end of a trial.
  if (changes.front().instead.empty()) requireNoTrial();
  Undertaking(changes).carryOut();
}

}  // namespace camcfg::tool::device
