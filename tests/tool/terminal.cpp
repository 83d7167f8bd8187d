#include "tool/terminal.h"

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace camcfg::tests {
namespace {

constexpr unsigned kLongest = 60;  // seconds until a program is ended that waits for more keys

}  // namespace

Terminal::Terminal(const std::function<void()>& inChild) {
  winsize size{};
  size.ws_row = 24;
  size.ws_col = 80;
  child_ = forkpty(&terminal_, nullptr, nullptr, &size);
  if (child_ < 0) throw std::runtime_error("forkpty");
  if (child_ > 0) return;
  alarm(kLongest);
  inChild();
  _exit(0);
}

Terminal::~Terminal() {
  close(terminal_);
  if (status_ >= 0) return;
  kill(child_, SIGKILL);
  waitpid(child_, nullptr, 0);
}

void Terminal::type(const std::string& keys) const {
  if (write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size()))
    throw std::runtime_error("write");
}

// At the end of the program, a terminal cannot be read any more.
bool Terminal::readMore() {
  char buffer[4096];
  const ssize_t got = read(terminal_, buffer, sizeof buffer);
  if (got > 0) shown_.append(buffer, static_cast<std::size_t>(got));
  return got > 0;
}

void Terminal::readUntil(const std::string& part) {
  while (shown_.find(part) == std::string::npos && readMore()) {
  }
}

std::string Terminal::readToEnd() {
  while (readMore()) {
  }
  int status = 0;
  waitpid(child_, &status, 0);
  constexpr int kSignalled = 128;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
  return shown_;
}

}  // namespace camcfg::tests
