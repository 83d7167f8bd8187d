#ifndef CAMCFG_TOOL_CLI_GLOBAL_OPTIONS_H
#define CAMCFG_TOOL_CLI_GLOBAL_OPTIONS_H

#include <string>
#include <vector>

namespace camcfg::tool::cli {

constexpr char kHelp[] = "--help";
constexpr char kVersion[] = "--version";
constexpr char kRoot[] = "--root";
constexpr char kJson[] = "--json";
constexpr char kVerbose[] = "--verbose";
constexpr char kColor[] = "--color";

/// An option that may be before or after any command.
struct GlobalOption {
  std::string name;   ///< "--verbose"
  const char* value;  ///< "DIR"; null: it takes none
  const char* help;
  const char* shortName = nullptr;    ///< "-v"; null if it has none
  std::vector<std::string> values{};  ///< what it takes; none: a directory

  /// Whether it is given in place of a command.
  bool asksForText() const { return name == kHelp || name == kVersion; }
  /// As help texts name it: "-v,--verbose".
  std::string names() const {
    return shortName == nullptr ? name : std::string(shortName) + "," + name;
  }
};

/// All of them.
inline const std::vector<GlobalOption>& globalOptions() {
  static const std::vector<GlobalOption> options = {
      {kHelp, nullptr, "Show this help", "-h"},
      {kVersion, nullptr, "Show the tool's version"},
      {kRoot, "DIR", "Work on the device tree under DIR"},
      {kJson, nullptr, "Answer in JSON"},
      {kColor,
       "WHEN",
       "Colour answers: auto (on a terminal), always or never",
       nullptr,
       {"auto", "always", "never"}},
      {kVerbose, nullptr, "Show what the library prints and logs", "-v"}};
  return options;
}

/// The option of this name; null if there is none.
inline const GlobalOption* findGlobalOption(const std::string& name) {
  for (const GlobalOption& option : globalOptions())
    if (name == option.name) return &option;
  return nullptr;
}

}  // namespace camcfg::tool::cli

#endif
