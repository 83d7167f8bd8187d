#include "cli/host_programs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "base/descriptor.h"
#include "base/refusal.h"

namespace camcfg::tool::cli {
namespace {

constexpr int kNotStarted = 127;

// Tells over a pipe that closes by itself when the program starts why it did not.
class StartReport {
 public:
  StartReport() {
    if (pipe2(ends_, O_CLOEXEC) != 0) throw Refusal(std::strerror(errno));
  }
  ~StartReport() {
    close(ends_[0]);
    close(ends_[1]);
  }
  StartReport(const StartReport&) = delete;
  StartReport& operator=(const StartReport&) = delete;

  void failed() const {
    const int error = errno;
    if (write(ends_[1], &error, sizeof error) < 0) _exit(kNotStarted);
  }
  // 0 once the program runs.
  int error() {
    close(ends_[1]);
    ends_[1] = -1;
    int error = 0;
    return read(ends_[0], &error, sizeof error) == sizeof error ? error : 0;
  }

 private:
  int ends_[2] = {-1, -1};
};

std::string firstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

void requireStarted(const HostProgram& program, int error) {
  const std::string name = "'" + program.words.front() + "'";
  if (error == ENOENT)
    throw Refusal("the program " + name + " is not installed; it comes with " + program.package);
  if (error != 0) throw Refusal("cannot start " + name + ": " + std::strerror(error));
}

}  // namespace

HostPrograms::HostPrograms() : root_(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)) {}

void HostPrograms::become(const std::vector<std::string>& words) const {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (const std::string& word : words) pointers.push_back(const_cast<char*>(word.c_str()));
  pointers.push_back(nullptr);
  struct stat here {};
  struct stat outside {};
  const bool isInside = stat("/", &here) == 0 && fstat(root_.get(), &outside) == 0 &&
                        (here.st_dev != outside.st_dev || here.st_ino != outside.st_ino);
  std::signal(SIGXFSZ, SIG_DFL);
  if (!isInside || (fchdir(root_.get()) == 0 && chroot(".") == 0))
    execvp(pointers.front(), pointers.data());
}

std::string HostPrograms::passThrough(const HostProgram& program, const std::string& text) const {
  const MemoryFile in;
  const MemoryFile out;
  const MemoryFile err;
  if (!in.fill(text)) throw Refusal(std::strerror(errno));
  StartReport report;
  const pid_t child = fork();
  if (child == 0) {
    dup2(in.get(), STDIN_FILENO);
    dup2(out.get(), STDOUT_FILENO);
    dup2(err.get(), STDERR_FILENO);
    become(program.words);
    report.failed();
    _exit(kNotStarted);
  }
  if (child < 0) throw Refusal(std::strerror(errno));
  const int error = report.error();
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  requireStarted(program, error);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw Refusal("'" + program.words.front() + "' failed: " + firstLine(err.contents()));
  return out.contents();
}

}  // namespace camcfg::tool::cli
