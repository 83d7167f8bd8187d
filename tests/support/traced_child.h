#ifndef CAMCFG_TESTS_SUPPORT_TRACED_CHILD_H
#define CAMCFG_TESTS_SUPPORT_TRACED_CHILD_H

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

namespace camcfg::tests {

/// A child process that does some work, and stops wherever its tracer lets it go to.
class TracedChild {
 public:
  /// The child stops before the work.
  explicit TracedChild(const std::function<void()>& work) : child_(fork()) {
    if (child_ == 0) {
      ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      raise(SIGSTOP);
      work();
      _exit(0);
    }
    wait();
    ptrace(PTRACE_SETOPTIONS, child_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  }

  pid_t id() const { return child_; }
  bool isStopped() const { return WIFSTOPPED(status_); }
  bool isAtSystemCall() const { return isStopped() && WSTOPSIG(status_) == (SIGTRAP | 0x80); }
  bool hasExited() const { return WIFEXITED(status_); }

  /// Lets it go on to where its next system call begins or ends, or to its end.
  void goOn() {
    ptrace(PTRACE_SYSCALL, child_, nullptr, nullptr);
    wait();
  }

  void killNow() {
    kill(child_, SIGKILL);
    wait();
  }

 private:
  void wait() { waitpid(child_, &status_, 0); }

  pid_t child_;
  int status_ = 0;
};

}  // namespace camcfg::tests

#endif
