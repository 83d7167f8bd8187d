#include "base/xml_edit.h"

#include <new>

namespace camcfg {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

bool setAttribute(XMLElement& element, const char* name, const char* value) try {
  element.SetAttribute(name, value);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

bool setAttribute(XMLElement& element, const char* name, std::int32_t value) try {
  element.SetAttribute(name, value);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

std::unique_ptr<XMLDocument> newDocument() try {
  return std::make_unique<XMLDocument>();
} catch (const std::bad_alloc&) {
  return nullptr;
}

XMLElement* newElement(XMLDocument& document, const char* name) try {
  return document.NewElement(name);
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace camcfg
