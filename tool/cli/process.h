#ifndef CAMCFG_TOOL_CLI_PROCESS_H
#define CAMCFG_TOOL_CLI_PROCESS_H

#include <string>
#include <vector>

#include "base/host.h"
#include "cli/answer.h"
#include "cli/terminal.h"

namespace camcfg::tool::cli {

/// Keeps apart what the tool answers and what anybody else prints. Make one before anything is
/// printed or opened: from then on descriptor 1, where the library prints, is no longer the tool's
/// standard output.
class Streams {
 public:
  Streams();

  /// From now on what the library prints and logs is shown on standard error.
  void showLibraryOutput();

  /// Writes to the tool's standard output. Where nobody reads it any longer, this ends the tool as
  /// endUnread() does, unless the device was changed.
  /// @throws Refusal if that is not possible
  void answer(const std::string& text);

  /// Writes to the tool's standard output unless an earlier answer could not be written, or not all
  /// of it. If this one cannot, nothing is said of that.
  void tryToAnswer(const std::string& text);

  /// Ends the tool as a program ends that writes where nobody reads: by SIGPIPE.
  /// @throws Refusal if the caller had that ignored
  [[noreturn]] static void endUnread();

  /// The tool's standard output.
  int descriptor() const { return answers_.get(); }

  /// Gives the tool's standard output back its place, and SIGPIPE its effect, for a program that this
  /// one becomes.
  void giveBackStandardOutput() const;

  /// From now on a reader who has stopped reading stops the tool no longer: after a second it goes on,
  /// while its text waits to be read.
  static void waitForNoReader();

  /// Whether the tool's standard output is a terminal.
  bool answersToTerminal() const;

  /// Colours what is written to standard error from now on.
  /// @param when  see wantsColours
  static void colourMessages(const std::string& when);

  /// A text as a message has it: on one line, without overlong words.
  static std::string lineOf(const std::string& text);

  /// Writes "camcfg: TEXT" as one line to standard error. That nobody can read it changes nothing.
  /// @param tone  what it means, for the colour of its beginning
  static void message(const std::string& text, Tone tone = Tone::Plain);

 private:
  Descriptor answers_;
  bool isBroken_ = false;
};

/// The programs of the system that the tool was started on. Make one before the device's root is
/// entered: from inside they are out of reach.
class HostPrograms {
 public:
  HostPrograms();

  /// Starts a program found by PATH.
  /// @param in, out, err  its standard input, output and error
  /// @param fault         where the child process writes its errno if it cannot become the program;
  ///                      its status is 127 then
  /// @throws Refusal if there can be no process
  pid_t start(const std::vector<std::string>& words, int in, int out, int err, int fault) const;

 private:
  void become(const std::vector<std::string>& words) const;

  Descriptor root_;
};

}  // namespace camcfg::tool::cli

#endif
