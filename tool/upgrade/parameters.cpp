#include "upgrade/parameters.h"

#include <map>
#include <optional>

#include "base/concat.h"
#include "base/elements.h"
#include "base/plain_text.h"
#include "settings/network.h"
#include "settings/value.h"
#include "upgrade/limits.h"
#include "upgrade/values.h"

namespace camcfg::tool::upgrade {
namespace {

using tinyxml2::XMLAttribute;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr char kNetwork[] = "NetWork";
constexpr char kCards[] = "network.cards";

// An attribute that is a value. The element is null where a document has no such value.
struct Leaf {
  const XMLElement* element = nullptr;
  std::string attribute;

  Json value() const {
    if (element == nullptr) return nullptr;
    const char* text = element->Attribute(attribute.c_str());
    if (text == nullptr) return nullptr;
    const std::optional<long long> number = decimal(text);
    // Only what reads as it was written: "007" and numbers too long stay texts.
    return number && std::to_string(*number) == text ? Json(*number) : Json(text);
  }
};

std::string plainTextOf(const Json& value) {
  return value.is_string() ? value.text() : value.dump();
}

// The values of a document by their places, in its order.
class Leaves {
 public:
  void add(const std::string& place, const XMLElement& element, const XMLAttribute& attribute) {
    std::string own = place;
    for (int nth = 2; byPlace_.count(own) != 0; ++nth) own = concat(place, "#", nth);
    byPlace_[own] = {&element, attribute.Name()};
    places_.push_back(own);
  }
  const std::vector<std::string>& places() const { return places_; }
  Leaf at(const std::string& place) const {
    const auto found = byPlace_.find(place);
    return found == byPlace_.end() ? Leaf() : found->second;
  }

