#ifndef CAMCFG_TOOL_CLI_TERMINAL_H
#define CAMCFG_TOOL_CLI_TERMINAL_H

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace camcfg::tool::cli {

/// What a piece of text means to its reader.
enum class Tone { Plain, Good, Warning, Bad, Former, New };

/// What the word for a state means: "good", "damaged". Other words are plain.
Tone toneOfState(const std::string& word);

/// The text as a terminal colours it.
std::string coloured(const std::string& text, Tone tone);

/// How many characters of a text a terminal shows; colours take no room.
std::size_t shownWidth(const std::string& text);

/// Whether to colour what goes to a place.
/// @param when        "auto", "always" or "never"
/// @param isTerminal  whether the place is a terminal, which "auto" asks for; not one that calls
///                    itself "dumb", nor where NO_COLOR is set and not empty
bool wantsColours(const std::string& when, bool isTerminal);

/// Shows what a command is working on while this object lives: once that takes longer than a second,
/// on one line of a terminal, rewritten in its place and taken away at the end.
/// Threads: it has one of its own, so that the line also appears while the command waits.
class ProgressLine {
 public:
  /// @param command   its name, at the beginning of the line
  /// @param terminal  where it is shown; nothing is done if this is no terminal
  ProgressLine(std::string command, int terminal);
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

 private:
  void run();
  void show(const std::string& work, std::size_t seconds);

  const std::string name_;
  const int terminal_;
  std::size_t width_ = 0;  // of what is shown; the thread's until it has ended
  std::mutex mutex_;       // guards isOver_ and work_
  std::condition_variable ended_;
  bool isOver_ = false;
  std::string work_;
  std::thread thread_;
};

}  // namespace camcfg::tool::cli

#endif
