#include "torture/harness/options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <optional>
#include <random>

namespace camcfg::torture {
namespace {

std::optional<Options> parse(int argc, char** argv) {
  Options options;
  options.seed = std::random_device()();
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--long") == 0) {
      options.longRun = true;
    } else if (std::strcmp(argv[i], "--seed") == 0 && i + 1 < argc) {
      options.seed = static_cast<std::uint32_t>(std::strtoul(argv[++i], nullptr, 10));
    } else {
      return std::nullopt;
    }
  }
  return options;
}

}  // namespace

int runTorture(int argc, char** argv, int (*program)(const Options&)) {
  try {
    const auto options = parse(argc, argv);
    if (options) return program(*options);
    std::fprintf(stderr, "Usage: %s [--long] [--seed N]\n", argv[0]);
    return 2;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
    return 1;
  }
}

}  // namespace camcfg::torture
