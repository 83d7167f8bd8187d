#include "cli/global_options.h"

namespace camcfg::tool::cli {

const GlobalOption kHelpOption{"-h", "--help", nullptr, "Show this help"};
const GlobalOption kVersionOption{nullptr, "--version", nullptr, "Show the tool's version"};

const std::vector<GlobalOption>& globalOptions() {
  static const std::vector<GlobalOption> options = {
      {nullptr, kRoot, "DIR", "Work on the device tree under DIR"},
      {nullptr, kJson, nullptr, "Answer in JSON"},
      {nullptr,
       kColor,
       "WHEN",
       "Colour answers: auto (on a terminal), always or never",
       {"auto", "always", "never"}},
      {"-v", kVerbose, nullptr, "Show what the library prints and logs"}};
  return options;
}

}  // namespace camcfg::tool::cli
