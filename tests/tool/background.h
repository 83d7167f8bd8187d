#ifndef CAMCFG_TESTS_TOOL_BACKGROUND_H
#define CAMCFG_TESTS_TOOL_BACKGROUND_H

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

namespace camcfg::tests {

/// A run of the tool that goes on while a test does something else. Ended with this object.
class Background {
 public:
  /// @param inChild  done in the child process right before
  explicit Background(const std::vector<std::string>& arguments,
                      const std::function<void()>& inChild = {});
  ~Background();
  Background(const Background&) = delete;
  Background& operator=(const Background&) = delete;

  pid_t process() const { return child_; }

  /// Reads standard output until it holds a text, or for so long without a byte.
  /// @return whether it holds it
  bool shows(const std::string& text, int milliseconds = kLongest);
  /// Reads standard error until it holds a text.
  bool says(const std::string& text) { return readUntil(err_, text, kLongest); }
  /// What it has printed since the last call, as far as it was read.
  std::string taken();

  void stopReading();
  void signal(int number) const;
  /// Waits for its end.
  /// @return the exit status; 128 and the signal's number if a signal ended it
  int end();
  int end(int number) {
    signal(number);
    return end();
  }

 private:
  static constexpr int kLongest = 60'000;
  struct Output {
    int fd;
    std::string text;
  };

  static bool readUntil(Output& output, const std::string& text, int milliseconds);

  pid_t child_;
  Output out_{-1, ""};
  Output err_{-1, ""};
};

}  // namespace camcfg::tests

#endif
