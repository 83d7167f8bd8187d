#ifndef CAMCFG_TOOL_LINT_CARDS_H
#define CAMCFG_TOOL_LINT_CARDS_H

#include "lint/item.h"

namespace camcfg::tool::lint {

/// Looks at settings of network cards that are each permitted but do not go together, in one card
/// and among several: at those in force, and at those that a reset brings.
void checkCards(const Elements& cards, Findings& findings);

}  // namespace camcfg::tool::lint

#endif
