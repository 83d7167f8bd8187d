#ifndef CAMCFG_TOOL_DEVICE_NAMED_LOOKUPS_H
#define CAMCFG_TOOL_DEVICE_NAMED_LOOKUPS_H

#include <string>
#include <vector>

#include "device/explained_file.h"

namespace camcfg::tool::device {

/// Names of elements, each inside the one before.
using ElementPath = std::vector<std::string>;

/// The element of exactly these names; null if there is none.
tinyxml2::XMLElement* elementAt(tinyxml2::XMLDocument& document, const ElementPath& path);

inline auto finderOf(const ElementPath& path) {
  return [path](tinyxml2::XMLDocument& document) { return elementAt(document, path); };
}

/// "EthCard0/IpAddr"
std::string joined(const ElementPath& path);

/// Looks names up one below the other, as the library does, and adds what each finds.
/// @return the path that is explained: of the elements of exactly these names, or else of what
///         answers
/// @throws Refusal if a name finds nothing
ElementPath addLookups(Explanation& explanation, const ExplainedFile& file,
                       const std::string& section, const std::vector<std::string>& names);

}  // namespace camcfg::tool::device

#endif
