#ifndef CAMCFG_TOOL_UPGRADE_PARAMETERS_H
#define CAMCFG_TOOL_UPGRADE_PARAMETERS_H

#include <tinyxml2.h>

#include "upgrade/merge.h"

namespace camcfg::tool::upgrade {

/// Merges the file of the parameters, the cards and the names into the document of the new factory
/// set, which has the structure, the order, the comments and the limits. Values that are kept become
/// permitted ones.
/// @param base  null if there is no old set
void mergeParameters(const tinyxml2::XMLDocument* base, tinyxml2::XMLDocument& factory,
                     const tinyxml2::XMLDocument& user, Merge& merge);

}  // namespace camcfg::tool::upgrade

#endif
