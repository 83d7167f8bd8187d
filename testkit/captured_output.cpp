#include "camcfg/testkit/captured_output.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

namespace camcfg::testkit {
namespace {

class Redirection {
 public:
  Redirection() : file_(memfd_create("output", 0)), before_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    if (file_ < 0 || before_ < 0 || dup2(file_, STDOUT_FILENO) < 0)
      throw std::runtime_error(std::string("standard output: ") + std::strerror(errno));
  }
  ~Redirection() {
    restore();
    close(file_);
    close(before_);
  }

  std::string finish() {
    restore();
    std::string text;
    char buffer[4096];
    off_t offset = 0;
    for (ssize_t got; (got = pread(file_, buffer, sizeof buffer, offset)) > 0; offset += got)
      text.append(buffer, static_cast<std::size_t>(got));
    return text;
  }

 private:
  void restore() const {
    std::fflush(stdout);
    dup2(before_, STDOUT_FILENO);
  }

  int file_;
  int before_;
};

}  // namespace

std::string captureOutput(const std::function<void()>& run) {
  Redirection redirection;
  run();
  return redirection.finish();
}

}  // namespace camcfg::testkit
