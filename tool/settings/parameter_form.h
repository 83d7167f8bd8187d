#ifndef CAMCFG_TOOL_SETTINGS_PARAMETER_FORM_H
#define CAMCFG_TOOL_SETTINGS_PARAMETER_FORM_H

#include <tinyxml2.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "settings/value.h"

namespace camcfg::tool::settings {

// The texts that an "OptTxt" lists are written together in one string. Setters of the library accept
// any part of it. Here, commas, semicolons and bars separate two texts; spaces around a text do
// not count. Spaces and slashes may part texts, too: nobody can say whether "Slow Fast" is one or
// two, so both are permitted.

/// The texts listed, as they are offered; none of them is empty.
std::vector<std::string> optionsIn(std::string_view optTxt);

/// Whether a text is one of those listed, or several that follow one another: at both of its ends
/// there is a separator, or nothing. The empty text is one only where nothing is listed.
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
  Objection objectionToLimit(const char* attribute) const;
  Objection objectionToNumber(const std::string& text) const;
  Objection objectionToText(const std::string& text) const;

  const tinyxml2::XMLElement& element_;
};

}  // namespace camcfg::tool::settings

#endif
