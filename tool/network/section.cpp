#include "network/section.h"

#include <algorithm>
#include <cctype>

#include "base/decimal.h"
#include "base/refusal.h"
#include "device/factory_values.h"
#include "network/check.h"
#include "network/field.h"
#include "network/network.h"

namespace camcfg::tool::network {
namespace {

using tinyxml2::XMLElement;

constexpr char kName[] = "network";
constexpr char kHostname[] = "hostname";
constexpr char kCards[] = "cards";
constexpr std::size_t kLongestText = CFG_NETWORK_TEXT_SIZE - 1;

// "ipAddr" for "IpAddr", "mtu" for "MTU".
std::string memberOf(const NetworkField& field) {
  std::string name = field.name;
  for (std::size_t i = 0; i < name.size() && std::isupper(static_cast<unsigned char>(name[i])) != 0;
       ++i)
    name[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[i])));
  return name;
}

bool isSwitch(const NetworkField& field) {
  return field.words == std::vector<std::string>{"Off", "On"};
}

bool isIn(const std::vector<std::string>& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

// A text of the file; one that is no value of its field stands as it is.
Json valueOf(const NetworkField& field, const Json& text) {
  if (text.is_null()) return text;
  const std::string word = text.get<std::string>();
  if (isSwitch(field) && isIn(field.words, word)) return word == field.words.back();
  const auto number = field.isNumber() ? decimal(word) : std::nullopt;
  return number ? Json(*number) : text;
}

// What stands for a value in the file.
std::string fileText(const NetworkField& field, const Json& value) {
  if (value.is_null()) return "";
  if (isSwitch(field) && value.is_boolean()) return field.words[value.get<bool>() ? 1 : 0];
  return value.is_string() ? value.get<std::string>() : value.dump();
}

Json loadCard(XMLElement& card) {
  Json values = Json::object();
  for (const NetworkField& field : networkFields())
    if (const XMLElement* element = childOf(card, field.name))
      values[memberOf(field)] = valueOf(field, attributeOf(element, "Cur"));
  return values;
}

Json loadNetwork() {
  const Network network;
  Json cards = Json::object();
  for (XMLElement* card : network.cards())
    if (!cards.contains(card->Value())) cards[card->Value()] = loadCard(*card);
  return {{kHostname, attributeOf(&network.section(), "Hostname")}, {kCards, cards}};
}

void refuseUnless(const settings::Node& node, const std::string& fault) {
  if (!fault.empty()) node.refuse(fault);
}

Json readWord(const NetworkField& field, const settings::Node& node) {
  if (node.value().is_string() && isIn(field.words, node.value().get<std::string>()))
    return node.value();
  std::string list;
  for (const std::string& word : field.words) list += (list.empty() ? "" : ", ") + word;
  node.refuse("it must be one of " + list + node.nearestOf(field.words));
  return field.words.front();
}

Json readValue(const NetworkField& field, const settings::Node& node) {
  if (isSwitch(field)) return node.flag();
  if (field.isNumber()) return node.number({68, 9216});
  if (!field.words.empty()) return readWord(field, node);
  const std::string text = node.text(kLongestText);
  if (node.value().is_string()) refuseUnless(node, field.whyNotUsable(text));
  return text;
}

std::vector<std::string> namesOf(const Json& object) {
  std::vector<std::string> names;
  for (const auto& [name, ignored] : object.items()) names.push_back(name);
  return names;
}

// The library writes the whole card: what it cannot take up from the file would not stay.
tagNETWORK_CFG_S recordOf(const Json& card, const settings::Node* node) {
  tagNETWORK_CFG_S record{};
  for (const NetworkField& field : networkFields()) {
    const std::string name = memberOf(field);
    if (card.contains(name) && !field.put(record, fileText(field, card.at(name))) &&
        node != nullptr)
      node->refuse("the library would not leave its " + name + " as it is; give a permitted one");
  }
  return record;
}

void checkReachable(const settings::Node& node, const std::string& name) try {
  const Network network;
  const XMLElement& card = network.requireReachable(name);
  for (const XMLElement* element = card.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    for (const NetworkField& field : networkFields())
      if (std::string(element->Value()).find(field.name) == 0 &&
          std::string(element->Value()) != field.name)
        node.refuse(std::string("the library would write ") + field.name + " into " +
                    element->Value() + ", too, which begins with this name");
} catch (const Refusal& refusal) {
  node.refuse(refusal.what());
}

Json readCard(const settings::Node& node, const std::string& name, const Json& before) {
  Json after = before;
  if (!node.isObjectOf(namesOf(before))) return after;
  const std::size_t faults = node.faults();
  for (const NetworkField& field : networkFields()) {
    const std::string member = memberOf(field);
    if (before.contains(member) && node.value().contains(member) &&
        node.value().at(member) != before.at(member))
      after[member] = readValue(field, node.member(member));
  }
  if (after == before || node.faults() != faults) return after;
  checkReachable(node, name);
  recordOf(after, &node);
  return after;
}

// Cards and members that are left out stay as they are.
Json readNetwork(const settings::Node& node, const Json& before, device::Plan& /*plan*/) {
  Json after = before;
  if (!node.isObjectOf({kHostname, kCards})) return after;
  if (node.value().contains(kHostname) && node.value().at(kHostname) != before.at(kHostname)) {
    const settings::Node hostname = node.member(kHostname);
    after[kHostname] = hostname.text();
    if (hostname.value().is_string())
      refuseUnless(hostname, whyNotAHostname(hostname.value().get<std::string>()));
  }
  if (!node.value().contains(kCards)) return after;
  const settings::Node cards = node.member(kCards);
  if (!cards.isObjectOf(namesOf(before.at(kCards)))) return after;
  for (const std::string& name : namesOf(cards.value()))
    if (before.at(kCards).contains(name))
      after[kCards][name] = readCard(cards.member(name), name, before.at(kCards).at(name));
  return after;
}

device::Step cardStep(const std::string& name, const Json& card) {
  const tagNETWORK_CFG_S record = recordOf(card, nullptr);
  return device::stepOf(
      {CFG_FILE_BUSINESS, memberPlace(memberPlace(kName, kCards), name), device::roomFor(card),
       [=] {
         CFG_NETWORK_SetAllParam(device::argument(name), record);
         return true;
       },
       [=](tinyxml2::XMLDocument&) { return loadNetwork()[kCards][name] == card; }});
}

device::Step hostnameStep(const std::string& name) {
  return device::stepOf({CFG_FILE_BUSINESS, memberPlace(kName, kHostname), device::roomFor(name),
                         [=] {
                           CFG_NETWORK_SetHostname(device::argument(name));
                           return true;
                         },
                         [=](tinyxml2::XMLDocument&) { return loadNetwork()[kHostname] == name; }});
}

std::vector<device::Step> networkSteps(const Json& before, const Json& after) {
  std::vector<device::Step> steps;
  if (after.at(kHostname) != before.at(kHostname))
    steps.push_back(hostnameStep(after.at(kHostname).get<std::string>()));
  for (const auto& [name, card] : after.at(kCards).items())
    if (card != before.at(kCards).at(name)) steps.push_back(cardStep(name, card));
  return steps;
}

// Nothing of a document is at hand to which faults could be told.
void checkSettable(const Json& before, const Json& after) {
  settings::Faults faults;
  for (const auto& [name, card] : after.at(kCards).items()) {
    if (card == before.at(kCards).at(name)) continue;
    const settings::Node node(card, memberPlace(memberPlace(kName, kCards), name), faults);
    checkReachable(node, name);
    recordOf(card, &node);
  }
  if (!faults.empty()) throw Refusal(faults.front().place + ": " + faults.front().reason);
}

}  // namespace

Json resetNetwork(const Json& network, const device::FactoryValues& factory,
                  std::vector<std::string>& without) {
  const Network device;
  Json after = network;
  if (const auto hostname = factory.attributeOf(device.section(), "Hostname"))
    after[kHostname] = *hostname;
  for (XMLElement* card : device.cards())
    for (const NetworkField& field : networkFields()) {
      const XMLElement* element = childOf(*card, field.name);
      if (element == nullptr) continue;
      tagNETWORK_CFG_S record{};
      const std::optional<std::string> value = factory.of(*element);
      if (value && field.put(record, *value))
        after[kCards][card->Value()][memberOf(field)] = valueOf(field, *value);
      else
        without.push_back(std::string("NetWork/") + card->Value() + "/" + field.name);
    }
  checkSettable(network, after);
  return after;
}

device::Section networkSection() {
  return {kName,
          loadNetwork,
          readNetwork,
          networkSteps,
          [] { return std::vector<std::string>(); },
          CFG_FILE_BUSINESS};
}

}  // namespace camcfg::tool::network
