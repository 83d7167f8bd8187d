#ifndef CAMCFG_TOOL_UPGRADE_SECTIONS_H
#define CAMCFG_TOOL_UPGRADE_SECTIONS_H

#include <optional>
#include <string>

#include "upgrade/merge.h"

namespace camcfg::tool::upgrade {

/// What a file is on the three sides.
struct Sides {
  std::optional<std::string> base;
  std::string factory;
  std::string user;
};

/// Merges the sections of a file that the library reads as records: the presets, or the media
/// sections. What the library reads of each side is merged, and the library writes what comes of it
/// into the file of the new set. A section that cannot be read on the device stays as it is.
/// @param path  main copy
/// @return what the main copy is to hold
/// @throws Refusal  the library does not write it
std::string mergeSections(const std::string& path, const Sides& sides, Merge& merge);

}  // namespace camcfg::tool::upgrade

#endif
