#ifndef CAMCFG_TOOL_DEVICE_JOURNAL_H
#define CAMCFG_TOOL_DEVICE_JOURNAL_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace camcfg::tool::device {

// What the tool is about to change is in "/cfg1/.camcfg/journal" before the first file is
// touched, with what the files held until then. From the moment it is there, the change is in force:
// if the tool dies, the next run that changes anything, 'verify' or 'boot' brings it to its end.

/// What a change makes of one file.
struct FileChange {
  std::string path;    ///< main copy
  std::string before;  ///< all that it held
  std::string after;   ///< all that it is to hold
  /// What it was to hold by the journals in whose place this one came; filled in by openJournal().
  std::vector<std::string> earlier{};
};

/// For how long a change is in force unless somebody confirms it.
struct Trial {
  std::string boot;        ///< names the run of the kernel in which the change was made
  std::int64_t begin = 0;  ///< milliseconds on the clock that begins with it and that nobody sets
  std::int64_t end = 0;    ///< the same
};

/// A change of the device, of one file or several.
struct RecordedChange {
  int number = 0;         ///< from 1, in the order of the changes
  std::int64_t time = 0;  ///< seconds since 1970 by the device's clock
  std::string command;    ///< the command line that made it
  std::string caller;     ///< who called it
  std::vector<FileChange> files;
  std::optional<Trial> trial{};
  int takesBack = 0;  ///< the number of the change on trial that this one rolls back; 0: none
};

/// "import settings.json (2026-11-22T06:50:12Z)", on one line.
std::string describe(const RecordedChange& change);

/// Puts a change into the journal, in place of the one that is there, which must be an earlier
/// attempt of this change. When this returns it is on the medium, and in force.
/// @throws Refusal if it cannot be written; the journal is as it was
void openJournal(const std::vector<FileChange>& files);

/// From now on the change in the journal is to be taken back.
void turnJournal();

/// The change in the journal is complete: it goes into the history, one on trial only when the trial
/// ends, which it does with the change that rolls it back. One that was to be taken back leaves no
/// trace.
void closeJournal();

/// The change that an interrupted run has left, for those who only report it; none if there is none,
/// or none that will be carried out.
std::optional<RecordedChange> waitingChange();

/// Whether a run has left anything that finishInterrupted() will look at, even if it is only put
/// aside. What that touches may be any main copy.
bool hasLeftJournal();

/// Brings what an interrupted run has left to its end: wholly new if the change was in force, wholly
/// old if not. A journal that is damaged, of a later version, or of other files than those here is
/// put aside.
/// @return what was done, a line each; none if there was nothing to do
std::vector<std::string> finishInterrupted();

}  // namespace camcfg::tool::device

#endif
