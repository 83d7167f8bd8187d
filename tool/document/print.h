#ifndef CAMCFG_TOOL_DOCUMENT_PRINT_H
#define CAMCFG_TOOL_DOCUMENT_PRINT_H

#include <string>

#include "base/json.h"

namespace camcfg::tool::document {

/// JSON as a person would write it: what fits on a line stands on one. Ends with a line feed. Bytes
/// that are not UTF-8 become U+FFFD.
std::string printJson(const Json& value);

}  // namespace camcfg::tool::document

#endif
