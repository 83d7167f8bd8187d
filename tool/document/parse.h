#ifndef CAMCFG_TOOL_DOCUMENT_PARSE_H
#define CAMCFG_TOOL_DOCUMENT_PARSE_H

#include <string>

#include "base/json.h"
#include "settings/faults.h"

namespace camcfg::tool::document {

/// Reads JSON. Of two members of one name the first counts and the second is a fault.
/// @throws Refusal, with line and column, over a text that is no JSON; see also checkJson
Json parseJson(const std::string& text, settings::Faults& faults);

}  // namespace camcfg::tool::document

#endif
