#ifndef CAMCFG_TOOL_DEVICE_ADVICE_H
#define CAMCFG_TOOL_DEVICE_ADVICE_H

#include <optional>
#include <string>
#include <vector>

#include "device/files.h"

namespace camcfg::tool::device {

/// What becomes of a copy that is not as it should be, and what somebody can do about it.
struct Advice {
  std::string problem;    ///< of the copy at which path
  std::string path{};     ///< that copy
  std::string outlook{};  ///< the rest of the sentence; empty if nothing brings it back
  std::optional<std::string>
      command{};                    ///< what makes it good, "verify" if that is what a start does
  std::vector<std::string> move{};  ///< what has to be moved away before that
};

/// On a main copy or a backup that is not good.
/// @param set         all files, of which the file is one
/// @param isSalvaged  whether `boot` salvages the file
Advice adviceOn(const FileSet& set, const ConfigFile& file, Place place, bool isSalvaged = false);

/// On a factory copy that no start can restore from; none if a start can, or the file needs none.
/// @param isExpected  whether the file should have a factory copy
std::optional<Advice> adviceOnFactory(const FileSet& set, const ConfigFile& file, bool isExpected);

/// The other copy that is the same file as a copy that can be read; none if it is a file of its own.
std::optional<Place> sameFileAs(const ConfigFile& file, Place place);

/// On two copies that are one file.
Advice adviceOnLink(const FileSet& set, const ConfigFile& file, Place place, Place other);

}  // namespace camcfg::tool::device

#endif
