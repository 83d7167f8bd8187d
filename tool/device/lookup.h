#ifndef CAMCFG_TOOL_DEVICE_LOOKUP_H
#define CAMCFG_TOOL_DEVICE_LOOKUP_H

#include <tinyxml2.h>

#include <string>
#include <vector>

namespace camcfg::tool::device {

/// An element that a lookup comes upon.
struct Hit {
  tinyxml2::XMLElement* element;
  std::string name;
  bool exact;  ///< its name is the whole of what was asked for, not only begins with it
};

/// A lookup of the library and what it comes upon, in document order.
struct Lookup {
  std::string asked;      ///< "System/Rtsp"
  std::vector<Hit> hits;  ///< the first one answers and shadows the others; none: nothing is found
  std::string why;        ///< why the first one answers
};

/// What a lookup finds below an element by the beginning of a name.
Lookup lookupByName(tinyxml2::XMLElement& parent, const std::string& name,
                    const std::string& asked);

/// What a lookup without a section finds in the sections of a document.
Lookup lookupInSections(tinyxml2::XMLDocument& document, const std::string& name);

// For lookups of other things.

/// Why the first hit answers.
/// @param what  what is compared: "name"
std::string whyFirst(const std::vector<Hit>& hits, const std::string& what,
                     const std::string& sought);

/// Drops the hits before the library's answer.
void startWith(std::vector<Hit>& hits, const tinyxml2::XMLElement* answer);

}  // namespace camcfg::tool::device

#endif
