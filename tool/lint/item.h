#ifndef CAMCFG_TOOL_LINT_ITEM_H
#define CAMCFG_TOOL_LINT_ITEM_H

#include <tinyxml2.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/elements.h"
#include "base/plain_text.h"
#include "lint/findings.h"
#include "settings/node.h"

namespace camcfg::tool::lint {

using Elements = std::vector<const tinyxml2::XMLElement*>;

/// The child elements of a node, in document order.
inline Elements childrenOf(const tinyxml2::XMLNode& parent) {
  return tool::childrenOf(parent);
}

/// Their names.
inline std::vector<std::string_view> namesOf(const Elements& elements) {
  std::vector<std::string_view> names;
  names.reserve(elements.size());
  for (const tinyxml2::XMLElement* element : elements) names.emplace_back(element->Name());
  return names;
}

inline bool has(const tinyxml2::XMLElement& element, const char* attribute) {
  return element.FindAttribute(attribute) != nullptr;
}

/// A text cut to what a line of findings has room for: names and values have no limit.
inline std::string clipped(std::string_view text) {
  constexpr std::size_t kRoom = 80;
  return std::string(firstBytes(text, kRoom)) + (text.size() <= kRoom ? "" : "...");
}

/// The same between single quotes, for a value.
inline std::string quoted(std::string_view text) {
  return tool::quoted(clipped(text));
}

/// The same between angle brackets, for an element's name.
inline std::string tag(std::string_view name) {
  return "<" + clipped(name) + ">";
}

/// " at line 7"
inline std::string atLine(const tinyxml2::XMLNode& node) {
  return " at line " + std::to_string(node.GetLineNum());
}

/// An attribute with what says who needs it: "CFG_COM_GetIntParams needs".
struct Needed {
  const char* attribute;
  const char* reader;
};

/// An element that is looked at, with its name in findings, and what several subjects look for in
/// it. An attribute may be below its element: what is found of it is at its own line, if it is there.
struct Item {
  const tinyxml2::XMLElement& element;
  std::string name;  ///< how findings call it: "System/Rtsp"
  Findings& findings;

  bool has(const char* attribute) const { return lint::has(element, attribute); }
  std::string text(const char* attribute) const { return textOf(element, attribute); }
  /// A child element; its name is "NAME/CHILD".
  Item inner(const tinyxml2::XMLElement& child) const {
    return {child, name + "/" + clipped(child.Name()), findings};
  }

  /// Adds the finding "NAME" and then the text.
  void add(const Rule& rule, const std::string& text) const {
    findings.add(rule, element, name + text);
  }
  /// The same at the line of an attribute.
  void addAt(const Rule& rule, const char* attribute, const std::string& text) const;
  /// The same with the attribute's name: 'NAME: "ATTRIBUTE"' and then the text.
  void addOf(const Rule& rule, const char* attribute, const std::string& text) const;

  /// The integer that readers get of an attribute; none if it is missing or no integer to them. What
  /// they read otherwise than it looks is found.
  std::optional<int> checkInteger(const char* attribute) const;

  /// Finds a name that people see nothing of, or that begins or ends with a space.
  void checkName(const char* attribute) const;

  /// Finds that an attribute is missing which a reader needs.
  void require(const Needed& need) const;

  /// Finds an attribute that is longer than what readers have room for, in bytes.
  void requireFits(const char* attribute, std::size_t room) const;

  /// Finds a number, as readers get it, that is outside.
  void requireWithin(const settings::Range& limits, const char* attribute, int number) const;

  /// Finds attributes whose names differ from ones that readers know only in upper and lower case.
  void checkCase(const std::vector<const char*>& known) const;
};

/// Looks at entries whose "Id" distinguishes them, in document order: one without takes the id
/// of the one before it in searches by id, and of equal ids only the first is found.
/// @param owner  how findings call an entry: "preset"
void checkEntryIds(const Elements& entries, const std::string& owner, Findings& findings);

/// Finds ids that an earlier one of the entries has. Entries without a readable "Id" are passed by.
void checkEqualIds(const Elements& entries, const std::string& owner, Findings& findings);

/// Finds names that an earlier one of the entries has in the same attribute.
void checkEqualNames(const Elements& entries, const char* attribute, const std::string& owner,
                     Findings& findings);

}  // namespace camcfg::tool::lint

#endif
