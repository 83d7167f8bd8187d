#include "network/network.h"

#include <camcfg/store.h>

#include "base/plain_text.h"
#include "base/refusal.h"
#include "base/spelling.h"
#include "settings/network.h"

namespace camcfg::tool::network {

using tinyxml2::XMLElement;

XMLElement* networkOf(tinyxml2::XMLDocument& document) {
  return CFG_GetBrotherElementByName(document.FirstChildElement(), "NetWork");
}

XMLElement* childOf(XMLElement& parent, const std::string& name) {
  return parent.FirstChildElement(name.c_str());
}

Json attributeOf(const XMLElement* element, const char* attribute) {
  const char* text = element == nullptr ? nullptr : element->Attribute(attribute);
  return text == nullptr ? Json() : Json(text);
}

std::vector<std::string> spilledBy(const XMLElement& card) {
  std::vector<std::string> reasons;
  for (const XMLElement* element = card.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    if (const auto* setting = settings::cardSettingWrittenInto(element->Value()))
      reasons.push_back(std::string("the library would write ") + settings::elementOf(*setting) +
                        " into " + element->Value() + ", too, which begins with this name");
  return reasons;
}

Network::Network()
    : document_(device::requireDocument(CFG_FILE_BUSINESS)), section_(networkOf(*document_)) {
  if (section_ == nullptr)
    throw Refusal(Status::Unusable, std::string(CFG_FILE_BUSINESS) + " has no section NetWork");
}

std::vector<XMLElement*> Network::cards() const {
  std::vector<XMLElement*> cards;
  for (XMLElement* card = section_->FirstChildElement(); card != nullptr;
       card = card->NextSiblingElement())
    cards.push_back(card);
  return cards;
}

XMLElement& Network::require(const std::string& name) const {
  std::vector<std::string> names;
  for (XMLElement* card : cards()) {
    if (card->Value() == name) return *card;
    names.emplace_back(card->Value());
  }
  const std::string all = names.empty() ? "" : " (there are " + joined(names) + ")";
  throw Refusal("there is no card '" + name + "'" + all + didYouMean(name, names));
}

XMLElement& Network::lookup(const XMLElement& card) const {
  return *CFG_GetElementByName(section_, card.Value());
}

XMLElement& Network::requireReachable(const std::string& name) const {
  XMLElement& card = require(name);
  const XMLElement& found = lookup(card);
  if (&found == &card) return card;
  throw Refusal(name + ": the library would take " + found.Value() +
                ", which begins with this name and comes before it in " + CFG_FILE_BUSINESS);
}

}  // namespace camcfg::tool::network