 private:
  std::vector<std::string> places_;
  std::map<std::string, Leaf> byPlace_;
};

// @param path  of the element in its section: "AudCodec/Profile"; empty: the section itself
void collect(const XMLElement& element, const std::string& section, const std::string& path,
             Leaves& leaves) {
  forEachValue(element, [&](const XMLAttribute& each) {
    leaves.add(memberPlace(section, pathOf(path, each)), element, each);
  });
  for (const XMLElement* child : childrenOf(element))
    collect(*child, section, pathOf(path, child->Name()), leaves);
}

Leaves leavesOf(const XMLDocument& document) {
  Leaves leaves;
  for (const XMLElement* section : childrenOf(document))
    if (section->Name() != std::string_view(kNetwork))
      collect(*section, memberPlace("parameters", section->Name()), "", leaves);
    else
      forEachValue(*section, [&](const XMLAttribute& each) {
        const bool isName = each.Name() == std::string_view("Hostname");
        leaves.add(memberPlace("network", isName ? "hostname" : each.Name()), *section, each);
      });
  return leaves;
}

const XMLElement* cardIn(const XMLDocument* document, const std::string& name) {
  const XMLElement* network = document == nullptr ? nullptr : document->FirstChildElement(kNetwork);
  return network == nullptr ? nullptr : network->FirstChildElement(name.c_str());
}

// The fields of a card, by their names; none if there is no card.
Leaves fieldsOf(const XMLElement* card) {
  Leaves leaves;
  if (card == nullptr) return leaves;
  forEachValue(*card, [&](const XMLAttribute& each) { leaves.add(each.Name(), *card, each); });
  for (const XMLElement* field : childrenOf(*card)) {
    const settings::Setting* setting = settings::cardSettingOf(field->Name());
    const std::string name = setting == nullptr ? field->Name() : setting->member;
    forEachValue(*field,
                 [&](const XMLAttribute& each) { leaves.add(pathOf(name, each), *field, each); });
  }
  return leaves;
}

Json valuesOf(const XMLElement* card) {
  if (card == nullptr) return nullptr;
  const Leaves leaves = fieldsOf(card);
  Json values = Json::object();
  for (const std::string& name : leaves.places()) values[name] = leaves.at(name).value();
  return values;
}

// Puts a value into the new set's document, or the one nearest to it that the new set permits.
void put(const std::string& place, const Leaf& leaf, const Leaf& user, const Json& value,
         Merge& merge) {
  const Json factory = leaf.value();
  if (value.is_null() || value == factory) return;
  const Permitted permitted =
      leaf.attribute == "Cur" && value == user.value()
          ? permittedFor(*leaf.element, user.element, plainTextOf(value), plainTextOf(factory))
          : Permitted{plainTextOf(value), ""};
  // The document is the one that the caller handed over to be changed.
  const_cast<XMLElement*>(leaf.element)
      ->SetAttribute(leaf.attribute.c_str(), permitted.value.c_str());
  if (!permitted.reason.empty())
    merge.limit(place, factory, user.value(), leaf.value(), permitted.reason);
}

// What is there is up to the new set: neither a parameter nor a field is the user's to add or delete.
// @param placeOf  names the place of a value in the report
template <typename PlaceOf>
void mergeLeaves(const Leaves& old, const Leaves& offered, const Leaves& present,
                 const PlaceOf& placeOf, Merge& merge) {
  for (const std::string& name : offered.places()) {
    const std::string place = placeOf(name);
    const Leaf leaf = offered.at(name);
    const Leaf mine = present.at(name);
    const Json value = mine.value().is_null()
                           ? merge.value(place, {}, leaf.value(), {})
                           : merge.value(place, old.at(name).value(), leaf.value(), mine.value());
    put(place, leaf, mine, value, merge);
  }
  for (const std::string& name : present.places())
    if (offered.at(name).element == nullptr)
      merge.add({kDropped,
                 placeOf(name),
                 old.at(name).value(),
                 {},
                 present.at(name).value(),
                 {},
                 "the new factory set does not have it"});
}

void mergeValues(const XMLDocument* base, const XMLDocument& factory, const XMLDocument& user,
                 Merge& merge) {
  mergeLeaves(
      base == nullptr ? Leaves() : leavesOf(*base), leavesOf(factory), leavesOf(user),
      [](const std::string& place) { return place; }, merge);
}

void mergeCard(const std::string& name, const XMLDocument* base, XMLElement& network,
               const XMLDocument& user, Merge& merge) {
  const std::string place = memberPlace(kCards, name);
  XMLElement* card = network.FirstChildElement(name.c_str());
  const XMLElement* old = cardIn(base, name);
  const XMLElement* mine = cardIn(&user, name);
  if (card != nullptr && mine != nullptr)
    return mergeLeaves(
        fieldsOf(old), fieldsOf(card), fieldsOf(mine),
        [&](const std::string& field) { return memberPlace(place, field); }, merge);
  const Json values = merge.value(place, valuesOf(old), valuesOf(card), valuesOf(mine));
  if (values.is_null() && card != nullptr) network.DeleteChild(card);
  if (!values.is_null() && mine != nullptr)
    network.InsertEndChild(mine->DeepClone(network.GetDocument()));
}

// A card that the new set lacks may be the device's own.
void mergeCards(const XMLDocument* base, XMLDocument& factory, const XMLDocument& user,
                Merge& merge) {
  XMLElement* network = factory.FirstChildElement(kNetwork);
  const XMLElement* mine = user.FirstChildElement(kNetwork);
  if (network == nullptr || mine == nullptr) return;
  std::vector<std::string> names;
  for (const XMLElement* from : {static_cast<const XMLElement*>(network), mine})
    for (const XMLElement* card : childrenOf(*from))
      if (!isAmong(names, std::string_view(card->Name()))) names.emplace_back(card->Name());
  for (const std::string& name : names) mergeCard(name, base, *network, user, merge);
}

}  // namespace

void mergeParameters(const XMLDocument* base, XMLDocument& factory, const XMLDocument& user,
                     Merge& merge) {
  mergeValues(base, factory, user, merge);
  mergeCards(base, factory, user, merge);
}

}  // namespace camcfg::tool::upgrade
