#ifndef CAMCFG_TOOL_BASE_OUTCOME_H
#define CAMCFG_TOOL_BASE_OUTCOME_H

#include <stdexcept>
#include <string>
#include <vector>

#include "base/json.h"

namespace camcfg::tool {

/// The tool's exit status.
enum class Status {
  Done = 0,
  Refused = 1,   ///< refused, not found, or not carried out
  Usage = 2,     ///< the command line makes no sense
  Unusable = 3,  ///< the device's files are unusable
  Degraded = 4,  ///< 'status' only: they can be used, but a copy is missing, broken or out of step
  NoDevice = 125,     ///< 'run' only: the device cannot be shown to the program
  NotRunnable = 126,  ///< 'run' only: the program cannot be run
  NotFound = 127,     ///< 'run' only: there is no such program
};

/// Ends a command. The text is one line: what, where and why.
class Refusal : public std::runtime_error {
 public:
  Refusal(Status status, const std::string& text) : std::runtime_error(text), status_(status) {}
  explicit Refusal(const std::string& text) : Refusal(Status::Refused, text) {}

  Status status() const { return status_; }

 private:
  Status status_;
};

/// What came of something, before anybody thinks of how to show it.
struct Outcome {                   // NOLINT(bugprone-exception-escape): moving a Json throws none
  Json value;                      ///< the whole answer, in its documented shape
  std::vector<std::string> notes;  ///< remarks, one line each, that belong on standard error
  Status status = Status::Done;
};

}  // namespace camcfg::tool

#endif
