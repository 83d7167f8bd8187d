#include "camcfg/testkit/captured_output.h"

#include <fcntl.h>
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
  explicit Redirection(std::FILE* stream)
      : stream_(stream), file_(memfd_create("output", 0)), before_(dup(fileno(stream))) {
    std::fflush(stream_);
    // With O_APPEND, threads that write at the same time do not overwrite each other's output.
    if (file_ < 0 || before_ < 0 || fcntl(file_, F_SETFL, O_APPEND) < 0 ||
        dup2(file_, fileno(stream_)) < 0)
      throw std::runtime_error(std::string("captured output: ") + std::strerror(errno));
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
    std::fflush(stream_);
    dup2(before_, fileno(stream_));
  }

  std::FILE* stream_;
  int file_;
  int before_;
};

std::string capture(std::FILE* stream, const std::function<void()>& run) {
  Redirection redirection(stream);
  run();
  return redirection.finish();
}

}  // namespace

std::string captureOutput(const std::function<void()>& run) {
  return capture(stdout, run);
}

std::string captureErrors(const std::function<void()>& run) {
  return capture(stderr, run);
}

}  // namespace camcfg::testkit
