#ifndef CAMCFG_TOOL_NETWORK_CONTRADICTIONS_H
#define CAMCFG_TOOL_NETWORK_CONTRADICTIONS_H

#include <string>
#include <vector>

#include "base/json.h"
#include "settings/setting.h"

namespace camcfg::tool::network {

/// A setting that cannot be on one network with the others of its card.
struct Contradiction {
  const settings::Setting& setting;
  std::string why;
};

/// Those of a card with an address of its own: its address must be a host's, and its gateway another
/// host of the same subnet.
/// @param card  as documents have it
std::vector<Contradiction> contradictionsIn(const Json& card);

}  // namespace camcfg::tool::network

#endif
