#ifndef CAMCFG_TOOL_NETWORK_NETWORK_H
#define CAMCFG_TOOL_NETWORK_NETWORK_H

#include <tinyxml2.h>

#include <string>
#include <vector>

#include "base/elements.h"
#include "base/outcome.h"
#include "device/explanation.h"
#include "device/section.h"
#include "settings/network.h"

namespace camcfg::tool::network {

/// Member of the section that holds the cards, in documents.
constexpr char kCards[] = "cards";

/// The network section of "/cfg0/business_param.xml", its cards looked up by their whole names.
class Network {
 public:
  /// @throws Refusal if the file is unusable or has no such section
  Network();

  tinyxml2::XMLElement& section() const { return *section_; }
  /// All cards, also those that the library does not list.
  std::vector<tinyxml2::XMLElement*> cards() const { return childrenOf(*section_); }

  /// The card of exactly this name; or else the only one of this name, or interface, in upper or lower
  /// case.
  /// @throws Refusal if there is none
  tinyxml2::XMLElement& require(const std::string& word) const;
  /// The same, if the library's calls take its name for it, too.
  /// @throws Refusal if they would take another card
  tinyxml2::XMLElement& requireReachable(const std::string& word) const;
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

/// "Lan0/IpAddr"
std::string pathOf(const tinyxml2::XMLNode& card, const settings::Setting& setting);

/// The system's name of the interface that a card drives, "eth0"; empty if nobody knows it.
std::string interfaceOf(tinyxml2::XMLElement& card);

/// "Lan0 (eth0)", or only the name.
std::string withInterface(tinyxml2::XMLElement& card);

/// A setting of a card, as the card has it.
struct CardField {
  const settings::Setting& setting;
  tinyxml2::XMLElement& element;
};

/// Those that a card has, each once.
std::vector<CardField> fieldsOf(tinyxml2::XMLElement& card);

/// What setting a whole card would change beyond its settings, a reason each.
std::vector<std::string> spilledBy(const tinyxml2::XMLElement& card);

/// Lookups are tried in the main copy, or else in the next good one.
/// @param field  only this field; empty: all
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainCard(const std::string& card, const std::string& field);

/// The change that sets the host name.
device::Change hostnameChange(const std::string& what, const std::string& name);

/// How a change is made.
struct ChangeOptions {
  bool force = false;     ///< stores a text or MTU that a card or device cannot use, as it is
  bool rehearse = false;  ///< writes nothing
};

/// Sets one field of a card.
/// @param name   the field, whatever its letters' case
/// @return what was changed: card, field, before, value
/// @throws Refusal  the files are unusable or cannot be written, there is no such card or field, the
///                  library's lookup would hit another one, or the value is not usable
Outcome setNetworkField(const std::string& word, const std::string& name, const std::string& value,
                        const ChangeOptions& options);

/// Puts the factory values of a card back. A field without a usable one stays as it is.
/// @return what was changed: card, and each field that was with before and value
/// @throws Refusal  as above; or the library would change more than it should
Outcome resetCard(const std::string& word, const ChangeOptions& options);

/// Sets the host name.
/// @return what was changed: before, hostname
/// @throws Refusal  the files are unusable or cannot be written, or it is no host name
Outcome setHostname(const std::string& name, const ChangeOptions& options);

/// The host name and the cards, as documents have them.
/// @throws Refusal if the file is unusable or has no such section
Json loadNetwork();

/// The same, for export and import.
device::Section networkSection();

/// The section as it will be with factory values: all cards, and the host name. What has none stays
/// as it is and is added to `without` by its path.
/// @param network  the section as the device has it
/// @throws Refusal  the library's lookup would hit another card, or more than the card
Json resetNetwork(const Json& network, const device::FactoryValues& factory,
                  std::vector<std::string>& without);

/// The section as it will be once fields of a card are set, with what follows from them: an address means
/// that it is not taken from the network.
/// @param network  the section as the device has it
/// @param words    "address=192.0.2.7/24"
/// @param force    takes what a card cannot use, and a gateway outside the subnet
/// @throws Refusal  as setNetworkField; or the fields contradict each other
Json setCard(const Json& network, const std::string& word, const std::vector<std::string>& words,
             bool force);

/// @throws Refusal  the library's lookup would hit another card, or more than those that differ
void requireSettable(const Json& before, const Json& after);

}  // namespace camcfg::tool::network

#endif
