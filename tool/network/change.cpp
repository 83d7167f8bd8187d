#include <camcfg/network.h>
#include <camcfg/store.h>

#include "base/concat.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "network/contradictions.h"
#include "network/network.h"
#include "settings/value.h"

namespace camcfg::tool::network {
namespace {

using settings::Setting;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
  throw Refusal(concat(path, ": ", why));
}

XMLElement& requireElement(XMLElement& card, const Setting& setting) {
  const char* name = settings::elementOf(setting);
  XMLElement* element = childOf(card, name);
  if (element == nullptr) refuse(pathOf(card, setting), "the card has no such element");
  const XMLElement* found = CFG_GetElementByName(&card, name);
  if (found == element) return *element;
  refuse(pathOf(card, setting), concat("the library would set ", found->Value(),
                                       ", which begins with this name and comes before it"));
}

// A record with this value, after all checks that are not forced away.
tagNETWORK_CFG_S requireRecord(const Setting& setting, const XMLElement& element,
                               const std::string& path, const std::string& text, bool force) {
  const settings::Range limits = settings::limitsIn(element, setting.limits);
  const std::string value = settings::spelt(setting, text);
  const std::string fault = settings::objectionTo(setting, value, limits).refusal(force);
  if (!fault.empty()) refuse(path, fault);
  tagNETWORK_CFG_S record{};
  if (!settings::put(setting, value, &record)) refuse(path, text + " does not fit into 32 bits");
  return record;
}

// A card of a document; null if it has none.
XMLElement* cardIn(XMLDocument& document, const std::string& card) {
  XMLElement* section = networkOf(document);
  return section == nullptr ? nullptr : childOf(*section, card);
}

// The record with a field's factory value; with its current one where there is no usable other.
void putFactory(tagNETWORK_CFG_S& record, const CardField& field,
                const device::FactoryValues& values, std::vector<std::string>& without) {
  const auto& [setting, element] = field;
  const std::optional<std::string> factory = values.of(element);
  if (factory && settings::put(setting, *factory, &record)) return;
  if (!settings::put(setting, textOf(element, "Cur"), &record))
    refuse(
        pathOf(*element.Parent(), setting),
        "it has no usable factory value, and the library would change its current value; set it to "
        "a permitted value first");
  without.emplace_back(settings::elementOf(setting));
}

// Puts the record's values into a document as the library is going to.
Json apply(XMLElement& card, const tagNETWORK_CFG_S& record) {
  Json changed = Json::array();
  for (const Setting& setting : settings::cardSettings()) {
    const char* name = settings::elementOf(setting);
    const std::string value = settings::take(setting, &record);
    for (XMLElement* element = childOf(card, name); element != nullptr;
         element = element->NextSiblingElement(name)) {
      const Json before = attributeOf(element, "Cur");
      if (before != value)
        changed.push_back({{"field", name}, {"before", before}, {"value", value}});
      element->SetAttribute("Cur", value.c_str());
    }
  }
  return changed;
}

}  // namespace

device::Change hostnameChange(const std::string& what, const std::string& name) {
  const auto make = [name] {
    CFG_NETWORK_SetHostname(device::argument(name));
    return true;
  };
  const auto arrived = [name](XMLDocument& document) {
    return attributeOf(networkOf(document), "Hostname") == name;
  };
  return {CFG_FILE_BUSINESS, what, make, arrived};
}

Outcome setNetworkField(const std::string& word, const std::string& name, const std::string& value,
                        const ChangeOptions& options) {
  const Network network;
  XMLElement& element = network.requireReachable(word);
  const std::string card = element.Value();
  const Setting& setting = settings::requireCardSetting(name);
  const std::string field = settings::elementOf(setting);
  const XMLElement& parameter = requireElement(element, setting);
  const std::string path = pathOf(element, setting);
  const tagNETWORK_CFG_S record = requireRecord(setting, parameter, path, value, options.force);
  const std::string text = settings::take(setting, &record);
  const auto make = [&] {
    cfgNetworkSetSingleParam(device::argument(field), device::argument(card), record);
    return true;
  };
  const auto arrived = [&](XMLDocument& document) {
    XMLElement* changed = cardIn(document, card);
    return changed != nullptr && attributeOf(childOf(*changed, field), "Cur") == text;
  };
  device::makeChange({CFG_FILE_BUSINESS, path, make, arrived}, options.rehearse);
  const Json before = attributeOf(&parameter, "Cur");
  return {{{"card", card}, {"field", field}, {"before", before}, {"value", text}}, {}};
}

Outcome resetCard(const std::string& word, const ChangeOptions& options) {
  const Network network;
  XMLElement& card = network.requireReachable(word);
  const std::string name = card.Value();
  const std::vector<std::string> spilled = spilledBy(card);
  if (!spilled.empty()) refuse(name, spilled.front());
  tagNETWORK_CFG_S record{};
  std::vector<std::string> without;
  const device::FactoryValues values;
  for (const CardField& field : fieldsOf(card)) putFactory(record, field, values, without);

  Outcome outcome;
  outcome.value = {
      {"card", name}, {"changed", apply(card, record)}, {"withoutFactoryValue", without}};
  const std::string expected = written(card);
  const auto make = [&] {
    CFG_NETWORK_SetAllParam(device::argument(name), record);
    return true;
  };
  const auto arrived = [&](XMLDocument& document) {
    const XMLElement* changed = cardIn(document, name);
    return changed != nullptr && written(*changed) == expected;
  };
  device::makeChange({CFG_FILE_BUSINESS, name, make, arrived}, options.rehearse);
  for (const std::string& field : without)
    outcome.notes.push_back(std::string(concat("note: ", name, "/"))
                                .append(field)
                                .append(" has no usable factory value and stays as it is"));
  return outcome;
}

Outcome setHostname(const std::string& name, const ChangeOptions& options) {
  const Network network;
  const std::string fault =
      settings::objectionTo(settings::hostnameSetting(), name).refusal(options.force);
  if (!fault.empty()) throw Refusal(fault);
  device::makeChange(hostnameChange("hostname", name), options.rehearse);
  const Json before = attributeOf(&network.section(), "Hostname");
  return {{{"before", before}, {"hostname", name}}, {}};
}

}  // namespace camcfg::tool::network
