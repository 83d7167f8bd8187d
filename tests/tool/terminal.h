#ifndef CAMCFG_TESTS_TOOL_TERMINAL_H
#define CAMCFG_TESTS_TOOL_TERMINAL_H

#include <sys/types.h>

#include <functional>
#include <string>

namespace camcfg::tests {

/// A program that runs at a terminal of its own.
class Terminal {
 public:
  /// @param inChild  what is done at the terminal; standard input, output and error are its own
  explicit Terminal(const std::function<void()>& inChild);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  void type(const std::string& keys) const;
  /// Reads what the terminal shows until this is among it, or until the program ends.
  void readUntil(const std::string& part);
  /// Reads what the terminal shows until the program ends.
  /// @return all that it showed, with "\r\n" for each line break
  std::string readToEnd();
  /// The exit status of a program that has ended; 128 and the signal's number for one that a signal
  /// ended.
  int status() const { return status_; }

 private:
  bool readMore();

  pid_t child_;
  int terminal_ = -1;
  std::string shown_;
  int status_ = -1;
};

}  // namespace camcfg::tests

#endif
