#ifndef CAMCFG_TOOL_PARAMETERS_PARAMETER_H
#define CAMCFG_TOOL_PARAMETERS_PARAMETER_H

#include <tinyxml2.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "device/explanation.h"
#include "device/section.h"
#include "settings/value.h"

namespace camcfg::tool::parameters {

/// A parameter element. One inside another has both names: "EthCard0/IpAddr".
struct Parameter {
  std::string section;
  std::string name;
  tinyxml2::XMLElement* element;
  /// What a lookup of its name in its section finds; null if it is still to be looked up.
  tinyxml2::XMLElement* answer = nullptr;

  /// "SECTION/NAME"
  std::string path() const { return section + "/" + name; }
  bool isInner() const { return name.find('/') != std::string::npos; }
  settings::ParameterForm form() const { return settings::ParameterForm(*element); }
  const char* type() const { return form().isInteger() ? "integer" : "text"; }
  /// An attribute's text; null if it is missing.
  const char* text(const char* attribute) const { return element->Attribute(attribute); }
  /// An attribute as an answer shows it: a number if an integer parameter has one there, the text
  /// as it is otherwise, null if it is missing.
  Json value(const char* attribute) const { return shown(text(attribute)); }
  /// The same of a text that is none of its own; null for null.
  Json shown(const char* found) const;
  /// Whether the library sets it: none that is inside another one.
  bool isSettable() const { return text("Cur") != nullptr && !isInner(); }
};

/// The parameters of "/cfg0/business_param.xml", looked up by their whole names, and by the
/// beginning of them as the library does.
class Parameters {
 public:
  /// @throws Refusal if the file is unusable
  Parameters();
  /// Those of a file of which the bytes are known.
  explicit Parameters(const device::Contents& file);

  /// The names of all sections.
  std::vector<std::string> sections() const;
  /// All parameters, or those of one section, in their order in the file.
  std::vector<Parameter> all() const;
  std::vector<Parameter> in(const std::string& section) const;

  /// The parameter of exactly this name.
  /// @throws Refusal if there is no such section or parameter
  Parameter require(const std::string& section, const std::string& name) const;

  /// The parameter that words stand for: section and name; or one word, its place "SECTION/NAME" or
  /// its name, if no other section has one of that name.
  /// @param name  empty: there is one word
  /// @throws Refusal  there is none, or more than one
  Parameter requireAt(const std::string& place, const std::string& name = "") const;

  /// What the library finds by section and name.
  std::optional<Parameter> lookup(const std::string& section, const std::string& name) const;
  /// What the library finds by a name without a section.
  std::optional<Parameter> lookup(const std::string& name) const;

 private:
  // The first section of its name.
  struct Section {
    tinyxml2::XMLElement* element;
    std::map<std::string, Parameter> byName{};  // once one of them was asked for
  };

  Section& requireSection(const std::string& name) const;
  static void index(const std::string& name, Section& section);

  device::Document document_;
  mutable std::map<std::string, Section> sections_;  // once one of them was asked for
};

/// Lookups are tried in the main copy, or else in the next good one.
/// @param place  see Parameters::requireAt
/// @param name   whole, or the beginning of the name that a lookup finds
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainParameter(const std::string& place, const std::string& name);

/// The words that stand for a parameter, see Parameters::requireAt, and the value that it is to have.
struct Assignment {
  std::string place;
  std::string name;
  std::string value;
};

/// Sets parameters, with one save, or none of them: each to an integer within its "Min" and "Max", or a
/// text of its "OptTxt". The library accepts any part of "OptTxt"; here it must be a whole one, unless
/// `force`. Where all have their values already, nothing is written.
/// @param rehearse  write nothing in any case
/// @return "changes": what was changed: section, name, type, before, value; "unchanged": the same of
///         those that had their values already
/// @throws Refusal  the files are unusable or cannot be written, there is no such parameter, one is
///                  named twice, or cannot be set to its value: all such faults are named
Outcome setParameters(const std::vector<Assignment>& assignments, bool force,
                      bool rehearse = false);

/// All that can be set, for export and import.
device::Section parametersSection();

/// The section as it will be with factory values. What has none stays as it is and is added to
/// `without` by its path.
/// @param before  the section as the device has it
/// @param wanted  the parameters that get their factory values; those inside others are passed over
Json resetParameters(const Json& before, const device::FactoryValues& factory,
                     const std::vector<Parameter>& wanted, std::vector<std::string>& without);

}  // namespace camcfg::tool::parameters

#endif
