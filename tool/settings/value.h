#ifndef CAMCFG_TOOL_SETTINGS_VALUE_H
#define CAMCFG_TOOL_SETTINGS_VALUE_H

#include <string>
#include <vector>

#include "settings/setting.h"

namespace camcfg::tool::settings {

// A setting's value as a text of a file, as a document has it, and in the library's record.

/// What is wrong with a value; nothing is if there is no reason.
struct Objection {
  std::string why;
  bool canBeForced = false;  ///< the library would store it nevertheless

  /// What a refusal says; empty if the value is fine, or forced.
  std::string refusal(bool isForced) const;
};

/// The members' names, for checks and headings.
std::vector<std::string> membersOf(const Settings& settings);

/// The words of a setting as files have them.
std::vector<std::string> wordsOf(const Setting& setting);

/// What a file may have: "0..128", "Off, On"; empty if it is any number, or a text.
/// @param limits  of an Integer
std::string permittedInFile(const Setting& setting, const Range& limits);

/// What is wrong with a text that is to be put into a file.
Objection objectionTo(const Setting& setting, const std::string& text, const Range& limits);
inline Objection objectionTo(const Setting& setting, const std::string& text) {
  return objectionTo(setting, text, setting.limits);
}

/// A text of a file as documents have it; one that is no value of the setting as it is there,
/// null for null.
Json valueIn(const Setting& setting, const Json& text);

/// What stands for a value of a document in a file.
std::string inFile(const Setting& setting, const Json& value);

/// Reads a value from a document; what is wrong with it is a fault of the node.
Json readValue(const Setting& setting, const Node& node, const Range& limits);

/// Puts a text of a file into the record.
/// @return false, with nothing changed, if its field cannot hold it
bool put(const Setting& setting, const std::string& text, void* record);

/// What the record holds, as files have it.
std::string take(const Setting& setting, const void* record);

}  // namespace camcfg::tool::settings

#endif
