#ifndef CAMCFG_TOOL_SETTINGS_NETWORK_H
#define CAMCFG_TOOL_SETTINGS_NETWORK_H

#include <string>
#include <string_view>

#include "settings/setting.h"

namespace camcfg::tool::settings {

/// The settings of a network card, in the order of the interface's documentation. Each is the "Cur"
/// of an element of the card, and a field of tagNETWORK_CFG_S.
const Settings& cardSettings();

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

/// The setting of an element's name, in upper or lower case.
/// @throws Refusal if there is none
const Setting& requireCardSetting(const std::string& name);

/// A text as the setting's file has it: a word in its own upper and lower case.
std::string spelt(const Setting& setting, const std::string& text);

}  // namespace camcfg::tool::settings

#endif
