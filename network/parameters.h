#ifndef CAMCFG_NETWORK_PARAMETERS_H
#define CAMCFG_NETWORK_PARAMETERS_H

#include <tinyxml2.h>

#include "camcfg/network.h"

namespace camcfg {

/// Writes an element's "Cur" from the field of the parameter that the element's name stands for; an
/// element of another name is left alone.
/// @throws std::bad_alloc
void writeParameter(tinyxml2::XMLElement& element, const tagNETWORK_CFG_S& record);

/// Fills the field of the parameter that the element's name stands for from one of the element's
/// attributes; an element of another name is ignored.
void readParameter(tagNETWORK_CFG_S& record, const tinyxml2::XMLElement& element,
                   const char* attribute);

}  // namespace camcfg

#endif
