#ifndef CAMCFG_TOOL_CLI_STREAMS_H
#define CAMCFG_TOOL_CLI_STREAMS_H

#include <string>

#include "base/descriptor.h"
#include "cli/tone.h"

namespace camcfg::tool::cli {

/// Keeps apart what the tool answers and what anybody else prints. Make one before anything is
/// printed or opened: from then on descriptor 1, where the library prints, is no longer the tool's
/// standard output.
class Streams {
 public:
  Streams();

  /// From now on what the library prints and logs is shown on standard error.
  void showLibraryOutput();

  /// Writes to the tool's standard output.
  /// @throws Refusal if that is not possible
  void answer(const std::string& text) const;

  /// Whether the tool's standard output is a terminal.
  bool answersToTerminal() const;

  /// Colours what is written to standard error from now on.
  /// @param when  see wantsColours
  static void colourMessages(const std::string& when);

  /// Writes "camcfg: TEXT" as one line to standard error.
  /// @param tone  what it means, for the colour of its beginning
  static void message(const std::string& text, Tone tone = Tone::Plain);

 private:
  Descriptor answers_;
};

}  // namespace camcfg::tool::cli

#endif
