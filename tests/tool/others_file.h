#ifndef CAMCFG_TESTS_TOOL_OTHERS_FILE_H
#define CAMCFG_TESTS_TOOL_OTHERS_FILE_H

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

namespace camcfg::tests {

/// Gives a file or directory to somebody else, who lets nobody write to it, and a file not be read
/// either.
/// @return why that is not possible; empty if it was done
inline std::string giveToAnother(const std::string& path) {
  constexpr unsigned kAnother = 65534;
  struct stat status {};
  if (geteuid() != 0 || lchown(path.c_str(), kAnother, kAnother) != 0 ||
      stat(path.c_str(), &status) != 0)
    return "only root can give files away";
  const mode_t mode = S_ISDIR(status.st_mode) ? 0755 : 0600;
  return chmod(path.c_str(), mode) == 0 ? "" : "chmod";
}

/// Gives up what lets root use everybody's files. For the child process that becomes the tool.
inline void obeyPermissions() {
  prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
  prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

}  // namespace camcfg::tests

#endif
