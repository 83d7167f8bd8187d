#ifndef CAMCFG_TOOL_BASE_OUTCOME_H
#define CAMCFG_TOOL_BASE_OUTCOME_H

#include <string>
#include <vector>

#include "base/json.h"
#include "base/refusal.h"

namespace camcfg::tool {

/// What came of something, before anybody thinks of how to show it.
struct Outcome {                   // NOLINT(bugprone-exception-escape): moving a Json throws none
  Json value;                      ///< the whole answer, in its documented shape
  std::vector<std::string> notes;  ///< remarks, one line each, that belong on standard error
  Status status = Status::Done;
};

}  // namespace camcfg::tool

#endif
