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

std::string firstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

// `error` is what the child process wrote of its errno; nothing if the program was started.
void requireStarted(const HostProgram& program, const std::string& error) {
  if (error.empty()) return;
  const int number = std::stoi(error);
  const std::string name = "'" + program.words.front() + "'";
  if (number == ENOENT)
    throw Refusal("the program " + name + " is not installed; it comes with " + program.package);
  throw Refusal("cannot start " + name + ": " + std::strerror(number));
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
  const MemoryFile error;
  if (!in.fill(text) || !error.fill("")) throw Refusal(std::strerror(errno));
  const pid_t child = fork();
  if (child == 0) {
    dup2(in.get(), STDIN_FILENO);
    dup2(out.get(), STDOUT_FILENO);
    dup2(err.get(), STDERR_FILENO);
    become(program.words);
    writeAll(error.get(), std::to_string(errno));
    _exit(kNotStarted);
  }
  if (child < 0) throw Refusal(std::strerror(errno));
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
  requireStarted(program, error.contents());
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    throw Refusal("'" + program.words.front() + "' failed: " + firstLine(err.contents()));
  return out.contents();
}

}  // namespace camcfg::tool::cli
