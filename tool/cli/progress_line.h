#ifndef CAMCFG_TOOL_CLI_PROGRESS_LINE_H
#define CAMCFG_TOOL_CLI_PROGRESS_LINE_H

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace camcfg::tool::cli {

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
  void remove() const;

  const std::string name_;
  const int terminal_;
  std::size_t width_ = 0;  // of what is shown; the thread's, and at its end remove()'s
  std::mutex mutex_;       // guards isOver_ and work_
  std::condition_variable ended_;
  bool isOver_ = false;
  std::string work_;
  std::thread thread_;
};

}  // namespace camcfg::tool::cli

#endif
