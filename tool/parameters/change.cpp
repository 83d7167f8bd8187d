#include "parameters/change.h"

#include <camcfg/params.h>
#include <camcfg/store.h>

#include <algorithm>
#include <cctype>

#include "base/decimal.h"
#include "base/refusal.h"
#include "settings/nearest.h"

namespace camcfg::tool::parameters {
namespace {

constexpr std::size_t kAttributeFrame = 16;  // ` Cur=""` and then some

[[noreturn]] void refuse(const Parameter& parameter, const std::string& why) {
  throw Refusal(parameter.path() + ": " + why);
}

std::string quoted(const std::string& text) {
  return "'" + text + "'";
}

void requireReachable(const Parameters& parameters, const Parameter& parameter) {
  if (parameter.name.find('/') != std::string::npos)
    refuse(parameter, "the library sets no parameter inside another one");
  const std::optional<Parameter> found = parameters.lookup(parameter.section, parameter.name);
  if (found && found->element == parameter.element) return;
  refuse(parameter, "the library would set " + found->name +
                        ", which begins with this name and comes before it in " +
                        CFG_FILE_BUSINESS);
}

long long requireLimit(const Parameter& parameter, const char* attribute) {
  int limit = 0;
  const char* text = parameter.text(attribute);
  if (text == nullptr)
    refuse(parameter, std::string("it has no ") + attribute + ", so no value is permitted");
  if (parameter.element->QueryIntAttribute(attribute, &limit) != tinyxml2::XML_SUCCESS)
    refuse(parameter, std::string("its ") + attribute + " " + quoted(text) + " is no integer");
  return limit;
}

// The library reports the step and does not enforce it, but a value between two is not meant.
int stepOf(const Parameter& parameter) {
  return parameter.element->IntAttribute("Step", 1);
}

int requireInRange(const Parameter& parameter, const std::string& text) {
  const long long min = requireLimit(parameter, "Min");
  const long long max = requireLimit(parameter, "Max");
  const std::optional<long long> number = decimal(text);
  if (!number) refuse(parameter, quoted(text) + " is no decimal integer");
  if (*number < min || *number > max)
    refuse(parameter, settings::outside(text, *number, min, max, stepOf(parameter)));
  return static_cast<int>(*number);
}

bool isWordCharacter(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || std::isalnum(byte) != 0;
}

// The texts of "OptTxt" are written together; whatever is neither letter nor digit parts them.
bool isWholeText(const std::string& options, const std::string& text) {
  for (std::size_t at = options.find(text); at != std::string::npos;
       at = options.find(text, at + 1)) {
    const std::size_t end = at + text.size();
    const bool opens = at == 0 || !isWordCharacter(options[at - 1]);
    const bool closes = end == options.size() || !isWordCharacter(options[end]);
    if (opens && closes) return true;
  }
  return false;
}

void requirePermitted(const Parameter& parameter, const std::string& text, bool force) {
  const char* found = parameter.text("OptTxt");
  if (found == nullptr)
    refuse(parameter, "it has neither Min, Max nor OptTxt, so the library permits no value");
  const std::string options = found;
  const std::string nearest = settings::nearestOf(text, settings::textsIn(options));
  if (options.find(text) == std::string::npos)
    refuse(parameter, quoted(text) + " is not among " + quoted(options) + nearest);
  if (!force && (text.empty() || !isWholeText(options, text)))
    refuse(parameter, quoted(text) + " is only a part of one of " + quoted(options) + nearest +
                          "; '--force' sets it all the same");
}

device::Change changeOf(const Parameter& parameter, const std::string& text) {
  const std::string section = parameter.section;
  const std::string name = parameter.name;
  const auto arrived = [section, name, text](tinyxml2::XMLDocument& document) {
    const tinyxml2::XMLElement* element = CFG_GetElementByName(
        CFG_GetBrotherElementByName(document.FirstChildElement(), section.c_str()), name.c_str());
    const char* current = element == nullptr ? nullptr : element->Attribute("Cur");
    return current != nullptr && current == text;
  };
  return {CFG_FILE_BUSINESS, parameter.path(), text.size() * 6 + kAttributeFrame, nullptr, arrived};
}

device::Change integerChange(const Parameter& parameter, const std::string& text) {
  const int value = requireInRange(parameter, text);
  device::Change change = changeOf(parameter, std::to_string(value));
  change.make = [=] {
    return CFG_COM_SetIntParam(device::argument(parameter.section),
                               device::argument(parameter.name), value) == 0;
  };
  return change;
}

device::Change textChange(const Parameter& parameter, const std::string& text, bool force) {
  requirePermitted(parameter, text, force);
  device::Change change = changeOf(parameter, text);
  change.make = [=] {
    return CFG_COM_SetTxtParam(device::argument(parameter.section),
                               device::argument(parameter.name), device::argument(text)) == 0;
  };
  return change;
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

device::Change parameterChange(const Parameters& parameters, const Parameter& parameter,
                               const std::string& value, bool force) {
  requireReachable(parameters, parameter);
  return parameter.isInteger() ? integerChange(parameter, value)
                               : textChange(parameter, value, force);
}

device::Change parametersChange(const Parameters& parameters,
                                const std::vector<ParameterValue>& values) {
  device::Change whole{CFG_FILE_BUSINESS, "parameters", 0, nullptr, nullptr};
  std::vector<device::Change> changes;
  for (const auto& [parameter, text] : values) {
    changes.push_back(parameterChange(parameters, parameter, text, false));
    whole.growth += changes.back().growth;
  }
  whole.make = [values] { return saveAll(values); };
  whole.arrived = [changes](tinyxml2::XMLDocument& document) {
    return std::all_of(changes.begin(), changes.end(),
                       [&](const device::Change& change) { return change.arrived(document); });
  };
  return whole;
}

cli::Answer setParameter(const std::string& section, const std::string& name,
                         const std::string& value, bool force) {
  const Parameters parameters;
  const Parameter parameter = parameters.require(section, name);
  const bool isInteger = parameter.isInteger();
  device::makeChange(parameterChange(parameters, parameter, value, force));

  cli::Answer answer;
  answer.value = {{"section", section}, {"name", name}, {"type", parameter.type()}};
  answer.value["before"] = parameter.value("Cur");
  answer.value["value"] = isInteger ? Json(*decimal(value)) : Json(value);
  answer.layout = {cli::Line{"{section}/{name}: {before} -> {value}"}};
  return answer;
}

}  // namespace camcfg::tool::parameters
