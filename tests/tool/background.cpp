#include "tool/background.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>
#include <utility>

#include "support/run_camcfg.h"

namespace camcfg::tests {

Background::Background(const std::vector<std::string>& arguments,
                       const std::function<void()>& inChild) {
  int out[2];
  int err[2];
  if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
  child_ = fork();
  if (child_ < 0) throw std::runtime_error("fork");
  if (child_ == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(out[1], STDOUT_FILENO);
    dup2(err[1], STDERR_FILENO);
    if (inChild) inChild();
    becomeCamcfg(arguments);
  }
  close(out[1]);
  close(err[1]);
  out_.fd = out[0];
  err_.fd = err[0];
}

Background::~Background() {
  if (child_ > 0) end(SIGKILL);
  stopReading();
  close(err_.fd);
}

bool Background::readUntil(Output& output, const std::string& text, int milliseconds) {
  for (pollfd polled{output.fd, POLLIN, 0}; output.text.find(text) == std::string::npos;) {
    char buffer[4096];
    if (poll(&polled, 1, milliseconds) <= 0) return false;
    const ssize_t got = read(output.fd, buffer, sizeof buffer);
    if (got <= 0) return false;
    output.text.append(buffer, static_cast<std::size_t>(got));
  }
  return true;
}

bool Background::shows(const std::string& text, int milliseconds) {
  return readUntil(out_, text, milliseconds);
}

std::string Background::taken() {
  return std::exchange(out_.text, "");
}

void Background::stopReading() {
  if (out_.fd >= 0) close(out_.fd);
  out_.fd = -1;
}

void Background::signal(int number) const {
  kill(child_, number);
}

int Background::end() {
  int status = 0;
  if (waitpid(std::exchange(child_, -1), &status, 0) < 0) throw std::runtime_error("waitpid");
  constexpr int kSignalled = 128;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

}  // namespace camcfg::tests
