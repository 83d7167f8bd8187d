#ifndef CAMCFG_TOOL_DOCUMENT_DIFFERENCES_H
#define CAMCFG_TOOL_DOCUMENT_DIFFERENCES_H

#include <string>

#include "base/json.h"

namespace camcfg::tool::document {

/// Adds what is different between two states of a place to an array: objects of "place", "before"
/// and "after", null where there is nothing. Records in a list are told apart by their "id", else
/// by their "name", else by their position; "live.srt[1].port" is of the one with the id 1.
void addDifferences(const std::string& place, const Json& before, const Json& after, Json& found);

}  // namespace camcfg::tool::document

#endif
