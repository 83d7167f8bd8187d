#ifndef CAMCFG_TOOL_EXCHANGE_PARSE_H
#define CAMCFG_TOOL_EXCHANGE_PARSE_H

#include <string>

#include "exchange/faults.h"
#include "frame/answer.h"

namespace camcfg::tool {

/// Reads JSON. Of two members of one name the first counts and the second is a fault.
/// @throws Refusal, with line and column, over a text that is no JSON; see also checkJson
Json parseJson(const std::string& text, Faults& faults);

}  // namespace camcfg::tool

#endif
