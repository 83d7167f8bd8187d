#ifndef CAMCFG_TESTS_SUPPORT_OTHER_PROGRAM_H
#define CAMCFG_TESTS_SUPPORT_OTHER_PROGRAM_H

#include <sys/types.h>

#include <functional>
#include <string>

namespace camcfg::tests {

/// A second program on the same device: a child process that stops where its work says so. It is
/// killed with this object if it has not ended.
class OtherProgram {
 public:
  /// @param work  what the child does; its result is the child's exit status
  explicit OtherProgram(const std::function<int(OtherProgram&)>& work);
  ~OtherProgram();
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  /// In the child: lets waitForPause() return, and waits for resume().
  void pause() const;

  void waitForPause() const;
  void resume() const;
  /// Kills the child and waits for its end.
  void kill();
  /// Lets the child go on to its end.
  /// @return its exit status; 128 and the signal's number if a signal ended it
  int finish();
  int wait();

 private:
  pid_t child_ = -1;
  int toParent_[2];
  int toChild_[2];
};

/// The lock files of this device, by name.
std::string lockFileOf(const std::string& name);

/// Whether another program could lock a file now, found out without waiting.
/// @param name  last part of the file's path; the file must have been locked before
bool othersMayRead(const std::string& name);
bool othersMayWrite(const std::string& name);

}  // namespace camcfg::tests

#endif
