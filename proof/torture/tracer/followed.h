#ifndef CAMCFG_TORTURE_TRACER_FOLLOWED_H
#define CAMCFG_TORTURE_TRACER_FOLLOWED_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "torture/tracer/call_filter.h"
#include "torture/tracer/known_calls.h"

namespace camcfg::torture {

/// A system call that a followed program is about to make on the device, or one that flushes it.
struct DeviceCall {
  const KnownCall* known;  ///< none for sync() and syncfs()
  pid_t thread;            ///< that makes it
  std::string path;        ///< from the device's root; empty for a flush
  std::string toPath;      ///< the new name of what is renamed or linked
  int descriptor;          ///< of the file; below 0 if it is found by its path
  std::size_t size;        ///< bytes to be moved
  int flags;               ///< of an opening
  bool flushes;            ///< makes durable what was written
  bool isOfOneMedium;      ///< a flush that can fail
  bool changes;            ///< opens for writing, changes a file or directory, or flushes
};

/// What becomes of it.
struct Fate {
  enum Kind { Pass, Fail, End, EndAfter, Interrupt, Terminate } kind = Pass;
  int error = 0;          ///< Fail
  std::size_t bytes = 0;  ///< EndAfter: how many bytes are moved before the end
};

/// A program that runs on a device, followed through all its processes and threads. Whatever
/// flushes returns at once.
class Followed {
 public:
  using Decide = std::function<Fate(const DeviceCall&)>;
  using Returned = std::function<void(const DeviceCall&, std::int64_t result)>;

  /// @param root     the device as the host sees it
  /// @param program  its path and its arguments
  /// @param output   file of the host that receives what it prints
  /// @param attention  which calls can be decided about
  Followed(std::string root, std::vector<std::string> program, const std::string& output,
           Attention attention = Attention::Changes);
  ~Followed();
  Followed(const Followed&) = delete;
  Followed& operator=(const Followed&) = delete;

  /// Runs it to its end.
  /// @param decide    is asked before each call on the device
  /// @param returned  gets the result of each that changes something
  /// @return its exit status; 128 and the signal's number if a signal ended it
  int run(const Decide& decide, const Returned& returned = {});

 private:
  struct Pending {
    DeviceCall call{};
    bool ends = false;
  };

  void stopped(pid_t thread, int status, const Decide& decide, const Returned& returned);
  void entered(pid_t thread, const Decide& decide, const Returned& returned);
  void carryOut(const Fate& fate, const DeviceCall& call, const Returned& returned);
  void left(pid_t thread, const Returned& returned);
  void goOn(pid_t thread, bool toReturn = false, int signal = 0) const;
  void end();
  bool describe(pid_t thread, DeviceCall& call) const;
  std::string hostPath(pid_t thread, int directory, const std::string& path) const;
  bool onDevice(std::string& path) const;

  const std::string root_;
  pid_t child_ = -1;
  int status_ = 0;
  bool ended_ = false;
  std::map<pid_t, Pending> pending_;  ///< calls whose return is awaited
  std::map<pid_t, bool> known_;       ///< threads that have been seen
};

/// Runs a program as Followed does, but only looks at its end.
/// @return its process, to be waited for
pid_t startUnfollowed(std::vector<std::string> program, const std::string& output);

}  // namespace camcfg::torture

#endif
