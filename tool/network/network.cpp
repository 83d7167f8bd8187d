#include "network/network.h"

#include <camcfg/store.h>

#include "base/refusal.h"
#include "base/spelling.h"

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
  std::string all;
  for (const std::string& known : names) all += (all.empty() ? " (there are " : ", ") + known;
  throw Refusal("there is no card '" + name + "'" + (all.empty() ? "" : all + ")") +
                didYouMean(name, names));
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
