#ifndef CAMCFG_TOOL_DOCUMENT_CARD_H
#define CAMCFG_TOOL_DOCUMENT_CARD_H

#include <string>
#include <vector>

#include "base/outcome.h"
#include "document/exchange.h"

namespace camcfg::tool::document {

/// Sets fields of a network card with one save, and reports the changes as an import does.
/// @param card   its name, or its interface
/// @param words  see network::setCard
/// @param force  see there
/// @throws Refusal  before anything was written, see there
Outcome setCard(const std::string& card, const std::vector<std::string>& words, bool force,
                const ImportOptions& options);

}  // namespace camcfg::tool::document

#endif
