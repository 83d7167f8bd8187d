#ifndef CAMCFG_TESTS_TOOL_LINT_DEVICE_CASES_H
#define CAMCFG_TESTS_TOOL_LINT_DEVICE_CASES_H

#include <ostream>
#include <string>
#include <vector>

#include "camcfg/testkit/device_root.h"

namespace camcfg::tests {

/// What is done to a device with clean files in all places.
using Damage = void (*)(const testkit::DeviceRoot& device);

/// A device that has a hazard, and one much like it that has none.
struct DeviceCase {
  const char* rule;
  Damage hazard;
  Damage harmless;
  std::string found;  ///< all lines for the device with the hazard
};

inline void PrintTo(const DeviceCase& deviceCase, std::ostream* out) {
  *out << deviceCase.rule;
}

std::vector<DeviceCase> deviceCases();

}  // namespace camcfg::tests

#endif
