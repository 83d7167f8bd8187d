#ifndef CAMCFG_TOOL_SETTINGS_VALUE_H
#define CAMCFG_TOOL_SETTINGS_VALUE_H

#include <tinyxml2.h>

#include <optional>
#include <string>
#include <string_view>
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

/// What the record holds, as documents have it.
Json valueOf(const Setting& setting, const void* record);

/// Puts a value of a document into the record; other kinds than lists.
/// @return false, with nothing changed, if its field cannot hold it
bool store(const Setting& setting, const Json& value, void* record);

/// The same of a text of a file.
inline bool put(const Setting& setting, const std::string& text, void* record) {
  return store(setting, valueIn(setting, text), record);
}

/// What the record holds, as files have it.
inline std::string take(const Setting& setting, const void* record) {
  return inFile(setting, valueOf(setting, record));
}

// The texts that an "OptTxt" lists are written together in one string. Setters of the library accept
// any part of it. Here, commas, semicolons and bars separate two texts; without any of them, slashes
// do, and without these, spaces. Spaces around a text do not count.

/// The texts listed, as they are offered; none of them is empty.
std::vector<std::string> optionsIn(std::string_view optTxt);

/// Whether a text is one of those listed. The empty text is one only where nothing is listed.
bool isWholeOption(std::string_view optTxt, std::string_view text);

/// The integer that readers get of an attribute; none if it is missing or no integer to them.
std::optional<int> integerIn(const tinyxml2::XMLElement& element, const char* attribute);

/// The "Min" and "Max" of an element; what it lacks is taken from others.
Range limitsIn(const tinyxml2::XMLElement& element, const Range& otherwise);

/// What a parameter element says of its own value.
class ParameterForm {
 public:
  /// @param element  must outlive this object
  explicit ParameterForm(const tinyxml2::XMLElement& element) : element_(element) {}

  /// A number with limits; or with a "Step", unless it has texts.
  bool isInteger() const;
  /// The texts listed; none for an integer.
  std::vector<std::string> options() const;
  /// "1..65535, step 1", or the "OptTxt"; empty if it has none.
  std::string permitted() const;
  /// What is wrong with a value: the library refuses it, or it is only a part of a text.
  Objection objectionTo(const std::string& text) const;

 private:
  const char* text(const char* attribute) const { return element_.Attribute(attribute); }
  Objection objectionToNumber(const std::string& text) const;
  Objection objectionToText(const std::string& text) const;

  const tinyxml2::XMLElement& element_;
};

}  // namespace camcfg::tool::settings

#endif
