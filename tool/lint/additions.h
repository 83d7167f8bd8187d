#ifndef CAMCFG_TOOL_LINT_ADDITIONS_H
#define CAMCFG_TOOL_LINT_ADDITIONS_H

#include <vector>

#include "device/journal.h"
#include "lint/findings.h"

namespace camcfg::tool::lint {

/// A finding that is in a file after a change, and was not before.
struct Addition {
  Finding finding;
  /// The file has more findings of its rule than before. Otherwise the change has only put it another
  /// way: an entry with a fault has another name now.
  bool isMore;
};

/// What changes of files add to what is found in them; nothing for a file that could not be read before.
std::vector<Addition> additionsOf(const std::vector<device::FileChange>& changes);

}  // namespace camcfg::tool::lint

#endif
