#ifndef CAMCFG_TOOL_PARAMETERS_SECTION_H
#define CAMCFG_TOOL_PARAMETERS_SECTION_H

#include <string>
#include <vector>

#include "device/section.h"
#include "parameters/parameter.h"

namespace camcfg::tool::parameters {

device::Section parametersSection();

/// The section as it will be with factory values. What has none stays as it is and is added to
/// `without` by its path.
/// @param before  the section as the device has it
/// @param wanted  the parameters that get their factory values; those inside others are passed over
Json resetParameters(const Json& before, const device::FactoryValues& factory,
                     const std::vector<Parameter>& wanted, std::vector<std::string>& without);

}  // namespace camcfg::tool::parameters

#endif
