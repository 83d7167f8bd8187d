#ifndef CAMCFG_TORTURE_HARNESS_OPTIONS_H
#define CAMCFG_TORTURE_HARNESS_OPTIONS_H

#include <cstdint>

namespace camcfg::torture {

/// What every program takes: `[--long] [--seed N]`.
struct Options {
  bool longRun = false;
  std::uint32_t seed = 0;  ///< a new one each time unless given
};

/// What `main` does: reads the command line and runs the program.
/// @return its status; 2 when the command line is wrong, 1 when the program cannot go on,
///         either reported on standard error
int runTorture(int argc, char** argv, int (*program)(const Options&));

}  // namespace camcfg::torture

#endif
