#ifndef CAMCFG_TOOL_LINT_CARD_FIELDS_H
#define CAMCFG_TOOL_LINT_CARD_FIELDS_H

#include <string>

#include "lint/findings.h"

namespace camcfg::tool::lint {

/// Whether an element of the network section has anything of a card.
bool isCard(const tinyxml2::XMLElement& element);

/// Looks at the parameter elements of a card.
void checkCardFields(const tinyxml2::XMLElement& card, const std::string& name, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
