#include "support/other_program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>

namespace camcfg::tests {
namespace {

void send(int fd) {
  const char mark = 'x';
  if (write(fd, &mark, 1) != 1) throw std::runtime_error("pipe");
}

void receive(int fd) {
  char mark = 0;
  if (read(fd, &mark, 1) != 1) throw std::runtime_error("the other program has ended");
}

bool mayLock(const std::string& name, short type) {
  const int fd = open(lockFileOf(name).c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) throw std::runtime_error("no lock file of " + name);
  struct flock range {};
  range.l_type = type;
  range.l_whence = SEEK_SET;
  range.l_len = 2;
  const bool free = fcntl(fd, F_OFD_SETLK, &range) == 0;
  close(fd);
  return free;
}

}  // namespace

OtherProgram::OtherProgram(const std::function<int(OtherProgram&)>& work) {
  if (pipe2(toParent_, O_CLOEXEC) != 0 || pipe2(toChild_, O_CLOEXEC) != 0)
    throw std::runtime_error("pipe2");
  child_ = fork();
  if (child_ < 0) throw std::runtime_error("fork");
  if (child_ == 0) {
    close(toParent_[0]);
    close(toChild_[1]);
    _exit(work(*this));
  }
  close(toParent_[1]);
  close(toChild_[0]);
}

OtherProgram::~OtherProgram() {
  kill();
  close(toParent_[0]);
  close(toChild_[1]);
}

void OtherProgram::pause() const {
  send(toParent_[1]);
  receive(toChild_[0]);
}

void OtherProgram::waitForPause() const {
  receive(toParent_[0]);
}

void OtherProgram::resume() const {
  send(toChild_[1]);
}

void OtherProgram::kill() {
  if (child_ < 0) return;
  ::kill(child_, SIGKILL);
  wait();
}

int OtherProgram::finish() {
  resume();
  return wait();
}

int OtherProgram::wait() {
  int status = 0;
  if (waitpid(child_, &status, 0) != child_) throw std::runtime_error("waitpid");
  child_ = -1;
  constexpr int kSignalled = 128;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

std::string lockFileOf(const std::string& name) {
  for (const auto& entry : std::filesystem::directory_iterator("/run/camcfg"))
    if (entry.path().filename().string().rfind(name + ".", 0) == 0) return entry.path();
  return "";
}

bool othersMayRead(const std::string& name) {
  return mayLock(name, F_RDLCK);
}

bool othersMayWrite(const std::string& name) {
  return mayLock(name, F_WRLCK);
}

}  // namespace camcfg::tests
