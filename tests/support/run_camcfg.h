#ifndef CAMCFG_TESTS_SUPPORT_RUN_CAMCFG_H
#define CAMCFG_TESTS_SUPPORT_RUN_CAMCFG_H

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace camcfg::tests {

/// What a run of the tool printed and returned.
struct ToolRun {
  int status;  ///< exit status; 128 and the signal's number for a run that a signal ended
  std::string out;
  std::string err;

  bool operator==(const ToolRun& other) const {
    return status == other.status && out == other.out && err == other.err;
  }
};

inline void PrintTo(const ToolRun& run, std::ostream* stream) {
  *stream << "status " << run.status << "\nstandard output:\n"
          << run.out << "standard error:\n"
          << run.err;
}

/// Runs a program of this system, found by PATH.
/// @param words    its name and its arguments
/// @param inChild  done in the child process right before
/// @return what it printed and returned; the status is 127 if it is not installed
ToolRun runCommand(const std::vector<std::string>& words,
                   const std::function<void()>& inChild = {});

/// Runs the tool that was built, under the emulator where there is one.
/// @param arguments  those after the program's name
/// @param inChild    done in the child process right before
/// @param program    the tool to run instead of the one that was built
ToolRun runCamcfg(const std::vector<std::string>& arguments,
                  const std::function<void()>& inChild = {}, const std::string& program = "");

/// What starts the tool that was built, under the emulator where there is one, and its arguments.
std::vector<std::string> camcfgCommand(const std::vector<std::string>& arguments);

/// Becomes the tool that was built. For a child process.
[[noreturn]] void becomeCamcfg(const std::vector<std::string>& arguments);

}  // namespace camcfg::tests

#endif
