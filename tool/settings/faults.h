#ifndef CAMCFG_TOOL_SETTINGS_FAULTS_H
#define CAMCFG_TOOL_SETTINGS_FAULTS_H

#include <string>
#include <vector>

namespace camcfg::tool::settings {

/// Something in a document that keeps it from being imported.
struct Fault {
  std::string place;   ///< "live.srt[1].port"; "document" for the whole
  std::string reason;  ///< "70000 is outside 1..65535"
};

using Faults = std::vector<Fault>;

}  // namespace camcfg::tool::settings

#endif
