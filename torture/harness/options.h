#ifndef CAMCFG_TORTURE_HARNESS_OPTIONS_H
#define CAMCFG_TORTURE_HARNESS_OPTIONS_H

#include <cstdint>

namespace camcfg::torture {

/// What every program takes: `[--long] [--seed N]`.
struct Options {
  bool longRun = false;
  std::uint32_t seed = 0;  ///< a new one each time unless given
};

/// Reads the command line; ends the program with status 2 when it makes no sense.
Options parseOptions(int argc, char** argv);

}  // namespace camcfg::torture

#endif
