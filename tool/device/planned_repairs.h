#ifndef CAMCFG_TOOL_DEVICE_PLANNED_REPAIRS_H
#define CAMCFG_TOOL_DEVICE_PLANNED_REPAIRS_H

#include <optional>
#include <string>
#include <vector>

#include "device/files.h"

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

/// Which copies of a file start-up verification would take.
struct Loading {
  bool main;
  bool backup;     ///< false also if the backup directory holds no file
  bool factory;    ///< false also if the factory set's directory holds no file
  bool anyBackup;  ///< see FileSet
};

/// What start-up verification replaces of a file that it looks at, in this order.
std::vector<Repair> startUpRepairs(const std::string& name, const Loading& loading);

/// What it is going to replace of all files, whether or not anything prevents that.
std::vector<Repair> startUpRepairs(const FileSet& set);

/// What `verify --resync` replaces next, so that a file has two good copies that are the same: a main
/// copy that start-up verification has passed by, or then the backup. None if nothing has to be
/// replaced, or no copy is good.
std::optional<Repair> nextResync(const std::string& name, const PairState& states, State factory);

}  // namespace camcfg::tool::device

#endif
