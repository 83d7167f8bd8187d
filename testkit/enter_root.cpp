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

bool isSet(const std::string& setting, char value) {
  const int fd = open(("/proc/sys/" + setting).c_str(), O_RDONLY | O_CLOEXEC);
  char found = '\0';
  const bool isRead = fd >= 0 && read(fd, &found, 1) == 1;
  if (fd >= 0) close(fd);
  return isRead && found == value;
}

}  // namespace

bool enterUserNamespace(unsigned user, unsigned group) {
  const std::string ownUser = " " + std::to_string(geteuid()) + " 1";
  const std::string ownGroup = " " + std::to_string(getegid()) + " 1";
  return unshare(CLONE_NEWUSER) == 0 && writeFile("/proc/self/setgroups", "deny") &&
         writeFile("/proc/self/uid_map", std::to_string(user) + ownUser) &&
         writeFile("/proc/self/gid_map", std::to_string(group) + ownGroup);
}

std::string needsUserNamespaces() {
  struct Setting {
    const char* file;
    char forbids;
    const char* permits;
  };
  const Setting settings[] = {
      {"kernel/unprivileged_userns_clone", '0', "kernel.unprivileged_userns_clone=1"},
      {"kernel/apparmor_restrict_unprivileged_userns", '1',
       "kernel.apparmor_restrict_unprivileged_userns=0"},
      {"user/max_user_namespaces", '0', "user.max_user_namespaces=10000"}};
  const std::string needs = "needs root, or permission to make a user namespace";
  for (const Setting& setting : settings)
    if (isSet(setting.file, setting.forbids))
      return needs + ": 'sudo sysctl " + setting.permits + "' gives it";
  return needs + ", which a container or chroot may lack";
}

std::string enterRoot(const std::string& directory) {
  bool entered = chroot(directory.c_str()) == 0;
  if (!entered && errno == EPERM) {
    entered = enterUserNamespace(0, 0) && chroot(directory.c_str()) == 0;
    // Some systems let everybody make one, and then permit nothing in it.
    if (!entered && errno != ENOENT && errno != ENOTDIR) return needsUserNamespaces();
  }
  if (!entered || chdir("/") != 0) return std::strerror(errno);
  return "";
}

}  // namespace camcfg
