#ifndef CAMCFG_TOOL_DEVICE_REPAIR_H
#define CAMCFG_TOOL_DEVICE_REPAIR_H

#include <string>
#include <vector>

#include "device/file_set.h"
#include "device/room.h"

namespace camcfg::tool::device {

/// One copy of a file that is replaced by another one.
struct Repair {
  std::string name;
  Place to;
  Place from;

  std::string target() const { return pathOf(to, name); }
  std::string source() const { return pathOf(from, name); }
  /// Whether the library's copy takes paths as long as these; it would cut the target short.
  bool fitsTheCopy() const;
};

/// What start-up verification is going to replace.
std::vector<Repair> startUpRepairs(const FileSet& set);

/// What remains to be replaced so that each file has two good copies that are the same: backups
/// from their main copies, and main copies that start-up verification passes by from their backups.
std::vector<Repair> levelRepairs(const FileSet& set);

/// The room that a repair takes beyond what the copy that it replaces gives back.
Writing writingOf(const Repair& repair);

/// Why a repair that should have been done was not; empty if the copies are the same now.
std::string whyNotDone(const Repair& repair);

/// Replaces a copy through the library, with the main copy's lock held. The other copy of the file
/// is only read: whenever the work is cut short, one of the two is whole.
/// @return why it was not done; empty if it was
std::string carryOut(const Repair& repair);

}  // namespace camcfg::tool::device

#endif
