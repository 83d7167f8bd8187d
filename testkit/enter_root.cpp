#include "testkit/enter_root.h"

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace camcfg {
namespace {

bool writeFile(const char* path, const std::string& text) {
  const int fd = open(path, O_WRONLY | O_CLOEXEC);
  if (fd < 0) return false;
  const bool written = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  return close(fd) == 0 && written;
}

bool enterUserNamespace() {
  const std::string user = std::to_string(geteuid());
  const std::string group = std::to_string(getegid());
  return unshare(CLONE_NEWUSER) == 0 && writeFile("/proc/self/setgroups", "deny") &&
         writeFile("/proc/self/uid_map", "0 " + user + " 1") &&
         writeFile("/proc/self/gid_map", "0 " + group + " 1");
}

}  // namespace

std::string enterRoot(const std::string& directory) {
  bool entered = chroot(directory.c_str()) == 0;
  if (!entered && errno == EPERM) {
    if (!enterUserNamespace()) return "needs root, or permission to make a user namespace";
    entered = chroot(directory.c_str()) == 0;
  }
  if (!entered || chdir("/") != 0) return std::strerror(errno);
  return "";
}

}  // namespace camcfg
