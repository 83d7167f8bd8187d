#include "torture/tracer/registers.h"

#include <sys/ptrace.h>
#include <sys/user.h>

#include <stdexcept>

namespace camcfg::torture {
namespace {

using Register = decltype(user_regs_struct::rax);

constexpr Register user_regs_struct::*kArguments[] = {
    &user_regs_struct::rdi, &user_regs_struct::rsi, &user_regs_struct::rdx,
    &user_regs_struct::r10, &user_regs_struct::r8,  &user_regs_struct::r9};

void setRegister(pid_t child, Register user_regs_struct::*name, long long value) {
  user_regs_struct registers{};
  if (ptrace(PTRACE_GETREGS, child, nullptr, &registers) != 0)
    throw std::runtime_error("registers");
  registers.*name = static_cast<Register>(value);
  if (ptrace(PTRACE_SETREGS, child, nullptr, &registers) != 0)
    throw std::runtime_error("registers");
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
  if (ptrace(PTRACE_GETREGS, child, nullptr, &registers) != 0)
    throw std::runtime_error("registers");
  return static_cast<std::int64_t>(registers.rax);
}

}  // namespace camcfg::torture
