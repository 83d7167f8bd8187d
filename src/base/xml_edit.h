#ifndef CAMCFG_BASE_XML_EDIT_H
#define CAMCFG_BASE_XML_EDIT_H

#include <tinyxml2.h>

#include <cstdint>
#include <memory>

namespace camcfg {

// The changes of a document that allocate memory. Nothing else that is done with a document does,
// so the families that use these need not check for it elsewhere. When memory ran out during a
// change, the document can only be deleted.

/// Sets an attribute, which is added if it is missing.
/// @return false when memory ran out
bool setAttribute(tinyxml2::XMLElement& element, const char* name, const char* value);
bool setAttribute(tinyxml2::XMLElement& element, const char* name, std::int32_t value);

/// Makes an empty document.
/// @return null when memory ran out
std::unique_ptr<tinyxml2::XMLDocument> newDocument();

/// Makes an element that belongs to the document but has no place in it yet.
/// @return null when memory ran out
tinyxml2::XMLElement* newElement(tinyxml2::XMLDocument& document, const char* name);

}  // namespace camcfg

#endif
