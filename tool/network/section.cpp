#include <camcfg/network.h>

#include <cstdint>

#include "base/concat.h"
#include "base/outcome.h"
#include "network/contradictions.h"
#include "network/network.h"
#include "settings/value.h"

namespace camcfg::tool::network {
namespace {

using settings::Setting;
using tinyxml2::XMLElement;

constexpr char kName[] = "network";
constexpr char kHostname[] = "hostname";

std::string placeOf(const std::string& card) {
  return memberPlace(memberPlace(kName, kCards), card);
}

Json loadCard(XMLElement& card) {
  Json values = Json::object();
  for (const auto& [setting, element] : fieldsOf(card))
    values[setting.member] = settings::valueIn(setting, attributeOf(&element, "Cur"));
  return values;
}

}  // namespace

Json loadNetwork() {
  const Network network;
  Json cards = Json::object();
  for (XMLElement* card : network.cards())
    if (!cards.contains(card->Value())) cards[card->Value()] = loadCard(*card);
  return {{kHostname, attributeOf(&network.section(), "Hostname")}, {kCards, cards}};
}

namespace {

// The library writes the whole card: what it cannot take up from the file would not stay.
tagNETWORK_CFG_S recordOf(const Json& card, const settings::Node* node) {
  tagNETWORK_CFG_S record{};
  for (const Setting& setting : settings::cardSettings()) {
    const Json* value = card.find_path(setting.member);
    if (value == nullptr || settings::put(setting, settings::inFile(setting, *value), &record))
      continue;
    if (node != nullptr)
      node->refuse(
          concat("the library would change its ", setting.member, "; give a permitted one"));
  }
  return record;
}

void checkSettable(const settings::Node& node, const std::string& name, const Json& card) try {
  const Network network;
  for (const std::string& reason : spilledBy(network.requireReachable(name))) node.refuse(reason);
  recordOf(card, &node);
} catch (const Refusal& refusal) {
  node.refuse(refusal.what());
}

// As 'network set' and 'network hostname' take it.
Json readField(const Setting& setting, const settings::Node& node, const settings::Range& limits) {
  const bool isNumber = setting.kind == settings::Kind::Integer;
  const bool isOfKind = isNumber ? node.value().is_number_integer() : node.value().is_string();
  const settings::Objection objection =
      isOfKind ? settings::objectionTo(setting, settings::inFile(setting, node.value()), limits)
               : settings::Objection();
  if (node.isHeld() || !objection.canBeForced || objection.why.empty())
    return settings::readValue(setting, node, limits);
  if (!node.isForced()) node.refuse(objection.refusal(false));
  if (isNumber) return node.number({INT32_MIN, INT32_MAX});
  return node.text(setting.field.room - 1);
}

Json readCard(const settings::Node& node, const std::string& name, const Json& before) {
  Json after = before;
  if (!node.isObjectOf(before.names())) return after;
  const std::size_t faults = node.faults();
  const Network network;
  for (const auto& [setting, element] : fieldsOf(network.require(name))) {
    const char* member = setting.member;
    if (!node.value().contains(member) || node.member(member).isHeld()) continue;
    after[member] =
        readField(setting, node.member(member), settings::limitsIn(element, setting.limits));
  }
  if (after != before && node.faults() == faults) checkSettable(node, name, after);
  return after;
}

// Cards and members that are left out stay as they are.
Json readNetwork(const settings::Node& node, const Json& before, device::Plan& /*plan*/) {
  Json after = before;
  if (!node.isObjectOf({kHostname, kCards})) return after;
  if (node.value().contains(kHostname) && !node.member(kHostname).isHeld())
    after[kHostname] = readField(settings::hostnameSetting(), node.member(kHostname), {});
  if (!node.value().contains(kCards)) return after;
  const settings::Node cards = node.member(kCards);
  if (!cards.isObjectOf(before.at(kCards).names())) return after;
  for (const std::string& name : cards.value().names())
    if (before.at(kCards).contains(name))
      after[kCards][name] = readCard(cards.member(name), name, before.at(kCards).at(name));
  return after;
}

device::Change cardChange(const std::string& name, const Json& card) {
  const auto make = [name, record = recordOf(card, nullptr)] {
    CFG_NETWORK_SetAllParam(device::argument(name), record);
    return true;
  };
  const auto arrived = [name, card](tinyxml2::XMLDocument&) {
    return loadNetwork()[kCards][name] == card;
  };
  return {CFG_FILE_BUSINESS, placeOf(name), make, arrived};
}

std::vector<device::Change> networkChanges(const Json& before, const Json& after, bool /*force*/) {
  std::vector<device::Change> changes;
  if (after.at(kHostname) != before.at(kHostname))
    changes.push_back(hostnameChange(memberPlace(kName, kHostname), after.at(kHostname).text()));
  for (const auto& [name, card] : after.at(kCards).items())
    if (card != before.at(kCards).at(name)) changes.push_back(cardChange(name, card));
  return changes;
}

}  // namespace

// Nothing of a document is at hand in which faults could be located.
void requireSettable(const Json& before, const Json& after) {
  settings::Faults faults;
  for (const auto& [name, card] : after.at(kCards).items())
    if (card != before.at(kCards).at(name))
      checkSettable(settings::Node(card, placeOf(name), faults), name, card);
  if (!faults.empty()) throw Refusal(concat(faults.front().place, ": ", faults.front().reason));
}

Json resetNetwork(const Json& network, const device::FactoryValues& factory,
                  std::vector<std::string>& without) {
  const Network device;
  Json after = network;
  if (const auto hostname = factory.attributeOf(device.section(), "Hostname"))
    after[kHostname] = *hostname;
  for (XMLElement* card : device.cards())
    for (const auto& [setting, element] : fieldsOf(*card)) {
      tagNETWORK_CFG_S record{};
      const std::optional<std::string> value = factory.of(element);
      if (value && settings::put(setting, *value, &record))
        after[kCards][card->Value()][setting.member] = settings::valueIn(setting, *value);
      else
        without.push_back(concat("NetWork/", card->Value(), "/", element.Value()));
    }
  requireSettable(network, after);
  return after;
}

device::Section networkSection() {
  return {kName, loadNetwork, readNetwork, networkChanges, CFG_FILE_BUSINESS};
}

}  // namespace camcfg::tool::network
