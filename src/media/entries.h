#ifndef CAMCFG_MEDIA_ENTRIES_H
#define CAMCFG_MEDIA_ENTRIES_H

#include <strings.h>
#include <tinyxml2.h>

#include <cstring>

namespace camcfg {

/// Whether a word of the file is this one, in upper or lower case.
inline bool isWord(const char* text, const char* word) {
  // Most are written as they should be, which is quicker to see.
  return std::strcmp(text, word) == 0 || strcasecmp(text, word) == 0;
}

/// The first element of one name (in upper or lower case) among an element and its followers; null
/// when there is none. Elements of other names are skipped.
inline const tinyxml2::XMLElement* entryFrom(const tinyxml2::XMLElement* element,
                                             const char* name) {
  while (element != nullptr && !isWord(element->Name(), name))
    element = element->NextSiblingElement();
  return element;
}

/// The first child element of one name, and the next one after that.
inline const tinyxml2::XMLElement* firstEntry(const tinyxml2::XMLElement& parent,
                                              const char* name) {
  return entryFrom(parent.FirstChildElement(), name);
}
inline const tinyxml2::XMLElement* nextEntry(const tinyxml2::XMLElement& entry, const char* name) {
  return entryFrom(entry.NextSiblingElement(), name);
}

}  // namespace camcfg

#endif
