#ifndef CAMCFG_TOOL_DEVICE_WATCHER_H
#define CAMCFG_TOOL_DEVICE_WATCHER_H

#include <functional>
#include <string>
#include <vector>

#include "base/host.h"

namespace camcfg::tool::device {

/// Waits until a descriptor can be read, for so many milliseconds at most, or for ever if below 0.
/// @return whether it can be read
using Wait = std::function<bool(int descriptor, int milliseconds)>;

/// Learns from the kernel that files were changed: in place, by a rename, by their directory's coming
/// back. Where the kernel does not say, it assumes so once a second.
class Watcher {
 public:
  /// @param paths  of the files, all in one directory
  explicit Watcher(std::vector<std::string> paths);

  /// From now on no change is missed until wait() returns. Call before the files are read.
  void arm();

  /// Waits until the files may have been changed and then left alone for 100 ms; for a second at
  /// most while they are changed all the time. An exception of `wait` ends it.
  /// @param isUneasy  whether to look again after a second in any case
  void wait(const Wait& wait, bool isUneasy) const;

 private:
  bool add(const std::string& path, unsigned events) const;
  void forgetEvents() const;

  const std::vector<std::string> paths_;
  const Descriptor events_;
  bool isArmed_ = false;
};

}  // namespace camcfg::tool::device

#endif
