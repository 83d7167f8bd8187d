#ifndef CAMCFG_TOOL_PARAMETERS_CHANGE_H
#define CAMCFG_TOOL_PARAMETERS_CHANGE_H

#include <string>
#include <vector>

#include "base/outcome.h"
#include "device/change.h"
#include "parameters/parameter.h"

namespace camcfg::tool::parameters {

/// What is wrong with setting a parameter: the library's lookup would hit another one, or the value
/// is not permitted.
settings::Objection objectionTo(const Parameters& parameters, const Parameter& parameter,
                                const std::string& value);

/// A parameter and the value that it is to have.
struct ParameterValue {
  Parameter parameter;
  std::string text;
};

/// The change that sets several parameters with one save; nothing is written yet.
/// @throws Refusal  over the first that cannot be set
device::Change parametersChange(const Parameters& parameters,
                                const std::vector<ParameterValue>& values);

/// Sets the parameter of exactly this name: an integer within its "Min" and "Max", or a text of its
/// "OptTxt". The library accepts any part of "OptTxt"; here it must be a whole one, unless `force`.
/// @return what was changed: section, name, type, before, value
/// @throws Refusal  the files are unusable or cannot be written, there is no such parameter, or as
///                  above
Outcome setParameter(const std::string& section, const std::string& name, const std::string& value,
                     bool force);

}  // namespace camcfg::tool::parameters

#endif
