#include "network/change.h"

#include <camcfg/store.h>

#include "base/decimal.h"
#include "base/refusal.h"
#include "device/change.h"
#include "device/factory_values.h"
#include "network/check.h"
#include "network/field.h"
#include "network/network.h"
#include "settings/nearest.h"

namespace camcfg::tool::network {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr std::size_t kAttributeFrame = 16;  // ` Cur=""` and then some
constexpr std::size_t kLongestText = CFG_NETWORK_TEXT_SIZE - 1;
constexpr std::size_t kCardGrowth = 16 * (kAttributeFrame + kLongestText * 6);

[[noreturn]] void refuse(const std::string& path, const std::string& why) {
  throw Refusal(path + ": " + why);
}

std::string pathOf(const XMLElement& card, const NetworkField& field) {
  return std::string(card.Value()) + "/" + field.name;
}

XMLElement& requireElement(XMLElement& card, const NetworkField& field) {
  XMLElement* element = childOf(card, field.name);
  if (element == nullptr) refuse(pathOf(card, field), "the card has no such element");
  const XMLElement* found = CFG_GetElementByName(&card, field.name);
  if (found == element) return *element;
  refuse(pathOf(card, field), std::string("the library would set ") + found->Value() +
                                  ", which begins with this name and comes before it");
}

bool isLookedUpAs(const NetworkField& field, const XMLElement& element) {
  return std::string(element.Value()).rfind(field.name, 0) == 0;
}

void requireMtu(const XMLElement& element, const std::string& text, bool force) {
  const std::optional<long long> number = decimal(text);
  if (!number) throw Refusal("'" + text + "' is no decimal integer");
  const auto [min, max] = mtuLimits(element);
  if (!force && (*number < min || *number > max))
    throw Refusal(settings::outside(text, *number, min, max) + "; '--force' sets it all the same");
}

void requireUsable(const NetworkField& field, const std::string& text, bool force) {
  const std::string fault = field.whyNotUsable(text);
  if (!force && !fault.empty()) throw Refusal(fault + "; '--force' sets it all the same");
}

// Puts a text into the record, after all checks that are not forced away.
void requirePut(tagNETWORK_CFG_S& record, const NetworkField& field, const XMLElement& element,
                const std::string& text, bool force) {
  const std::string value = field.words.empty() ? text : requireWord(field, text);
  if (field.isNumber()) requireMtu(element, text, force);
  if (field.whyNotUsable != nullptr && text.size() > kLongestText)
    throw Refusal("'" + text + "' has " + std::to_string(text.size()) + " bytes, the limit is " +
                  std::to_string(kLongestText));
  if (field.whyNotUsable != nullptr) requireUsable(field, text, force);
  if (!field.put(record, value)) throw Refusal(text + " does not fit into 32 bits");
}

// A card of a document; null if it has none.
XMLElement* cardIn(XMLDocument& document, const std::string& card) {
  XMLElement* section = networkOf(document);
  return section == nullptr ? nullptr : childOf(*section, card);
}

std::string textOf(const XMLElement* element) {
  tinyxml2::XMLPrinter printer;
  if (element != nullptr) element->Accept(&printer);
  return printer.CStr();
}

// The library writes elements by the beginning of their names.
void requireOnlyFields(XMLElement& card) {
  for (const XMLElement* element = card.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    for (const NetworkField& field : networkFields())
      if (std::string(element->Value()) != field.name && isLookedUpAs(field, *element))
        refuse(card.Value(), std::string("the library would write ") + field.name + " into " +
                                 element->Value() + ", too, which begins with this name");
}

// The record with a field's factory value; with its current one where there is no usable other.
void putFactory(tagNETWORK_CFG_S& record, const NetworkField& field, const XMLElement& card,
                const XMLElement& element, const device::FactoryValues& values,
                std::vector<std::string>& without) {
  const std::optional<std::string> factory = values.of(element);
  if (factory && field.put(record, *factory)) return;
  const char* current = element.Attribute("Cur");
  if (!field.put(record, current == nullptr ? "" : current))
    refuse(pathOf(card, field),
           "it has no usable factory value, and the library would not leave its current one as it "
           "is; set it to a permitted value first");
  without.emplace_back(field.name);
}

// Puts the record's values into a document as the library is going to.
Json apply(XMLElement& card, const tagNETWORK_CFG_S& record) {
  Json changed = Json::array();
  for (const NetworkField& field : networkFields()) {
    const std::string value = field.take(record);
    for (XMLElement* element = childOf(card, field.name); element != nullptr;
         element = element->NextSiblingElement(field.name)) {
      const Json before = attributeOf(element, "Cur");
      if (before != value)
        changed.push_back({{"field", field.name}, {"before", before}, {"value", value}});
      element->SetAttribute("Cur", value.c_str());
    }
  }
  return changed;
}

std::vector<cli::Block> layoutOf(const Json& changed) {
  if (changed.empty()) return {cli::Line{"{card}: it has its factory values already"}};
  return {cli::Table{"changed", {{"FIELD", "{field}"}, {"VALUE", "{before}", "{value}"}}}};
}

}  // namespace

cli::Answer setNetworkField(const std::string& card, const std::string& name,
                            const std::string& value, bool force) {
  const Network network;
  XMLElement& element = network.requireReachable(card);
  const NetworkField& field = requireNetworkField(name);
  const XMLElement& parameter = requireElement(element, field);
  const std::string path = pathOf(element, field);
  tagNETWORK_CFG_S record{};
  try {
    requirePut(record, field, parameter, value, force);
  } catch (const Refusal& refusal) {
    refuse(path, refusal.what());
  }
  const std::string text = field.take(record);
  device::makeChange(
      {CFG_FILE_BUSINESS, path, kAttributeFrame + text.size() * 6,
       [&] {
         cfgNetworkSetSingleParam(device::argument(field.name), device::argument(card), record);
         return true;
       },
       [&](XMLDocument& document) {
         XMLElement* changed = cardIn(document, card);
         return changed != nullptr && attributeOf(childOf(*changed, field.name), "Cur") == text;
       }});

  cli::Answer answer;
  answer.value = {{"card", card}, {"field", field.name}};
  answer.value["before"] = attributeOf(&parameter, "Cur");
  answer.value["value"] = text;
  answer.layout = {cli::Line{"{card}/{field}: {before} -> {value}"}};
  return answer;
}

cli::Answer resetCard(const std::string& name) {
  const Network network;
  XMLElement& card = network.requireReachable(name);
  requireOnlyFields(card);
  tagNETWORK_CFG_S record{};
  std::vector<std::string> without;
  const device::FactoryValues values;
  for (const NetworkField& field : networkFields())
    if (const XMLElement* element = childOf(card, field.name))
      putFactory(record, field, card, *element, values, without);

  cli::Answer answer;
  answer.value = {{"card", name}, {"changed", apply(card, record)}};
  answer.value["withoutFactoryValue"] = without;
  const std::string expected = textOf(&card);
  device::makeChange(
      {CFG_FILE_BUSINESS, name, kCardGrowth,
       [&] {
         CFG_NETWORK_SetAllParam(device::argument(name), record);
         return true;
       },
       [&](XMLDocument& document) { return textOf(cardIn(document, name)) == expected; }});
  answer.layout = layoutOf(answer.value["changed"]);
  for (const std::string& field : without)
    answer.notes.push_back(std::string("note: ").append(name).append("/").append(field).append(
        " has no usable factory value and stays as it is"));
  return answer;
}

cli::Answer setHostname(const std::string& name, bool force) {
  const Network network;
  const std::string fault = whyNotAHostname(name);
  if (!force && !fault.empty()) throw Refusal(fault + "; '--force' sets it all the same");
  device::makeChange({CFG_FILE_BUSINESS, "hostname", kAttributeFrame + name.size() * 6,
                      [&] {
                        CFG_NETWORK_SetHostname(device::argument(name));
                        return true;
                      },
                      [&](XMLDocument& document) {
                        return attributeOf(networkOf(document), "Hostname") == name;
                      }});

  cli::Answer answer;
  answer.value = {{"before", attributeOf(&network.section(), "Hostname")}, {"hostname", name}};
  answer.layout = {cli::Line{"hostname: {before} -> {hostname}"}};
  return answer;
}

}  // namespace camcfg::tool::network
