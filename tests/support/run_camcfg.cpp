#include "support/run_camcfg.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace camcfg::tests {
namespace {

constexpr int kNotStarted = 127;

// What a child prints, read from a pipe: its size is not limited as that of a file may be.
class Output {
 public:
  Output() {
    if (pipe2(ends_, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
  }
  ~Output() {
    close(ends_[0]);
    closeWriting();
  }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  int reading() const { return ends_[0]; }
  int writing() const { return ends_[1]; }
  void closeWriting() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }
  // False at the end of the output.
  bool readMore() {
    char buffer[4096];
    const ssize_t got = read(ends_[0], buffer, sizeof buffer);
    if (got > 0) text_.append(buffer, static_cast<std::size_t>(got));
    return got > 0;
  }
  const std::string& text() const { return text_; }

 private:
  int ends_[2] = {-1, -1};
  std::string text_;
};

void readAll(Output& out, Output& err) {
  out.closeWriting();
  err.closeWriting();
  Output* outputs[] = {&out, &err};
  pollfd polled[] = {{out.reading(), POLLIN, 0}, {err.reading(), POLLIN, 0}};
  while (polled[0].fd >= 0 || polled[1].fd >= 0) {
    if (poll(polled, 2, -1) < 0) throw std::runtime_error("poll");
    for (int i = 0; i < 2; ++i)
      if (polled[i].fd >= 0 && polled[i].revents != 0 && !outputs[i]->readMore()) polled[i].fd = -1;
  }
}

std::vector<std::string> commandLine(const std::string& program,
                                     const std::vector<std::string>& arguments) {
  std::istringstream emulator(CAMCFG_EMULATOR);
  std::vector<std::string> words{std::istream_iterator<std::string>(emulator), {}};
  words.push_back(program);
  words.insert(words.end(), arguments.begin(), arguments.end());
  return words;
}

// What a leak checker knows of stacks is out of its reach once the tool is in the device's root; it
// would no longer distinguish the locks, which live as long as the process, from leaks.
void leaveLeaksUnchecked() {
  const char* given = getenv("ASAN_OPTIONS");
  const std::string options = given == nullptr ? "" : std::string(given) + ":";
  setenv("ASAN_OPTIONS", (options + "detect_leaks=0").c_str(), 1);
}

[[noreturn]] void start(std::vector<std::string> words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execvp(pointers.front(), pointers.data());
  _exit(kNotStarted);
}

}  // namespace

ToolRun runCommand(const std::vector<std::string>& words, const std::function<void()>& inChild) {
  Output out;
  Output err;
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    dup2(out.writing(), STDOUT_FILENO);
    dup2(err.writing(), STDERR_FILENO);
    if (inChild) inChild();
    start(words);
  }
  readAll(out, err);
  int status = 0;
  waitpid(child, &status, 0);
  constexpr int kSignalled = 128;
  return {WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status), out.text(),
          err.text()};
}

ToolRun runCamcfg(const std::vector<std::string>& arguments, const std::function<void()>& inChild,
                  const std::string& program) {
  return runCommand(commandLine(program.empty() ? CAMCFG_TOOL : program, arguments), [&] {
    // The option may be in a line that is to be completed.
    const bool entersRoot = std::any_of(
        arguments.begin(), arguments.end(),
        [](const std::string& argument) { return argument.find("--root") != std::string::npos; });
    if (entersRoot) leaveLeaksUnchecked();
    if (inChild) inChild();
  });
}

std::vector<std::string> camcfgCommand(const std::vector<std::string>& arguments) {
  return commandLine(CAMCFG_TOOL, arguments);
}

void becomeCamcfg(const std::vector<std::string>& arguments) {
  leaveLeaksUnchecked();
  start(camcfgCommand(arguments));
}

}  // namespace camcfg::tests
