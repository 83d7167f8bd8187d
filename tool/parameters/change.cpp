#include <camcfg/params.h>
#include <camcfg/store.h>

#include <algorithm>
#include <cstdint>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/draft.h"
#include "device/turn.h"
#include "parameters/parameter.h"
#include "settings/network.h"

namespace camcfg::tool::parameters {
namespace {

using settings::Node;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr char kName[] = "parameters";
const settings::Range kInteger{INT32_MIN, INT32_MAX};

// A parameter and the value that it is to have.
struct ParameterValue {
  Parameter parameter;
  std::string text;
};

// What is wrong with setting a parameter: the library's lookup would hit another one, or the value is
// not permitted.
settings::Objection objectionTo(const Parameter& parameter, const std::string& value) {
  if (parameter.isInner())
    return {"the library sets no parameter inside another one" +
            std::string(parameter.section == settings::kNetworkSection
                            ? "; 'camcfg network set' sets those of a card"
                            : "")};
  if (parameter.answer != parameter.element)
    return {concat("the library would set ", parameter.answer->Value(),
                   ", which begins with this name and comes before it in ", CFG_FILE_BUSINESS)};
  return parameter.form().objectionTo(value);
}

// The library writes an integer in its own way.
std::string writtenFor(const Parameter& parameter, const std::string& text) {
  return parameter.form().isInteger() ? std::to_string(*decimal(text)) : text;
}

// The change that sets one parameter; the call that makes it is still missing.
device::Change requireChange(const ParameterValue& wanted, bool force) {
  const Parameter& parameter = wanted.parameter;
  const std::string fault = objectionTo(parameter, wanted.text).refusal(force);
  if (!fault.empty()) throw Refusal(concat(parameter.path(), ": ", fault));
  const std::string text = writtenFor(parameter, wanted.text);
  const auto standing = [section = parameter.section, name = parameter.name](
                            XMLDocument& document) -> std::optional<std::string> {
    const XMLElement* element = CFG_GetElementByName(
        CFG_GetBrotherElementByName(document.FirstChildElement(), section.c_str()), name.c_str());
    const char* current = element == nullptr ? nullptr : element->Attribute("Cur");
    if (current == nullptr) return std::nullopt;
    return current;
  };
  const auto arrived = [=](XMLDocument& document) { return standing(document) == text; };
  return {CFG_FILE_BUSINESS, parameter.path(), nullptr, arrived, standing};
}

bool save(const ParameterValue& wanted) {
  char* section = device::argument(wanted.parameter.section);
  char* name = device::argument(wanted.parameter.name);
  if (!wanted.parameter.form().isInteger())
    return CFG_COM_SetTxtParam(section, name, device::argument(wanted.text)) == 0;
  return CFG_COM_SetIntParam(section, name, decimal32(wanted.text).value_or(0)) == 0;
}

// The library's setters save each value by itself. Its documents, edited, are saved once.
bool saveAll(const std::vector<ParameterValue>& values) {
  const device::Document document(
      CFG_GetDocByFileName(device::argument(CFG_FILE_BUSINESS), BU_FALSE));
  if (document == nullptr) return false;
  for (const auto& [parameter, text] : values) {
    XMLElement* section =
        CFG_GetBrotherElementByName(document->FirstChildElement(), parameter.section.c_str());
    XMLElement* element =
        section == nullptr ? nullptr : section->FirstChildElement(parameter.name.c_str());
    if (element != nullptr) element->SetAttribute("Cur", text.c_str());
  }
  return CFG_SaveFile(document.get(), device::argument(CFG_FILE_BUSINESS), BU_TRUE) == 0;
}

// The change that sets several parameters with one save.
device::Change changeOf(const std::vector<ParameterValue>& values, bool force) {
  std::vector<device::Change> changes;
  changes.reserve(values.size());
  for (const ParameterValue& value : values) changes.push_back(requireChange(value, force));
  const auto arrived = [changes](XMLDocument& document) {
    return std::all_of(changes.begin(), changes.end(),
                       [&](const device::Change& change) { return change.arrived(document); });
  };
  return {CFG_FILE_BUSINESS, kName, [values] { return saveAll(values); }, arrived};
}

// What assignments stand for, or all that is wrong with them.
std::vector<ParameterValue> requireValues(const Parameters& parameters,
                                          const std::vector<Assignment>& assignments, bool force) {
  std::vector<ParameterValue> values;
  std::vector<std::string> faults;
  for (const auto& [place, name, text] : assignments) try {
      const Parameter parameter = parameters.requireAt(place, name);
      const bool isTwice = std::any_of(values.begin(), values.end(), [&](const auto& value) {
        return value.parameter.element == parameter.element;
      });
      if (isTwice) throw Refusal(parameter.path() + ": it is given twice");
      const std::string fault = objectionTo(parameter, text).refusal(force);
      if (!fault.empty()) throw Refusal(concat(parameter.path(), ": ", fault));
      values.push_back({parameter, writtenFor(parameter, text)});
    } catch (const Refusal& refusal) {
      faults.emplace_back(refusal.what());
    }
  if (!faults.empty()) throw Refusal(joined(faults, "; "));
  return values;
}

// @param values  one at least; the parameters are those of a document that is still there
device::Change requireChange(const std::vector<ParameterValue>& values, bool force) {
  if (values.size() > 1) return changeOf(values, force);
  device::Change change = requireChange(values.front(), force);
  change.make = [&values] { return save(values.front()); };
  return change;
}

Json loadParameters() {
  const Parameters parameters;
  Json sections = Json::object();
  for (const Parameter& parameter : parameters.all()) {
    if (!parameter.isSettable()) continue;
    Json& section = sections[parameter.section];
    if (!section.contains(parameter.name)) section[parameter.name] = parameter.value("Cur");
  }
  return sections;
}

std::string setText(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// The value if it is permitted.
Json readValue(const Node& node, const Parameter& parameter) {
  const std::size_t faults = node.faults();
  Json value = parameter.form().isInteger() ? Json(node.number(kInteger)) : Json(node.text());
  if (node.faults() != faults) return value;
  const std::string fault = objectionTo(parameter, setText(value)).refusal(node.isForced());
  if (!fault.empty()) node.refuse(fault);
  return value;
}

// Sections and parameters that are left out stay as they are.
Json readParameters(const Node& node, const Json& before, device::Plan& /*plan*/) {
  Json after = before;
  if (!node.isObjectOf(before.names())) return after;
  const Parameters parameters;
  for (const std::string& section : node.value().names()) {
    if (!before.contains(section)) continue;
    const Node values = node.member(section);
    if (!values.isObjectOf(before.at(section).names())) continue;
    for (const std::string& name : values.value().names())
      if (before.at(section).contains(name) && !values.member(name).isHeld())
        after[section][name] = readValue(values.member(name), parameters.require(section, name));
  }
  return after;
}

std::vector<device::Change> parameterChanges(const Json& before, const Json& after, bool force) {
  const Parameters parameters;
  std::vector<ParameterValue> changed;
  for (const auto& [section, values] : after.items())
    for (const auto& [name, value] : values.items())
      if (value != before.at(section).at(name))
        changed.push_back({parameters.require(section, name), setText(value)});
  if (changed.empty()) return {};
  return {changeOf(changed, force)};
}

}  // namespace

Outcome setParameters(const std::vector<Assignment>& assignments, bool force, bool rehearse) {
  const device::Turn turn(rehearse ? device::Turn::Files()
                                   : device::Turn::Files{CFG_FILE_BUSINESS});
  const device::Contents file = device::requireContents(CFG_FILE_BUSINESS);
  const Parameters parameters(file);
  const std::vector<ParameterValue> wanted = requireValues(parameters, assignments, force);
  Json changes = Json::array();
  Json unchanged = Json::array();
  std::vector<ParameterValue> changed;
  for (const ParameterValue& value : wanted) {
    const Parameter& parameter = value.parameter;
    Json record = {{"section", parameter.section},
                   {"name", parameter.name},
                   {"type", parameter.type()},
                   {"before", parameter.value("Cur")},
                   {"value", parameter.shown(value.text.c_str())}};
    const bool isChanged = parameter.text("Cur") != value.text;
    if (isChanged) changed.push_back(value);
    (isChanged ? changes : unchanged).push_back(std::move(record));
  }
  if (!changed.empty()) {
    device::Change change = requireChange(changed, force);
    change.read = file.bytes;
    device::makeChange(change, rehearse);
  }
  return {{{"changes", std::move(changes)}, {"unchanged", std::move(unchanged)}}, {}};
}

Json resetParameters(const Json& before, const device::FactoryValues& factory,
                     const std::vector<Parameter>& wanted, std::vector<std::string>& without) {
  Json after = before;
  for (const Parameter& parameter : wanted) {
    if (!parameter.isSettable()) continue;
    if (const std::optional<std::string> value = factory.of(*parameter.element))
      after[parameter.section][parameter.name] = parameter.shown(value->c_str());
    else
      without.push_back(parameter.path());
  }
  return after;
}

device::Section parametersSection() {
  return {kName, loadParameters, readParameters, parameterChanges, CFG_FILE_BUSINESS};
}

}  // namespace camcfg::tool::parameters
