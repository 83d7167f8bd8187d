#ifndef CAMCFG_TOOL_BASE_OUTCOME_H
#define CAMCFG_TOOL_BASE_OUTCOME_H

#include <cstddef>
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
  NotPrinted = 5,     ///< a change is in force, but could not be printed
  RolledBack = 6,     ///< 'try' only: the change was not confirmed
  NoDevice = 125,     ///< 'run' only: the device cannot be shown to the program
  NotRunnable = 126,  ///< 'run' only: the program cannot be run
  NotFound = 127,     ///< 'run' only: there is no such program
};

/// Ends a command. The text is one line: what, where and why.
class Refusal : public std::runtime_error {
 public:
  /// The place is the text's first word if that has a colon after it, or is a path or an option:
  /// "System/Rtsp: ...", "/cfg0/x.xml is ...", "--rules cannot ...".
  Refusal(Status status, const std::string& text);
  explicit Refusal(const std::string& text) : Refusal(Status::Refused, text) {}

  /// A refusal about an option, a file or a setting.
  /// @param place  where the text first names it
  static Refusal about(const std::string& place, const std::string& text,
                       Status status = Status::Refused);

  /// The same refusal with something before its text, such as the name of the command.
  Refusal after(const std::string& beginning, Status status) const;

  Status status() const { return status_; }
  /// What it is about; empty if that is not known.
  std::string place() const { return {what() + placeAt_, placeLength_}; }

 private:
  Refusal(Status status, const std::string& text, std::size_t placeAt, std::size_t placeLength)
      : std::runtime_error(text), status_(status), placeAt_(placeAt), placeLength_(placeLength) {}

  Status status_;
  // In the text: an exception must be copied without a failure.
  std::size_t placeAt_;
  std::size_t placeLength_;
};

/// Notes that a change of the device is complete: it is in force, whatever becomes of the answer.
/// To be called where changes are made, and by nobody who only shows what would change.
void noteChange();

/// Whether this run has changed the device.
bool changeWasMade();

/// What came of something, before anybody thinks of how to show it.
struct Outcome {                   // NOLINT(bugprone-exception-escape): moving a Json throws none
  Json value;                      ///< the whole answer, in its documented shape
  std::vector<std::string> notes;  ///< remarks, one line each, that belong on standard error
  Status status = Status::Done;
};

}  // namespace camcfg::tool

#endif
