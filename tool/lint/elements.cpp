#include "lint/elements.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

namespace {

constexpr std::size_t kRoom = 80;

bool continuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

}  // namespace

Elements childrenOf(const XMLNode& parent) {
  Elements children;
  for (const XMLElement* child = parent.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement())
    children.push_back(child);
  return children;
}

std::vector<std::string_view> namesOf(const Elements& elements) {
  std::vector<std::string_view> names;
  names.reserve(elements.size());
  for (const XMLElement* element : elements) names.emplace_back(element->Name());
  return names;
}

const XMLElement* childNamed(const XMLNode& parent, const char* name) {
  return parent.FirstChildElement(name);
}

std::string textOf(const XMLElement& element, const char* attribute) {
  const char* text = element.Attribute(attribute);
  return text == nullptr ? "" : text;
}

std::string clipped(std::string_view text) {
  if (text.size() <= kRoom) return std::string(text);
  std::size_t end = kRoom;
  while (end > 0 && continuesCharacter(text[end])) --end;
  return std::string(text.substr(0, end)) + "...";
}

std::string quoted(std::string_view text) {
  return "'" + clipped(text) + "'";
}

std::string tag(std::string_view name) {
  return "<" + clipped(name) + ">";
}

std::string atLine(const XMLNode& node) {
  return " at line " + std::to_string(node.GetLineNum());
}

}  // namespace camcfg::tool::lint
