#ifndef CAMCFG_TOOL_SETTINGS_NETWORK_H
#define CAMCFG_TOOL_SETTINGS_NETWORK_H

#include <tinyxml2.h>

#include <string>
#include <string_view>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// The section of the parameters' file that holds the cards and the host name.
inline constexpr char kNetworkSection[] = "NetWork";

/// The settings of a network card, in the order of the interface's documentation. Each is the "Cur"
/// of an element of the card, and a field of tagNETWORK_CFG_S.
const Settings& cardSettings();

/// The same as people call them: "address", "mode" with "dhcp" and "static". Those of one name are one.
Settings plainCardSettings();

/// Those of a card that go by a name, in upper or lower case: an element's, a member's or what people
/// call them.
std::vector<const Setting*> cardSettingsCalled(std::string_view name);

/// The host name, an attribute of the network section.
const Setting& hostnameSetting();

/// The name of a card's setting in the file: "IpAddr".
inline const char* elementOf(const Setting& setting) {
  return setting.attributes.front().element;
}

/// The setting of an element of exactly this name; null if there is none.
const Setting* cardSettingOf(std::string_view element);

/// The setting that is written into an element of this longer name, too, when a whole card is set;
/// null if there is none.
const Setting* cardSettingWrittenInto(std::string_view element);

/// Whether a card's field may be empty: its address, where the card gets one from the network.
/// @param attribute  of the field, "Cur" or "Def"
bool mayBeEmpty(const Setting& setting, const tinyxml2::XMLElement& field, const char* attribute);

/// The setting of an element's name, in upper or lower case.
/// @throws Refusal if there is none
const Setting& requireCardSetting(const std::string& name);

/// The words of a setting as people call them.
std::vector<std::string> plainWordsOf(const Setting& setting);

/// A text as the setting's file has it, of what people call it or of any that 'spelt' knows.
std::string fromPlain(const Setting& setting, const std::string& text);

/// A text as the setting's file has it: a word in its own upper and lower case.
std::string spelt(const Setting& setting, const std::string& text);

// Each says why a network cannot use a text; empty if it can. The library itself stores any text.

/// The address of a host: four decimal numbers, neither 0.x, loopback, multicast nor broadcast.
std::string whyNotAnAddress(const std::string& text);

/// The same, or the empty text.
std::string whyNotAnOptionalAddress(const std::string& text);

/// The address of a name server: also of one on the device itself, or the empty text.
std::string whyNotAServer(const std::string& text);

/// A netmask whose set bits are all at the beginning.
std::string whyNotAMask(const std::string& text);

/// The first address of a multicast group.
std::string whyNotMulticast(const std::string& text);

/// Domains with spaces between them, or the empty text.
std::string whyNotDomains(const std::string& text);

/// A host name of RFC 1123: labels of up to 63 letters, digits and inner hyphens, 253 in all.
std::string whyNotAHostname(const std::string& text);

}  // namespace camcfg::tool::settings

#endif
