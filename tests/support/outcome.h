#ifndef CAMCFG_TESTS_SUPPORT_OUTCOME_H
#define CAMCFG_TESTS_SUPPORT_OUTCOME_H

#include <ostream>
#include <string>

#include "camcfg/testkit/captured_output.h"

namespace camcfg::tests {

/// What a call returned and what it printed on standard output.
struct Outcome {
  int result;
  std::string output;

  bool operator==(const Outcome& other) const {
    return result == other.result && output == other.output;
  }
};

inline void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << outcome.result << ", printing:\n" << outcome.output;
}

template <typename Call>
Outcome observe(Call call) {
  int result = 0;
  const std::string output = testkit::captureOutput([&] { result = call(); });
  return {result, output};
}

}  // namespace camcfg::tests

#endif
