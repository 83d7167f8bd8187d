#ifndef CAMCFG_TOOL_NETWORK_NETWORK_H
#define CAMCFG_TOOL_NETWORK_NETWORK_H

#include <tinyxml2.h>

#include <string>
#include <vector>

#include "base/json.h"
#include "device/explanation.h"
#include "device/files.h"

namespace camcfg::tool::network {

/// The network section of "/cfg0/business_param.xml", its cards looked up by their whole names.
class Network {
 public:
  /// @throws Refusal if the file is unusable or has no such section
  Network();

  tinyxml2::XMLElement& section() const { return *section_; }
  /// All cards, also those that the library does not list.
  std::vector<tinyxml2::XMLElement*> cards() const;

  /// The card of exactly this name.
  /// @throws Refusal if there is none
  tinyxml2::XMLElement& require(const std::string& name) const;
  /// The same, if the library's calls take this name for it, too.
  /// @throws Refusal if they would take another card
  tinyxml2::XMLElement& requireReachable(const std::string& name) const;
  /// What the library takes the name of a card for, which must be one.
  tinyxml2::XMLElement& lookup(const tinyxml2::XMLElement& card) const;

 private:
  device::Document document_;
  tinyxml2::XMLElement* section_;
};

/// The network section of a document; null if it has none.
tinyxml2::XMLElement* networkOf(tinyxml2::XMLDocument& document);

/// The child of exactly this name; null if there is none.
tinyxml2::XMLElement* childOf(tinyxml2::XMLElement& parent, const std::string& name);

/// An attribute's text, null where there is none or no element.
Json attributeOf(const tinyxml2::XMLElement* element, const char* attribute);

/// What setting a whole card would change beyond its settings, a reason each.
std::vector<std::string> spilledBy(const tinyxml2::XMLElement& card);

/// Lookups are tried in the main copy, or else in the next good one.
/// @param field  only this field; empty: all
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainCard(const std::string& card, const std::string& field);

}  // namespace camcfg::tool::network

#endif
