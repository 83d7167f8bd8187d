#ifndef CAMCFG_TOOL_DEVICE_EXPLANATION_H
#define CAMCFG_TOOL_DEVICE_EXPLANATION_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "device/file_set.h"
#include "frame/answer.h"

namespace camcfg::tool {

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

// Lookups are tried in the main copy, and where that is missing or broken in the next good one.
// They throw a Refusal: no copy is good, or nothing is found by what is asked for.

/// @param name  whole, or the beginning of the name that a lookup finds
Explanation explainParameter(const std::string& section, const std::string& name);

/// @param field  one field alone; empty: all
Explanation explainCard(const std::string& card, const std::string& field);

/// @param word  a word of digits is an id, any other a description
Explanation explainPreset(const std::string& word);

}  // namespace camcfg::tool

#endif
