#ifndef CAMCFG_TOOL_LINT_ELEMENTS_H
#define CAMCFG_TOOL_LINT_ELEMENTS_H

#include <tinyxml2.h>

#include <string>
#include <string_view>
#include <vector>

namespace camcfg::tool::lint {

using Elements = std::vector<const tinyxml2::XMLElement*>;

/// The child elements of a node, in document order.
Elements childrenOf(const tinyxml2::XMLNode& parent);

/// Their names.
std::vector<std::string_view> namesOf(const Elements& elements);

/// The first child element of exactly this name; null if there is none.
const tinyxml2::XMLElement* childNamed(const tinyxml2::XMLNode& parent, const char* name);

/// An attribute's text; empty if it is missing.
std::string textOf(const tinyxml2::XMLElement& element, const char* attribute);

inline bool has(const tinyxml2::XMLElement& element, const char* attribute) {
  return element.FindAttribute(attribute) != nullptr;
}

inline bool beginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

/// A text cut to what a line of findings has room for: names and values have no limit.
std::string clipped(std::string_view text);

/// The same between single quotes, for a value.
std::string quoted(std::string_view text);

/// The same between angle brackets, for an element's name.
std::string tag(std::string_view name);

/// " at line 7"
std::string atLine(const tinyxml2::XMLNode& node);

}  // namespace camcfg::tool::lint

#endif
