#ifndef CAMCFG_TOOL_CLI_HOST_PROGRAMS_H
#define CAMCFG_TOOL_CLI_HOST_PROGRAMS_H

#include <string>
#include <vector>

#include "base/descriptor.h"
#include "cli/answer.h"

namespace camcfg::tool::cli {

/// The programs of the system that the tool was started on. Make one before the device's root is
/// entered: from inside they are out of reach.
class HostPrograms {
 public:
  HostPrograms();

  /// Runs a program found by PATH, without a shell, and gives it a text on standard input.
  /// @return what it wrote to standard output
  /// @throws Refusal  it is not installed, could not be started, or failed
  std::string passThrough(const HostProgram& program, const std::string& text) const;

 private:
  void become(const std::vector<std::string>& words) const;

  Descriptor root_;
};

}  // namespace camcfg::tool::cli

#endif
