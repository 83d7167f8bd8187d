#ifndef CAMCFG_TOOL_DEVICE_FORECAST_H
#define CAMCFG_TOOL_DEVICE_FORECAST_H

#include <optional>
#include <string>
#include <vector>

#include "device/files.h"
#include "device/planned_repairs.h"

namespace camcfg::tool::device {

/// What becomes of the copies of a file. Nothing is changed.
class Forecast {
 public:
  /// @param set, file  the files of the device, and one of them; they outlive this object
  /// @param moved      copies that somebody moves away first
  Forecast(const FileSet& set, const ConfigFile& file, std::vector<Place> moved = {});

  /// Start-up verification is run.
  void start();
  /// `verify --resync` is run.
  void resync();
  /// `boot` is run.
  /// @param isSalvaged  whether it salvages the file
  void boot(bool isSalvaged);

  State state(Place place) const;
  /// What was done to a copy: "stays", "from-main", "from-backup", "from-default" or "salvaged".
  const std::string& source(Place place) const { return sources_[indexOf(place)]; }
  /// Why the last copy that was to be replaced was not; empty if it was.
  const std::string& obstacle() const { return obstacle_; }

 private:
  static std::size_t indexOf(Place place) { return static_cast<std::size_t>(place); }

  const Copy& copy(Place place) const;
  PairState states() const { return compared(copy(Place::Main), copy(Place::Backup)); }
  bool hasBackups() const;
  bool isMoved(Place place) const;
  bool areOne(Place a, Place b) const;
  std::string obstacleTo(const Repair& repair) const;
  bool replace(const Repair& repair, const std::string& source);
  bool replace(const Repair& repair);

  const FileSet& set_;
  const ConfigFile& file_;
  std::vector<Place> moved_;
  std::array<std::optional<Place>, 3> holds_;  ///< whose contents a copy has; none: it is missing
  std::array<std::string, 3> sources_;
  std::string obstacle_;
  bool makesDirectories_ = false;
};

}  // namespace camcfg::tool::device

#endif
