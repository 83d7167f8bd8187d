#ifndef CAMCFG_TOOL_CLI_CHANNEL_H
#define CAMCFG_TOOL_CLI_CHANNEL_H

#include <csignal>
#include <string>

#include "cli/process.h"

namespace camcfg::tool::cli {

/// Thrown when a command that goes on is asked to end.
struct Stopped {};

/// How a command answers that goes on until it is stopped: by SIGINT or SIGTERM, or because nobody
/// reads its standard output any longer. From its making on these signals wait for wait() and
/// feed(). One at a time.
class Channel {
 public:
  /// @param name  of the command, at the beginning of what it says
  Channel(Streams& streams, const HostPrograms& programs, std::string name, bool json,
          const Look& look);

  /// Answers at once with records, a line each: as a JSON object, or as a template has it.
  /// @throws Refusal if standard output cannot be written to
  void answer(const Json& records, const Template& line) const;

  /// Answers with a whole answer, as a command does that ends: in JSON its value, on one line.
  /// @param json  the value in place of the answer's own
  /// @throws Refusal as above
  void answer(const Answer& answer, const Json& json) const;
  void answer(const Json& json) const { this->answer({Json(), {}}, json); }

  /// Runs a shell's command line on the system that the tool was started on, with the same lines on
  /// its standard input, and waits until it ends. If it fails, that is said on standard error.
  void feed(const std::string& commandLine, const Json& records, const Template& line) const;

  /// Says a line on standard error.
  void say(const std::string& text) const;

  /// Waits until a descriptor can be read, for so many milliseconds at most, or for ever if below 0.
  /// @return whether it can be read
  bool wait(int descriptor, int milliseconds) const;

  /// Waits for so many milliseconds, whether anybody reads standard output or not.
  void pause(int milliseconds) const;

 private:
  std::string lines(const Json& records, const Template& line, const Look& look) const;
  void takeSignals() const;

  Streams& streams_;
  const HostPrograms& programs_;
  const std::string name_;
  const bool json_;
  const Look look_;
  sigset_t signals_{};
  Descriptor arrived_;  // where signals are read
};

}  // namespace camcfg::tool::cli

#endif
