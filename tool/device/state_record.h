#ifndef CAMCFG_TOOL_DEVICE_STATE_RECORD_H
#define CAMCFG_TOOL_DEVICE_STATE_RECORD_H

#include <optional>
#include <string>
#include <vector>

#include "device/journal.h"
#include "device/state_folder.h"

namespace camcfg::tool::device {

// A change is kept as a small text file, in the journal as in the history. Its first line,
// "camcfg-change 1 BYTES SHA-256", is about the rest, a JSON text with number, time, command, caller
// and files; what the files held and are to hold are contents named by their hashes.

/// The most bytes of such a file.
inline constexpr std::size_t kMostRecordBytes = std::size_t{1} << 20;

/// A change with hashes in place of its contents.
RecordedChange withHashes(RecordedChange change);

/// A change with hashes in place of its contents, as the text of its file.
std::string recordText(const RecordedChange& change);

/// What is found in the place of a change.
struct Record {
  enum Kind {
    Missing,
    Incomplete,  ///< the beginning of one, or zeros instead of its end: it was cut off
    Useless,     ///< damaged, or by another version of the tool
    Whole,
  };
  Kind kind = Missing;
  std::string fault;      ///< why it is of no use: "is damaged: its checksum is wrong"
  RecordedChange change;  ///< with hashes for contents
};

/// Reads a file of this directory, without its contents.
Record readRecord(const StateFolder& folder, const std::string& name);

/// A change with the contents in place of their hashes; none if some are missing or damaged.
std::optional<RecordedChange> withContents(const StateFolder& state, RecordedChange change);

/// All contents of a file, or their hashes.
std::vector<std::string*> contentsIn(FileChange& file);

/// Whether a path is one that the library saves with its backup: a file ending with ".xml" directly
/// in the directory of the main copies.
bool isMainCopy(const std::string& path);

}  // namespace camcfg::tool::device

#endif
