#ifndef CAMCFG_TOOL_NETWORK_SECTION_H
#define CAMCFG_TOOL_NETWORK_SECTION_H

#include <string>
#include <vector>

#include "device/section.h"

namespace camcfg::tool::network {

device::Section networkSection();

/// The section as it will be with factory values: all cards, and the host name. What has none stays
/// as it is and is added to `without` by its path.
/// @param network  the section as the device has it
/// @throws Refusal  the library's lookup would hit another card, or more than the card
Json resetNetwork(const Json& network, const device::FactoryValues& factory,
                  std::vector<std::string>& without);

}  // namespace camcfg::tool::network

#endif
