#include "torture/tracer/followed.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "torture/tracer/process_view.h"
#include "torture/tracer/registers.h"

namespace camcfg::torture {
namespace {

constexpr int kNotStarted = 127;
constexpr int kCallStop = SIGTRAP | 0x80;

void sendTo(const std::string& output) {
  const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
  dup2(nothing, STDIN_FILENO);
  dup2(file, STDOUT_FILENO);
  dup2(file, STDERR_FILENO);
}

[[noreturn]] void become(std::vector<std::string>& program) {
  std::vector<char*> words;
  words.reserve(program.size() + 1);
  for (std::string& word : program) words.push_back(word.data());
  words.push_back(nullptr);
  execv(words.front(), words.data());
  _exit(kNotStarted);
}

pid_t forked() {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  return child;
}

bool isFlush(long number) {
  return number == SYS_sync || number == SYS_syncfs;
}

bool opensToChange(const DeviceCall& call) {
  return call.known->kind == CallKind::Open && (call.flags & O_PATH) == 0 &&
         ((call.flags & O_ACCMODE) != O_RDONLY || (call.flags & (O_CREAT | O_TRUNC)) != 0);
}

bool isChange(const DeviceCall& call) {
  const CallKind kind = call.known->kind;
  return kind == CallKind::Write || kind == CallKind::Copy || kind == CallKind::Change ||
         opensToChange(call);
}

}  // namespace

pid_t startUnfollowed(std::vector<std::string> program, const std::string& output) {
  const pid_t child = forked();
  if (child != 0) return child;
  setpgid(0, 0);
  sendTo(output);
  if (!filterFlushes()) _exit(kNotStarted);
  become(program);
}

Followed::Followed(std::string root, std::vector<std::string> program, const std::string& output,
                   Attention attention)
    : root_(std::move(root)), child_(forked()) {
  if (child_ == 0) {
    setpgid(0, 0);
    sendTo(output);
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(kNotStarted);
    raise(SIGSTOP);
    if (!filterCalls(attention)) _exit(kNotStarted);
    become(program);
  }
  int status = 0;
  constexpr long kOptions = PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACESECCOMP | PTRACE_O_TRACEFORK |
                            PTRACE_O_TRACEVFORK | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC |
                            PTRACE_O_EXITKILL;
  if (waitpid(child_, &status, 0) != child_ || !WIFSTOPPED(status) ||
      ptrace(PTRACE_SETOPTIONS, child_, nullptr, kOptions) != 0)
    throw std::runtime_error("the program cannot be followed");
  known_[child_] = true;
}

Followed::~Followed() {
  end();
  while (waitpid(-1, nullptr, __WALL) > 0) continue;
}

int Followed::run(const Decide& decide, const Returned& returned) {
  goOn(child_);
  int status = 0;
  for (pid_t thread; (thread = waitpid(-1, &status, __WALL)) > 0;) {
    constexpr int kSignalled = 128;
    if (WIFSTOPPED(status))
      stopped(thread, status, decide, returned);
    else if (thread == child_)
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
  }
  if (errno != ECHILD) throw std::runtime_error("waitpid");
  ended_ = true;
  return status_;
}

void Followed::stopped(pid_t thread, int status, const Decide& decide, const Returned& returned) {
  const int signal = WSTOPSIG(status);
  const int event = status >> 16;
  const bool isNew = !std::exchange(known_[thread], true);
  if (event == PTRACE_EVENT_SECCOMP)
    entered(thread, decide, returned);
  else if (signal == kCallStop)
    left(thread, returned);
  else
    goOn(thread, false, event != 0 || (isNew && signal == SIGSTOP) ? 0 : signal);
}

void Followed::entered(pid_t thread, const Decide& decide, const Returned& returned) {
  DeviceCall call{};
  if (ended_ || !describe(thread, call)) return goOn(thread);
  carryOut(decide(call), call, returned);
}

void Followed::carryOut(const Fate& fate, const DeviceCall& call, const Returned& returned) {
  if (fate.kind == Fate::End) return end();
  if (fate.kind == Fate::Interrupt) kill(-child_, SIGINT);
  if (fate.kind == Fate::Terminate) kill(child_, SIGTERM);
  if (fate.kind == Fate::Fail || call.flushes) {
    skipCall(call.thread);
    returnError(call.thread, fate.error);
    if (fate.kind != Fate::Fail && returned) returned(call, 0);
    return goOn(call.thread);
  }
  const bool endsAfter = fate.kind == Fate::EndAfter;
  if (endsAfter) replaceArgument(call.thread, call.known->size, fate.bytes);
  const bool isAwaited = endsAfter || (returned && call.changes);
  if (isAwaited) pending_[call.thread] = {call, endsAfter};
  goOn(call.thread, isAwaited);
}

void Followed::left(pid_t thread, const Returned& returned) {
  const auto found = pending_.find(thread);
  if (found == pending_.end()) return goOn(thread);
  const Pending pending = found->second;
  pending_.erase(found);
  if (pending.ends) return end();
  returned(pending.call, returnedBy(thread));
  goOn(thread);
}

void Followed::goOn(pid_t thread, bool toReturn, int signal) const {
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  ptrace(toReturn ? PTRACE_SYSCALL : PTRACE_CONT, thread, nullptr, long{signal});
}

// All of its processes, as a failure of the power would.
void Followed::end() {
  if (std::exchange(ended_, true)) return;
  kill(-child_, SIGKILL);
}

bool Followed::describe(pid_t thread, DeviceCall& call) const {
  __ptrace_syscall_info info{};
  if (ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) <= 0) return false;
  const auto argument = [&](int index) { return info.seccomp.args[index]; };
  const auto number = static_cast<long>(info.seccomp.nr);
  call = {findKnownCall(number), thread,         "", "", -1, 0, 0, isFlush(number),
          number == SYS_syncfs,  isFlush(number)};
  // Another one may belong to a child that works on a copy.
  if (call.flushes) return linkOf(thread, "root") == root_;
  const KnownCall& known = *call.known;
  const auto path = [&](int directory, int text) {
    return hostPath(thread, directory < 0 ? AT_FDCWD : static_cast<int>(argument(directory)),
                    textAt(thread, argument(text)));
  };
  if (known.path >= 0) {
    call.path = path(known.directory, known.path);
  } else {
    call.descriptor = static_cast<int>(argument(known.descriptor));
    call.path = linkOf(thread, "fd/" + std::to_string(call.descriptor));
  }
  if (!onDevice(call.path)) return false;
  if (known.toPath >= 0) {
    call.toPath = path(known.toDirectory, known.toPath);
    onDevice(call.toPath);
  }
  if (known.size >= 0) call.size = argument(known.size);
  if (known.flags >= 0) call.flags = static_cast<int>(argument(known.flags));
  call.changes = isChange(call);
  return true;
}

std::string Followed::hostPath(pid_t thread, int directory, const std::string& path) const {
  if (!path.empty() && path.front() == '/') {
    const std::string root = linkOf(thread, "root");
    return (root == "/" ? "" : root) + path;
  }
  const std::string base =
      linkOf(thread, directory == AT_FDCWD ? "cwd" : "fd/" + std::to_string(directory));
  return path.empty() ? base : base + "/" + path;
}

// Makes a path of the host one of the device, of its settings and its locks.
bool Followed::onDevice(std::string& path) const {
  if (path.rfind(root_ + "/", 0) != 0) return false;
  path.erase(0, root_.size());
  return path.rfind("/cfg", 0) == 0 || path.rfind("/run/", 0) == 0 || path.rfind("/app/", 0) == 0;
}

}  // namespace camcfg::torture
