#ifndef CAMCFG_TOOL_DEVICE_SALVAGE_TASK_H
#define CAMCFG_TOOL_DEVICE_SALVAGE_TASK_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/host.h"
#include "device/files.h"
#include "device/salvage.h"

namespace camcfg::tool::device {

/// The bytes of a copy; none if there is no such copy.
using Bytes = std::optional<std::string>;

/// The bytes of a copy of the device, read without waiting for anybody.
Bytes bytesOf(const std::string& path, const Copy& copy);

/// Whether there is a NUL in bytes: the library reads a file to its first one.
bool hasHole(const Bytes& bytes);

/// The copies of a file that are looked at.
struct SalvageTask {
  std::string path;                     ///< of the main copy
  std::array<Bytes, 2> copies{};        ///< main copy, backup
  std::array<std::string, 2> states{};  ///< what they are found to be; empty: not looked at

  void set(Place place, Bytes bytes, const std::string& state);
  /// None if the factory copy is missing or damaged.
  std::optional<SalvagedFile> salvaged() const;
};

/// The files of the device whose main copies are damaged and of which a copy is left. One that loads is
/// damaged if it ends early, or has a hole.
std::vector<SalvageTask> damagedFiles();

/// Copies that a caller has named, by the files that they are of.
/// @throws Refusal  one cannot be read, or says not what it is; two are the same copy of a file
std::vector<SalvageTask> copiesGiven(const std::vector<HostFile>& files);

}  // namespace camcfg::tool::device

#endif
