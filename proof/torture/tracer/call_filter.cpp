#include "torture/tracer/call_filter.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <vector>

#include "torture/tracer/known_calls.h"

namespace camcfg::torture {
namespace {

bool filter(const std::vector<long>& numbers, unsigned action) {
  std::vector<sock_filter> program = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
  for (const long number : numbers) {
    program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 1));
    program.push_back(BPF_STMT(BPF_RET | BPF_K, action));
  }
  program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog all{static_cast<unsigned short>(program.size()), program.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &all) == 0;
}

}  // namespace

bool filterKnownCalls() {
  std::vector<long> numbers = knownNumbers();
  numbers.insert(numbers.end(), {SYS_sync, SYS_syncfs});
  return filter(numbers, SECCOMP_RET_TRACE);
}

bool filterFlushes() {
  return filter({SYS_sync, SYS_syncfs, SYS_fsync, SYS_fdatasync}, SECCOMP_RET_ERRNO);
}

}  // namespace camcfg::torture
