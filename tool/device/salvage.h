#ifndef CAMCFG_TOOL_DEVICE_SALVAGE_H
#define CAMCFG_TOOL_DEVICE_SALVAGE_H

#include <optional>
#include <string>
#include <vector>

#include "base/host.h"
#include "base/outcome.h"

namespace camcfg::tool::device {

/// What can be read of the copies of a file.
struct SalvagedFile {
  std::string bytes;  ///< the whole file that it makes
  Json settings;      ///< "place", "source", "value" and, of a disputed one, the "backup"'s
  Json notTaken;      ///< whole elements of unknown place or with values that are not permitted:
                      ///< "copy", "line", "place", "reason"

  /// How many settings come from a source.
  std::size_t from(const char* source) const;
};

/// Makes a whole file of the settings in copies, of which each may be damaged: those whose element is
/// whole, whose place is known by the factory copy, and whose value is permitted; first by the main
/// copy, then by the backup, else by the factory copy. No text is repaired.
/// @param main, backup  none: there is no such copy
/// @param factory       all of the factory copy
/// @return none if the factory copy is damaged
std::optional<SalvagedFile> salvaged(const std::optional<std::string>& main,
                                     const std::optional<std::string>& backup,
                                     const std::string& factory);

/// Salvages the files whose main copies do not load, or the copies that are given.
/// @param files  copies of files: those below the directories of the device, "/cfg0/mpp_cfg.xml", are
///               the device's; of others, one in a directory "cfg1" is a backup
/// @param apply  whether the device gets what is salvaged, by one change of all files; damaged copies
///               of the device are kept before that
/// @return "applied"; "files": "name", the copies' states, and how many settings come from each source;
///         "settings", "notTaken" and "kept"
/// @throws Refusal  a given file cannot be read or says not what it is; or see makeChanges
Outcome salvage(const std::vector<HostFile>& files, bool apply);

/// The names of the files that salvageBeforeStart would salvage.
std::vector<std::string> salvagedBeforeStart();

/// Salvages damaged files of which the backup is not good either: start-up verification would replace
/// them by factory copies, or leave them as they are. What fails is left to it. Damaged copies that
/// cannot be kept prevent nothing.
/// @param done  receives what was done, a line each
/// @return what could not be done, and why
std::vector<std::string> salvageBeforeStart(Json& done);

}  // namespace camcfg::tool::device

#endif
