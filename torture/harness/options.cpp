#include "torture/harness/options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

namespace camcfg::torture {

Options parseOptions(int argc, char** argv) {
  Options options;
  options.seed = std::random_device()();
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--long") == 0) {
      options.longRun = true;
    } else if (std::strcmp(argv[i], "--seed") == 0 && i + 1 < argc) {
      options.seed = static_cast<std::uint32_t>(std::strtoul(argv[++i], nullptr, 10));
    } else {
      std::fprintf(stderr, "Usage: %s [--long] [--seed N]\n", argv[0]);
      std::exit(2);
    }
  }
  return options;
}

}  // namespace camcfg::torture
