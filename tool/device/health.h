#ifndef CAMCFG_TOOL_DEVICE_HEALTH_H
#define CAMCFG_TOOL_DEVICE_HEALTH_H

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "device/repair.h"

namespace camcfg::tool::device {

/// How well a device is off with its files, from best to worst.
enum class Health {
  Well,      ///< every copy is there, whole and in step
  Degraded,  ///< the main copies will do, or start-up brings them back; another copy is amiss
  Unusable,  ///< a main copy will not do and start-up does not bring it back
};

/// The word for it in answers.
const char* wordFor(Health health);

/// What start-up verification does to a copy.
enum class AtStart { NotLookedAt, Stays, FromBackup, FromDefault, WaitsForEver };

/// One copy of a file.
struct CopyHealth {
  Place place;
  State state;
  std::optional<std::uintmax_t> bytes;  ///< none if there is no file
  std::optional<std::time_t> changed;   ///< time of the last change
  AtStart atStart;
};

/// A file with its three copies.
struct FileHealth {
  std::string name;
  bool required;  ///< the library works on it, whether it is there or not
  bool checkedAtStart;
  Health health;
  std::vector<CopyHealth> copies;     ///< main, backup, default
  std::vector<std::string> findings;  ///< what is amiss and what becomes of it, a line each
};

/// Looks at every copy of every file, sorted by name, and changes nothing. A file that the library
/// works on is told even if it exists nowhere.
std::vector<FileHealth> checkHealth();

/// What follows behind the fault of a main copy that start-up verification does not bring back.
std::string outlookFor(const ConfigFile& file);

}  // namespace camcfg::tool::device

#endif
