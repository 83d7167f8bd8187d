#ifndef CAMCFG_TOOL_CLI_GLOBAL_OPTIONS_H
#define CAMCFG_TOOL_CLI_GLOBAL_OPTIONS_H

#include <string>
#include <vector>

#include "cli/command.h"

namespace camcfg::tool::cli {

constexpr char kRoot[] = "--root";
constexpr char kJson[] = "--json";
constexpr char kVerbose[] = "--verbose";
constexpr char kColor[] = "--color";

/// An option that stands before or behind any command.
struct GlobalOption {
  const char* shortName;  ///< "-v"; null if it has none
  const char* name;       ///< "--verbose"
  const char* value;      ///< "DIR"; null: it takes none
  const char* help;
  std::vector<const char*> values{};  ///< what it takes; none: a directory

  /// As help texts name it: "-v,--verbose".
  std::string names() const {
    return shortName == nullptr ? name : std::string(shortName) + "," + name;
  }
};

/// All of them, but for those that ask for a text in place of a command.
const std::vector<GlobalOption>& globalOptions();

/// Those that ask for a text in place of a command: help and the tool's version.
extern const GlobalOption kHelpOption;
extern const GlobalOption kVersionOption;

}  // namespace camcfg::tool::cli

#endif
