#ifndef CAMCFG_NETWORK_SECTION_H
#define CAMCFG_NETWORK_SECTION_H

#include <tinyxml2.h>

#include "store/transaction.h"

namespace camcfg {

// Each search below reports a failure under the function given and returns null then. A search
// below an element that was not found returns null as well, without another message.

/// The section "NetWork" of a document; one that could not be opened is reported as such.
tinyxml2::XMLElement* findNetwork(const tinyxml2::XMLDocument* document, const char* function);

/// The section "NetWork" of a document; one that could not be opened is reported like an empty one.
tinyxml2::XMLElement* findListedNetwork(const tinyxml2::XMLDocument* document,
                                        const char* function);

/// A card of the section, or a parameter of a card, by the beginning of its name.
tinyxml2::XMLElement* findNode(tinyxml2::XMLElement* parent, const char* name,
                               const char* function);

/// The text of an attribute; empty when it is absent.
const char* textOrEmpty(const tinyxml2::XMLElement& element, const char* attribute);

/// Saves a file and its backup, unless memory ran out while it was changed. The calls that save
/// return nothing, so running out of memory is only logged, under the function given.
void saveOrReport(WriteDocument& document, bool changed, const char* function);

}  // namespace camcfg

#endif
