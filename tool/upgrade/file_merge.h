#ifndef CAMCFG_TOOL_UPGRADE_FILE_MERGE_H
#define CAMCFG_TOOL_UPGRADE_FILE_MERGE_H

#include <string>
#include <vector>

#include "upgrade/report.h"
#include "upgrade/rules.h"
#include "upgrade/sections.h"

namespace camcfg::tool::upgrade {

/// What becomes of a main copy.
struct MergedFile {
  std::string path;
  std::string before;
  std::string after;
  Entries entries;
  std::vector<std::string> findings;  ///< what lint finds that it found on neither side
};

/// Merges a file. The old set and the device are brought to the names of the new set by rules first.
/// What of the new set would make an error that neither the new set nor the device has, is not taken.
/// A file of which the new set has nothing new stays as it is, byte for byte.
/// @param prefersFactory  in conflicts
/// @throws Refusal  see mergeSections
MergedFile mergeFile(const std::string& path, const Sides& sides, const std::vector<Rule>& rules,
                     bool prefersFactory);

}  // namespace camcfg::tool::upgrade

#endif
