#ifndef CAMCFG_NETWORK_PARAMETERS_H
#define CAMCFG_NETWORK_PARAMETERS_H

#include <tinyxml2.h>

#include "camcfg/network.h"

namespace camcfg {

/// Writes an element's "Cur" from the field of the parameter that the element is named after; an
/// element of another name is left alone.
/// @return false when memory ran out
bool writeParameter(tinyxml2::XMLElement& element, const tagNETWORK_CFG_S& record);

/// Fills the field of the parameter that the element is named after from one of the element's
/// attributes; an element of another name is ignored.
void readParameter(tagNETWORK_CFG_S& record, const tinyxml2::XMLElement& element,
                   const char* attribute);

/// Sets the field of a parameter, given by its whole name, which must be one; a text is cut to the
/// field's room.
void setParameter(tagNETWORK_CFG_S& record, const char* name, std::int32_t value);
void setParameter(tagNETWORK_CFG_S& record, const char* name, const char* text);

}  // namespace camcfg

#endif
