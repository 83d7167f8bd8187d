#ifndef CAMCFG_TOOL_DEVICE_EXPLANATION_H
#define CAMCFG_TOOL_DEVICE_EXPLANATION_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/file_set.h"

namespace camcfg::tool::device {

/// A value in the three copies; null where a copy has none.
struct ExplainedValue {
  std::string name;
  std::array<Json, 3> in;  ///< as in kPlaces
  std::string permitted;   ///< "1..65535"; empty if nothing is known
};

/// Where a copy has what is explained.
struct ExplainedCopy {
  std::string path;
  State state;
  std::string fault;        ///< "is missing"; empty for a good copy
  std::optional<int> line;  ///< none if it is not in there
};

/// What answers a lookup.
struct ExplainedLookup {
  struct Found {
    std::string name;
    int line;
    bool exact;
  };
  std::string asked;
  std::string path;  ///< the copy that it was tried in
  std::optional<Found> answeredBy;
  std::string why;
  std::vector<Found> shadows;  ///< in document order
};

/// What is known of a setting.
struct Explanation {
  std::string what;
  std::array<ExplainedCopy, 3> copies;  ///< as in kPlaces
  std::vector<ExplainedValue> values;
  std::vector<ExplainedLookup> lookups;
};

}  // namespace camcfg::tool::device

#endif
