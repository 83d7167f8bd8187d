#ifndef CAMCFG_TOOL_UPGRADE_REPORT_H
#define CAMCFG_TOOL_UPGRADE_REPORT_H

#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool::upgrade {

/// Something that an upgrade does to a setting, or does not do.
struct Entry {  // NOLINT(bugprone-exception-escape): moving a Json throws none
  std::string what;
  std::string place;  ///< as in documents: "live.srt[1].port"
  Json base;          ///< in the old factory set; null where there is nothing
  Json factory;       ///< in the new one
  Json before;        ///< on the device
  Json after;
  std::string reason;
};

using Entries = std::vector<Entry>;

// What entries are about.
constexpr char kFactoryValue[] = "factory";  ///< not changed here: it is what the new set has
constexpr char kConflict[] = "conflict";     ///< changed here and by the new set, differently
constexpr char kLimit[] = "limit";           ///< the new set does not permit the value
constexpr char kDropped[] = "dropped";       ///< on the device before, not there any more
constexpr char kAdded[] = "added";           ///< from the new set
constexpr char kLeftOut[] = "left out";      ///< in the new set, not brought in
constexpr char kHeld[] = "held";             ///< as it was, since the new value would be an error
constexpr char kRule[] = "rule";             ///< renamed or mapped
constexpr char kUnmerged[] = "not merged";   ///< a section that cannot be read stays as it is

}  // namespace camcfg::tool::upgrade

#endif
