#include "parameters/section.h"

#include <camcfg/types.h>

#include <cstdint>

#include "base/refusal.h"
#include "device/section.h"
#include "parameters/change.h"

namespace camcfg::tool::parameters {
namespace {

constexpr char kName[] = "parameters";
const settings::Range kInteger{INT32_MIN, INT32_MAX};

// None inside another one.
bool isSettable(const Parameter& parameter) {
  return parameter.text("Cur") != nullptr && !parameter.isInner();
}

// Those that the library sets.
Json loadParameters() {
  const Parameters parameters;
  Json sections = Json::object();
  for (const Parameter& parameter : parameters.all()) {
    if (!isSettable(parameter)) continue;
    Json& section = sections[parameter.section];
    if (!section.contains(parameter.name)) section[parameter.name] = parameter.value("Cur");
  }
  return sections;
}

std::string setText(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// The value if it is permitted.
Json readValue(const settings::Node& node, const Parameters& parameters,
               const Parameter& parameter) {
  const std::size_t faults = node.faults();
  Json value = parameter.form().isInteger() ? Json(node.number(kInteger)) : Json(node.text());
  if (node.faults() != faults) return value;
  const std::string fault = objectionTo(parameters, parameter, setText(value)).why;
  if (!fault.empty()) node.refuse(fault);
  return value;
}

// Sections and parameters that are left out stay as they are.
Json readParameters(const settings::Node& node, const Json& before, device::Plan& /*plan*/) {
  Json after = before;
  if (!node.isObjectOf(before.names())) return after;
  const Parameters parameters;
  for (const std::string& section : node.value().names()) {
    if (!before.contains(section)) continue;
    const settings::Node values = node.member(section);
    if (!values.isObjectOf(before.at(section).names())) continue;
    for (const std::string& name : values.value().names())
      if (before.at(section).contains(name) &&
          values.value().at(name) != before.at(section).at(name))
        after[section][name] =
            readValue(values.member(name), parameters, parameters.require(section, name));
  }
  return after;
}

std::vector<device::Step> parameterSteps(const Json& before, const Json& after) {
  const Parameters parameters;
  std::vector<ParameterValue> changed;
  for (const auto& [section, values] : after.items())
    for (const auto& [name, value] : values.items())
      if (value != before.at(section).at(name))
        changed.push_back({parameters.require(section, name), setText(value)});
  if (changed.empty()) return {};
  return {device::stepOf(parametersChange(parameters, changed))};
}

}  // namespace

Json resetParameters(const Json& before, const device::FactoryValues& factory,
                     const std::vector<Parameter>& wanted, std::vector<std::string>& without) {
  Json after = before;
  for (const Parameter& parameter : wanted) {
    if (!isSettable(parameter)) continue;
    if (const std::optional<std::string> value = factory.of(*parameter.element))
      after[parameter.section][parameter.name] = parameter.shown(value->c_str());
    else
      without.push_back(parameter.path());
  }
  return after;
}

device::Section parametersSection() {
  const auto losses = [] { return std::vector<std::string>(); };
  return {kName, loadParameters, readParameters, parameterSteps, losses, CFG_FILE_BUSINESS};
}

}  // namespace camcfg::tool::parameters
