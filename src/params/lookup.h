#ifndef CAMCFG_PARAMS_LOOKUP_H
#define CAMCFG_PARAMS_LOOKUP_H

#include <tinyxml2.h>

#include "base/place.h"

namespace camcfg {

/// The first top-level element; logs the failure under the caller's place when there is none.
tinyxml2::XMLElement* acquireRoot(const tinyxml2::XMLDocument& document, const char* path,
                                  Place place);

/// The parameter of a section: section by exact name, parameter by the beginning of its name.
tinyxml2::XMLElement* findParameter(tinyxml2::XMLElement* root, const char* section,
                                    const char* name);

/// The parameter of the first section, from `root` on, that has one whose name begins with `name`.
tinyxml2::XMLElement* findInAnySection(tinyxml2::XMLElement* root, const char* name);

/// The text of an attribute; null when the element or the attribute is missing.
const char* textOf(const tinyxml2::XMLElement* element, const char* attribute);

/// Reads an integer attribute. False, with `value` untouched, when the element or the attribute is
/// missing or holds no integer.
bool readInt(const tinyxml2::XMLElement* element, const char* attribute, int* value);

/// Prints "FUNCTION LINE failed" on standard output.
void printFailed(Place place);

}  // namespace camcfg

#endif
