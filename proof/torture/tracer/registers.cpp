#include "torture/tracer/registers.h"

#include <sys/ptrace.h>
#include <sys/user.h>

#include <cerrno>
#include <stdexcept>

namespace camcfg::torture {
namespace {

using Register = decltype(user_regs_struct::rax);

constexpr Register user_regs_struct::*kArguments[] = {
    &user_regs_struct::rdi, &user_regs_struct::rsi, &user_regs_struct::rdx,
    &user_regs_struct::r10, &user_regs_struct::r8,  &user_regs_struct::r9};

// Somebody else may have killed a child that is stopped.
bool isStill(long result) {
  if (result != 0 && errno != ESRCH) throw std::runtime_error("registers");
  return result == 0;
}

void setRegister(pid_t child, Register user_regs_struct::*name, long long value) {
  user_regs_struct registers{};
  if (!isStill(ptrace(PTRACE_GETREGS, child, nullptr, &registers))) return;
  registers.*name = static_cast<Register>(value);
  isStill(ptrace(PTRACE_SETREGS, child, nullptr, &registers));
}

}  // namespace

void skipCall(pid_t child) {
  setRegister(child, &user_regs_struct::orig_rax, -1);
}

void replaceArgument(pid_t child, int argument, std::size_t value) {
  setRegister(child, kArguments[argument], static_cast<long long>(value));
}

void returnError(pid_t child, int error) {
  setRegister(child, &user_regs_struct::rax, -error);
}

std::int64_t returnedBy(pid_t child) {
  user_regs_struct registers{};
  if (!isStill(ptrace(PTRACE_GETREGS, child, nullptr, &registers))) return -ESRCH;
  return static_cast<std::int64_t>(registers.rax);
}

}  // namespace camcfg::torture
