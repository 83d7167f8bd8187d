#include "params/lookup.h"

#include <cstdio>

#include "base/log.h"
#include "camcfg/store.h"

namespace camcfg {

using tinyxml2::XMLElement;

XMLElement* acquireRoot(const tinyxml2::XMLDocument& document, const char* path, Place place) {
  const XMLElement* root = document.FirstChildElement();
  if (root == nullptr) logError(place, "Acquire %s root failed\n", path);
  return const_cast<XMLElement*>(root);
}

XMLElement* findParameter(XMLElement* root, const char* section, const char* name) {
  return CFG_GetElementByName(CFG_GetBrotherElementByName(root, section), name);
}

XMLElement* findInAnySection(XMLElement* root, const char* name) {
  for (XMLElement* section = root; section != nullptr; section = section->NextSiblingElement()) {
    XMLElement* parameter = CFG_GetElementByName(section, name);
    if (parameter != nullptr) return parameter;
  }
  return nullptr;
}

const char* textOf(const XMLElement* element, const char* attribute) {
  return element == nullptr ? nullptr : element->Attribute(attribute);
}

bool readInt(const XMLElement* element, const char* attribute, int* value) {
  return element != nullptr && value != nullptr &&
         element->QueryIntAttribute(attribute, value) == tinyxml2::XML_SUCCESS;
}

void printFailed(Place place) {
  std::printf("%s %d failed\n", place.function, place.line);
}

}  // namespace camcfg
