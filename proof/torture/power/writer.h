#ifndef CAMCFG_TORTURE_POWER_WRITER_H
#define CAMCFG_TORTURE_POWER_WRITER_H

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "torture/tracer/traced.h"

namespace camcfg::torture {

/// A system call that changes a file of the device.
struct Step {
  std::string call;
  std::string path;
  std::size_t size;  ///< bytes that it moves, 0 if it moves none
};

/// Where the power fails: before a step, counted from 0, or within it after a number of its bytes
/// have arrived.
struct Cut {
  int step;
  std::optional<std::size_t> bytes;
};

/// Makes a child that is not yet followed.
using MakeChild = std::function<std::unique_ptr<Traced>()>;

/// Lets the child end by itself.
/// @param most  bytes that each file can receive, whatever is asked for
/// @return the steps that it made
std::vector<Step> stepsOf(const MakeChild& make, std::size_t most);

/// Ends the child at the cut.
/// @return whether it came that far
bool cutAt(const MakeChild& make, const Cut& cut);

/// The cuts before each step and in the middle of each that moves bytes.
std::vector<Cut> cutsOf(const std::vector<Step>& steps);

}  // namespace camcfg::torture

#endif
