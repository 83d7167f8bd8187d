#include "parameters/change.h"

#include <camcfg/params.h>
#include <camcfg/store.h>

#include <algorithm>

#include "base/decimal.h"
#include "base/refusal.h"

namespace camcfg::tool::parameters {
namespace {

constexpr std::size_t kAttributeFrame = 16;  // ` Cur=""` and then some

// An integer as the library writes it.
std::string written(const Parameter& parameter, const std::string& text) {
  return parameter.form().isInteger() ? std::to_string(*decimal(text)) : text;
}

device::Change requireChange(const Parameters& parameters, const Parameter& parameter,
                             const std::string& value, bool force) {
  const std::string fault = objectionTo(parameters, parameter, value).refusal(force);
  if (!fault.empty()) throw Refusal(parameter.path() + ": " + fault);
  const std::string section = parameter.section;
  const std::string name = parameter.name;
  const std::string text = written(parameter, value);
  const auto arrived = [=](tinyxml2::XMLDocument& document) {
    const tinyxml2::XMLElement* element = CFG_GetElementByName(
        CFG_GetBrotherElementByName(document.FirstChildElement(), section.c_str()), name.c_str());
    const char* current = element == nullptr ? nullptr : element->Attribute("Cur");
    return current != nullptr && current == text;
  };
  return {CFG_FILE_BUSINESS, parameter.path(), text.size() * 6 + kAttributeFrame, nullptr, arrived};
}

bool save(const Parameter& parameter, const std::string& text) {
  char* section = device::argument(parameter.section);
  char* name = device::argument(parameter.name);
  if (!parameter.form().isInteger())
    return CFG_COM_SetTxtParam(section, name, device::argument(text)) == 0;
  return CFG_COM_SetIntParam(section, name, decimal32(text).value_or(0)) == 0;
}

// The library's setters save each value by itself. Its documents, edited, are saved once.
bool saveAll(const std::vector<ParameterValue>& values) {
  const device::Document document(
      CFG_GetDocByFileName(device::argument(CFG_FILE_BUSINESS), BU_FALSE));
  if (document == nullptr) return false;
  for (const auto& [parameter, text] : values) {
    tinyxml2::XMLElement* section =
        CFG_GetBrotherElementByName(document->FirstChildElement(), parameter.section.c_str());
    tinyxml2::XMLElement* element =
        section == nullptr ? nullptr : section->FirstChildElement(parameter.name.c_str());
    if (element != nullptr) element->SetAttribute("Cur", text.c_str());
  }
  return CFG_SaveFile(document.get(), device::argument(CFG_FILE_BUSINESS), BU_TRUE) == 0;
}

}  // namespace

settings::Objection objectionTo(const Parameters& parameters, const Parameter& parameter,
                                const std::string& value) {
  if (parameter.isInner()) return {"the library sets no parameter inside another one"};
  const std::optional<Parameter> found = parameters.lookup(parameter.section, parameter.name);
  if (found && found->element != parameter.element)
    return {"the library would set " + found->name +
            ", which begins with this name and comes before it in " + CFG_FILE_BUSINESS};
  return parameter.form().objectionTo(value);
}

device::Change parametersChange(const Parameters& parameters,
                                const std::vector<ParameterValue>& values) {
  device::Change whole{CFG_FILE_BUSINESS, "parameters", 0, nullptr, nullptr};
  std::vector<device::Change> changes;
  for (const auto& [parameter, text] : values) {
    changes.push_back(requireChange(parameters, parameter, text, false));
    whole.growth += changes.back().growth;
  }
  whole.make = [values] { return saveAll(values); };
  whole.arrived = [changes](tinyxml2::XMLDocument& document) {
    return std::all_of(changes.begin(), changes.end(),
                       [&](const device::Change& change) { return change.arrived(document); });
  };
  return whole;
}

Outcome setParameter(const std::string& section, const std::string& name, const std::string& value,
                     bool force) {
  const Parameters parameters;
  const Parameter parameter = parameters.require(section, name);
  device::Change change = requireChange(parameters, parameter, value, force);
  change.make = [&] { return save(parameter, value); };
  device::makeChange(change);

  Outcome outcome;
  outcome.value = {{"section", section}, {"name", name}, {"type", parameter.type()}};
  outcome.value["before"] = parameter.value("Cur");
  outcome.value["value"] = parameter.shown(value.c_str());
  return outcome;
}

}  // namespace camcfg::tool::parameters
