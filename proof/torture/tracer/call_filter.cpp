#include "torture/tracer/call_filter.h"

#include <fcntl.h>
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

using Program = std::vector<sock_filter>;

sock_filter load(std::size_t offset) {
  return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned>(offset));
}

// What follows is passed over unless the call has this number.
void add(Program& program, long number, const Program& then) {
  program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0,
                             static_cast<unsigned char>(then.size())));
  program.insert(program.end(), then.begin(), then.end());
}

Program always(unsigned action) {
  return {BPF_STMT(BPF_RET | BPF_K, action)};
}

// The lower half of the argument: flags have no upper one.
Program ifOpensToChange(int argument) {
  const std::size_t flags =
      offsetof(seccomp_data, args) + static_cast<std::size_t>(argument) * sizeof(__u64);
  return {load(flags), BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_ACCMODE | O_CREAT | O_TRUNC, 1, 0),
          BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
          BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRACE)};
}

bool install(Program program) {
  program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog all{static_cast<unsigned short>(program.size()), program.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
         syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, &all) == 0;
}

bool mayChange(const KnownCall& call) {
  return call.kind == CallKind::Write || call.kind == CallKind::Copy ||
         call.kind == CallKind::Change;
}

}  // namespace

bool filterCalls(Attention attention) {
  Program program = {load(offsetof(seccomp_data, nr))};
  for (const long number : {SYS_sync, SYS_syncfs}) add(program, number, always(SECCOMP_RET_TRACE));
  for (const long number : knownNumbers()) {
    const KnownCall& call = *findKnownCall(number);
    if (attention == Attention::EveryCall || mayChange(call))
      add(program, number, always(SECCOMP_RET_TRACE));
    else if (call.kind == CallKind::Open)
      add(program, number, ifOpensToChange(call.flags));
  }
  return install(program);
}

bool filterFlushes() {
  Program program = {load(offsetof(seccomp_data, nr))};
  for (const long number : {SYS_sync, SYS_syncfs, SYS_fsync, SYS_fdatasync})
    add(program, number, always(SECCOMP_RET_ERRNO));
  return install(program);
}

}  // namespace camcfg::torture
