#ifndef CAMCFG_TOOL_NETWORK_FIELD_H
#define CAMCFG_TOOL_NETWORK_FIELD_H

#include <camcfg/network.h>
#include <tinyxml2.h>

#include <string>
#include <utility>
#include <vector>

namespace camcfg::tool::network {

/// A parameter element of a card and the field of the record that belongs to it. One that has
/// neither words nor a check is a number.
struct NetworkField {
  const char* name;
  std::vector<std::string> words;  ///< what it takes; none: a number, or any text
  /// Puts a text into the record. False, with nothing changed, if the field cannot hold it.
  bool (*put)(tagNETWORK_CFG_S& record, const std::string& text);
  /// What the record holds, as the library writes it.
  std::string (*take)(const tagNETWORK_CFG_S& record);
  /// Why a card cannot use a text; null for words and numbers.
  std::string (*whyNotUsable)(const std::string& text);

  bool isNumber() const { return words.empty() && whyNotUsable == nullptr; }
};

/// From where to where an MTU is permitted: the file's own limits where it has any.
std::pair<int, int> mtuLimits(const tinyxml2::XMLElement& element);

/// All of them, in the order of the interface's documentation.
const std::vector<NetworkField>& networkFields();

/// The field of a name, whatever its letters' case.
/// @throws Refusal if there is none
const NetworkField& requireNetworkField(const std::string& name);

/// The word of a field that a text stands for, whatever its letters' case.
/// @throws Refusal that lists the words if there is none
std::string requireWord(const NetworkField& field, const std::string& text);

}  // namespace camcfg::tool::network

#endif
