#ifndef CAMCFG_TESTS_TOOL_SMALL_DISK_H
#define CAMCFG_TESTS_TOOL_SMALL_DISK_H

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "testkit/enter_root.h"

namespace camcfg::tests {

/// A file system of its own in a directory, seen by this process and its children only.
class SmallDisk {
 public:
  /// @param size  as "mount" takes it: "16k"
  SmallDisk(std::string directory, const char* size) : directory_(std::move(directory)) {
    const std::string options = std::string("size=") + size;
    const bool apart =
        unshare(CLONE_NEWNS) == 0 || (enterRoot("/").empty() && unshare(CLONE_NEWNS) == 0);
    mounted_ = apart && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount("none", directory_.c_str(), "tmpfs", 0, options.c_str()) == 0;
    if (!mounted_)
      fault_ = std::string("needs root or user namespaces, and no chroot around them: ") +
               std::strerror(errno);
  }
  ~SmallDisk() {
    if (mounted_) umount2(directory_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

  /// Why this process may not mount; empty if it was mounted.
  const std::string& fault() const { return fault_; }

  bool makeReadOnly() const {
    return mount("none", directory_.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) == 0;
  }

 private:
  std::string directory_;
  std::string fault_;
  bool mounted_ = false;
};

}  // namespace camcfg::tests

#endif
