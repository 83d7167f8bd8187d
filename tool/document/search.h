#ifndef CAMCFG_TOOL_DOCUMENT_SEARCH_H
#define CAMCFG_TOOL_DOCUMENT_SEARCH_H

#include <string>
#include <vector>

#include "base/outcome.h"

namespace camcfg::tool::document {

/// The settings in which each word is found, in upper or lower case: in the place, the value unless it
/// is a secret, the unit, the help, the permitted values, or the name of the entry that a setting is
/// of: a session's, a preset's description, a card's.
/// @return an array of objects of "place", "value", secrets masked, "of", "unit", "help" and
///         "permitted"; degraded if not all settings can be read, with what is left out in the notes;
///         refused if nothing is found
/// @throws Refusal (unusable) if nothing can be read
Outcome findSettings(const std::vector<std::string>& words);

}  // namespace camcfg::tool::document

#endif
