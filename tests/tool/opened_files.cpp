#include "tool/opened_files.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstddef>
#include <iterator>
#include <set>
#include <stdexcept>

namespace camcfg::tests {
namespace {

// The tracer sees openings, and nothing else.
bool filterOpenings() {
  sock_filter rules[] = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
                         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 1),
                         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE),
                         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)};
  const sock_fprog program{std::size(rules), rules};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

std::string rootOf(pid_t thread) {
  char path[PATH_MAX];
  const std::string link = "/proc/" + std::to_string(thread) + "/root";
  const ssize_t length = readlink(link.c_str(), path, sizeof path);
  return {path, length < 0 ? 0 : static_cast<std::size_t>(length)};
}

std::string textAt(pid_t thread, std::uint64_t address) {
  char text[256] = {};
  const iovec here{text, sizeof text - 1};
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  const iovec there{reinterpret_cast<void*>(address), here.iov_len};
  // Less is read at the end of the memory.
  process_vm_readv(thread, &here, 1, &there, 1, 0);
  return text;
}

void note(pid_t thread, const std::string& root, OpenedFiles& files) {
  __ptrace_syscall_info info{};
  if (ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) <= 0)
    throw std::runtime_error("system call");
  const auto flags = static_cast<int>(info.seccomp.args[2]);
  if ((flags & O_ACCMODE) != O_RDONLY || (flags & (O_PATH | O_DIRECTORY)) != 0) return;
  const std::string path = textAt(thread, info.seccomp.args[1]);
  ++(rootOf(thread) == root ? files.onDevice : files.elsewhere)[path];
}

pid_t startTraced(const std::function<void()>& become) {
  const pid_t child = fork();
  if (child != 0) return child;
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
  raise(SIGSTOP);
  if (filterOpenings()) become();
  _exit(1);
}

}  // namespace

OpenedFiles filesOpenedBy(const std::string& root, const std::function<void()>& become) {
  OpenedFiles files;
  const pid_t child = startTraced(become);
  constexpr long kOptions = PTRACE_O_TRACESECCOMP | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                            PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;
  int status = 0;
  if (waitpid(child, &status, 0) != child || !WIFSTOPPED(status) ||
      ptrace(PTRACE_SETOPTIONS, child, nullptr, kOptions) != 0)
    throw std::runtime_error("the program cannot be followed");
  ptrace(PTRACE_CONT, child, nullptr, nullptr);
  std::set<pid_t> known = {child};
  for (pid_t thread; (thread = waitpid(-1, &status, __WALL)) > 0;) {
    if (!WIFSTOPPED(status)) {
      if (thread == child) files.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      continue;
    }
    const int event = status >> 16;
    if (event == PTRACE_EVENT_SECCOMP) note(thread, root, files);
    // A new thread begins with a stop of its own, and a stop for an event is no signal.
    const bool isOwnStop = event != 0 || known.insert(thread).second;
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    ptrace(PTRACE_CONT, thread, nullptr, isOwnStop ? 0L : long{WSTOPSIG(status)});
  }
  return files;
}

}  // namespace camcfg::tests
