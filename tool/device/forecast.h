#ifndef CAMCFG_TOOL_DEVICE_FORECAST_H
#define CAMCFG_TOOL_DEVICE_FORECAST_H

#include <cstdint>
#include <string>
#include <vector>

#include "device/files.h"
#include "device/planned_repairs.h"
#include "device/room.h"
#include "device/shared_files.h"

namespace camcfg::tool::device {

/// What becomes of the copies of a device's files. Nothing is changed.
class Forecast {
 public:
  /// @param set    the files of the device; they outlive this object
  /// @param moved  paths that somebody moves away first: links, and what is in the way
  explicit Forecast(const FileSet& set, std::vector<std::string> moved = {});

  /// Why `verify` and `boot` would refuse to verify anything: a main copy that has to be restored
  /// cannot be written, or is the same file as a copy of another one. Empty if they would not.
  std::string whyNotVerified() const;

  /// The library's start-up verification is run.
  void start();
  /// `verify --resync` is run, or refused.
  void resync();
  /// `boot` is run, up to the end of its verification.
  /// @param salvaged  the names of files that it salvages
  void boot(const std::vector<std::string>& salvaged);

  State state(const ConfigFile& file, Place place) const;
  /// What was done to a copy: "stays", "from-main", "from-backup", "from-default", "salvaged", or
  /// "overwritten" through a link, with another file.
  const std::string& source(const ConfigFile& file, Place place) const;
  /// Why the last copy of a file that was to be replaced was not; empty if it was.
  const std::string& obstacle(const ConfigFile& file) const;

 private:
  /// Whose contents a copy has.
  struct Slot {
    std::string path;
    const Copy* copy;
    std::uintmax_t bytes;
    std::string source;
  };

  std::size_t numberOf(const ConfigFile& file) const;
  const Slot& slot(const ConfigFile& file, Place place) const;
  const Copy& copy(const ConfigFile& file, Place place) const { return *slot(file, place).copy; }
  PairState states(const ConfigFile& file) const;
  bool isGone(const std::string& path) const;
  bool hasBackups() const;
  std::vector<Repair> startUpRepairs(const ConfigFile& file, bool anyBackup) const;
  void resync(const ConfigFile& file);
  bool isMadeAgain(const std::string& path) const;
  std::string whyNotMade(const std::string& path) const;
  std::string obstacleTo(const Repair& repair, std::uintmax_t bytes) const;
  void store(const std::string& path, const Slot& contents, const std::string& source);
  void replaceByLibrary(const Repair& repair);
  bool replaceByTool(const Repair& repair, const std::string& source);
  bool replace(const Repair& repair, const std::string& source);

  const FileSet& set_;
  std::vector<std::string> moved_;
  SharedFiles shared_;
  std::vector<Slot> slots_;
  std::vector<std::string> obstacles_;
  std::vector<Writing> written_;
  bool makesDirectories_ = false;
};

}  // namespace camcfg::tool::device

#endif
