#include "torture/tracer/traced.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "torture/harness/child.h"
#include "torture/tracer/process_view.h"
#include "torture/tracer/registers.h"

namespace camcfg::torture {

struct SystemCall {
  std::int64_t number;
  std::array<std::uint64_t, 6> arguments;
};

namespace {

constexpr int kNotTraced = 98;
constexpr int kCallStop = SIGTRAP | 0x80;

// The system call that the child is about to make; none at the end of one.
bool callEntered(pid_t child, SystemCall& call) {
  __ptrace_syscall_info info{};
  if (ptrace(PTRACE_GET_SYSCALL_INFO, child, sizeof info, &info) <= 0)
    throw std::runtime_error("system call");
  if (info.op != PTRACE_SYSCALL_INFO_ENTRY) return false;
  call.number = static_cast<std::int64_t>(info.entry.nr);
  for (std::size_t i = 0; i < call.arguments.size(); ++i) call.arguments[i] = info.entry.args[i];
  return true;
}

int argumentAsInt(const SystemCall& call, int index) {
  return static_cast<int>(call.arguments.at(static_cast<std::size_t>(index)));
}

bool isOfDevice(const std::string& path) {
  return path.rfind("/cfg", 0) == 0 || path.rfind("/app", 0) == 0;
}

}  // namespace

Traced::Traced(std::string hostRoot, const std::function<int()>& work)
    : hostRoot_(std::move(hostRoot)) {
  child_ = startInside(hostRoot_, [&work] {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) return kNotTraced;
    pauseHere();
    return work();
  });
  start();
}

Traced::Traced(std::string hostRoot, const std::vector<std::string>& program)
    : hostRoot_(std::move(hostRoot)) {
  child_ = startInside("/", [&program]() -> int {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) return kNotTraced;
    pauseHere();
    becomeProgram(program);
  });
  start();
}

void Traced::start() {
  if (!waitForStop()) throw std::runtime_error("the child cannot be traced");
  if (ptrace(PTRACE_SETOPTIONS, child_, nullptr,
             PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL) != 0)
    throw std::runtime_error("ptrace");
}

Traced::~Traced() {
  end();
}

void Traced::run() {
  while (resume(PTRACE_CONT) && signal_ != SIGSTOP) continue;
}

void Traced::run(const Judge& judge) {
  while (resume(PTRACE_SYSCALL) && signal_ != SIGSTOP)
    if (signal_ == kCallStop) judgeCall(judge);
}

// Neither a pause nor a stop for the tracer's sake is a signal to the child.
bool Traced::resume(int request) {
  if (ended_) return false;
  const bool ownStop = signal_ == SIGSTOP || signal_ == kCallStop || signal_ == SIGTRAP;
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  ptrace(static_cast<__ptrace_request>(request), child_, nullptr, ownStop ? 0L : long{signal_});
  return waitForStop();
}

bool Traced::waitForStop() {
  int status = 0;
  if (waitpid(child_, &status, 0) == child_ && WIFSTOPPED(status)) {
    signal_ = WSTOPSIG(status);
    return true;
  }
  ended_ = true;
  constexpr int kSignalled = 128;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
  return false;
}

void Traced::judgeCall(const Judge& judge) {
  SystemCall call{};
  FileCall described{};
  if (!callEntered(child_, call))
    finishCall();
  else if (describe(call, described))
    carryOut(judge(described), described);
}

void Traced::carryOut(const Verdict& verdict, const FileCall& call) {
  pending_ = verdict;
  if (verdict.kind == Verdict::End) {
    skipCall(child_);
    end();
  } else if (verdict.kind == Verdict::EndAfter) {
    replaceArgument(child_, call.known->size, verdict.bytes);
  } else if (verdict.kind == Verdict::Fail && call.known->kind != CallKind::Close) {
    skipCall(child_);
  }
}

void Traced::finishCall() {
  if (pending_.kind == Verdict::EndAfter) end();
  if (pending_.kind == Verdict::Fail) returnError(child_, pending_.error);
  pending_ = {};
}

void Traced::end() {
  if (ended_) return;
  kill(child_, SIGKILL);
  while (waitForStop()) continue;
}

bool Traced::describe(const SystemCall& call, FileCall& described) const {
  const KnownCall* known = findKnownCall(call.number);
  if (known == nullptr) return false;
  described.known = known;
  if (known->path >= 0) {
    described.path = textAt(child_, call.arguments.at(static_cast<std::size_t>(known->path)));
    const int base = known->directory < 0 ? AT_FDCWD : argumentAsInt(call, known->directory);
    described.named = !described.path.empty();
    if (!described.named)
      described.path = pathOf(base);
    else if (described.path.front() != '/')
      described.path = (base == AT_FDCWD ? "" : pathOf(base)) + "/" + described.path;
  } else {
    described.path = pathOf(argumentAsInt(call, known->descriptor));
  }
  if (!isOfDevice(described.path)) return false;

  if (known->size >= 0) described.size = call.arguments.at(static_cast<std::size_t>(known->size));
  const bool opensToWrite =
      known->flags >= 0 && (argumentAsInt(call, known->flags) & O_ACCMODE) != O_RDONLY;
  described.writes = opensToWrite || known->kind == CallKind::Write ||
                     known->kind == CallKind::Copy || known->kind == CallKind::Change;
  return true;
}

// Seen from outside, a file of the device lies below the directory of its root.
std::string Traced::pathOf(int descriptor) const {
  const std::string path = linkOf(child_, "fd/" + std::to_string(descriptor));
  return path.rfind(hostRoot_ + "/", 0) == 0 ? path.substr(hostRoot_.size()) : "";
}

void pauseHere() {
  raise(SIGSTOP);
}

}  // namespace camcfg::torture
