#ifndef CAMCFG_SUPPORT_MEDIA_ENTRIES_H
#define CAMCFG_SUPPORT_MEDIA_ENTRIES_H

#include <strings.h>
#include <tinyxml2.h>

#include <cstdint>
#include <string>

namespace camcfg {

/// Whether a word of the file is this one, in upper or lower case.
inline bool isWord(const char* text, const char* word) {
  return strcasecmp(text, word) == 0;
}

/// Passes over an element without a word.
inline void skipQuietly(const tinyxml2::XMLElement& /*element*/) {}

/// Hands the child elements of one name (in upper or lower case) to `read`, in document order,
/// until it refuses one by returning false; hands those of another name to `skip`.
/// @return whether none was refused
template <typename Element, typename Read, typename Skip>
bool readEntries(Element& parent, const char* name, Read read, Skip skip) {
  for (Element* child = parent.FirstChildElement(); child != nullptr;
       child = child->NextSiblingElement()) {
    if (!isWord(child->Name(), name))
      skip(*child);
    else if (!read(*child))
      return false;
  }
  return true;
}

/// The text of an attribute, or what stands for its absence.
inline const char* textOr(const tinyxml2::XMLElement& element, const char* attribute,
                          const char* absent) {
  const char* text = element.Attribute(attribute);
  return text == nullptr ? absent : text;
}

/// 1 for the word "true", else 0.
inline std::int32_t isTrue(const char* text) {
  return isWord(text, "true") ? 1 : 0;
}

/// The word for a switch.
inline const char* trueOrFalse(std::int32_t value) {
  return value != 0 ? "true" : "false";
}

/// Appends an empty element of this name.
inline tinyxml2::XMLElement& append(tinyxml2::XMLElement& parent, const char* name) {
  return *parent.InsertNewChildElement(name);
}

/// Sets a text attribute.
inline void setText(tinyxml2::XMLElement& element, const char* attribute, const std::string& text) {
  element.SetAttribute(attribute, text.c_str());
}

}  // namespace camcfg

#endif
