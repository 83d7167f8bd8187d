#ifndef CAMCFG_TOOL_UPGRADE_LIMITS_H
#define CAMCFG_TOOL_UPGRADE_LIMITS_H

#include <tinyxml2.h>

#include <string>

namespace camcfg::tool::upgrade {

/// A value that an element of the new factory set permits.
struct Permitted {
  std::string value;
  std::string reason;  ///< why it is not the one that was to be kept; empty if it is
};

/// The value to be kept if it is permitted; else the nearest number, or the factory value for a text.
/// What the old element did not mind either, and the library takes, stays: a number between two steps
/// or a part of a text.
/// @param previous  the element that the value comes from; null if there is none
Permitted permittedFor(const tinyxml2::XMLElement& element, const tinyxml2::XMLElement* previous,
                       const std::string& value, const std::string& factory);

}  // namespace camcfg::tool::upgrade

#endif
