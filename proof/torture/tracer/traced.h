#ifndef CAMCFG_TORTURE_TRACER_TRACED_H
#define CAMCFG_TORTURE_TRACER_TRACED_H

#include <sys/types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "torture/tracer/known_calls.h"

namespace camcfg::torture {

/// A system call on the device's files that is about to be made.
struct FileCall {
  const KnownCall* known;
  std::string path;      ///< from the device's root
  bool named = false;    ///< finds its file by a path, not by a descriptor
  bool writes = false;   ///< opens for writing, or changes a file or directory
  std::size_t size = 0;  ///< bytes to be moved
};

/// What becomes of it.
struct Verdict {
  enum Kind { Pass, Fail, End, EndAfter } kind = Pass;
  int error = 0;          ///< Fail: the error; a close still closes
  std::size_t bytes = 0;  ///< EndAfter: how many bytes are moved before the child is ended
};

using Judge = std::function<Verdict(const FileCall&)>;

/// A child inside a device, followed from its start. Ended with this object if it has not ended.
class Traced {
 public:
  /// The child runs `work` with the device as its root and ends with the status that it returns.
  Traced(std::string hostRoot, const std::function<int()>& work);
  /// The child becomes a program, which may enter the device by itself.
  Traced(std::string hostRoot, const std::vector<std::string>& program);
  ~Traced();
  Traced(const Traced&) = delete;
  Traced& operator=(const Traced&) = delete;

  /// Runs the child on, without looking at it, to its next pause or its end.
  void run();
  /// The same with each system call on the device's files judged.
  void run(const Judge& judge);

  bool ended() const { return ended_; }
  /// Exit status; 128 and the signal's number for a child that a signal ended.
  int status() const { return status_; }

 private:
  void start();
  bool resume(int request);
  bool waitForStop();
  void judgeCall(const Judge& judge);
  void carryOut(const Verdict& verdict, const FileCall& call);
  void finishCall();
  void end();
  bool describe(const struct SystemCall& call, FileCall& described) const;
  std::string pathOf(int descriptor) const;

  const std::string hostRoot_;
  pid_t child_ = -1;
  bool ended_ = false;
  int status_ = 0;
  int signal_ = 0;   ///< to be delivered when the child goes on
  Verdict pending_;  ///< what is to be done when the call under way returns
};

/// Called by the child: waits for the parent's next run().
void pauseHere();

}  // namespace camcfg::torture

#endif
