#ifndef CAMCFG_TOOL_EXCHANGE_FACTORY_H
#define CAMCFG_TOOL_EXCHANGE_FACTORY_H

#include <string>
#include <vector>

#include "device/factory_values.h"
#include "device/parameter.h"
#include "frame/answer.h"

namespace camcfg::tool {

// Sections as they will be with factory values. What has none stays as it is and is added to
// `without` by its path.

/// @param before  the section "parameters" as the device has it
/// @param wanted  the parameters that get their factory values; those inside others are passed over
Json resetParameters(const Json& before, const FactoryValues& factory,
                     const std::vector<Parameter>& wanted, std::vector<std::string>& without);

/// All cards, and the host name.
/// @param network  the section "network" as the device has it
/// @throws Refusal  the library's lookup would hit another card, or more than the card
Json resetNetwork(const Json& network, const FactoryValues& factory,
                  std::vector<std::string>& without);

}  // namespace camcfg::tool

#endif
