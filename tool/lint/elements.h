#ifndef CAMCFG_TOOL_LINT_ELEMENTS_H
#define CAMCFG_TOOL_LINT_ELEMENTS_H

#include <tinyxml2.h>

#include <string>
#include <string_view>
#include <vector>

#include "base/plain_text.h"

namespace camcfg::tool::lint {

using Elements = std::vector<const tinyxml2::XMLElement*>;

/// The child elements of a node, in document order.
inline Elements childrenOf(const tinyxml2::XMLNode& parent) {
  Elements children;
  for (const tinyxml2::XMLElement* child = parent.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    children.push_back(child);
  return children;
}

/// Their names.
inline std::vector<std::string_view> namesOf(const Elements& elements) {
  std::vector<std::string_view> names;
  names.reserve(elements.size());
  for (const tinyxml2::XMLElement* element : elements) names.emplace_back(element->Name());
  return names;
}

/// The first child element of exactly this name; null if there is none.
inline const tinyxml2::XMLElement* childNamed(const tinyxml2::XMLNode& parent, const char* name) {
  return parent.FirstChildElement(name);
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

}  // namespace camcfg::tool::lint

#endif
