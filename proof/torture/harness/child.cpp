#include "torture/harness/child.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "testkit/enter_root.h"

namespace camcfg::torture {
namespace {

constexpr int kNotEntered = 99;

void sendNowhere(int descriptor) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (nowhere < 0) return;
  dup2(nowhere, descriptor);
  close(nowhere);
}

pid_t startChild() {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  return child;
}

pid_t startTask(const std::function<int()>& task) {
  const pid_t child = startChild();
  if (child == 0) {
    const int status = task();
    std::fflush(nullptr);
    _exit(status);
  }
  return child;
}

}  // namespace

void silenceOutput() {
  std::fflush(stdout);
  sendNowhere(STDOUT_FILENO);
}

pid_t startInside(const std::string& hostRoot, const std::function<int()>& work) {
  const pid_t child = startChild();
  if (child != 0) return child;
  silenceOutput();
  const std::string error = enterRoot(hostRoot);
  if (!error.empty()) {
    std::fprintf(stderr, "%s: %s\n", hostRoot.c_str(), error.c_str());
    _exit(kNotEntered);
  }
  _exit(work());
}

int waitFor(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid");
  constexpr int kSignalled = 128;
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
}

int runInside(const std::string& hostRoot, const std::function<int()>& work) {
  return waitFor(startInside(hostRoot, work));
}

void becomeProgram(std::vector<std::string> words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  setenv("LD_PRELOAD", CAMCFG_QUICK_SYNC, 1);
  execv(pointers.front(), pointers.data());
  constexpr int kNotStarted = 127;
  _exit(kNotStarted);
}

int runProgram(const std::vector<std::string>& words) {
  const pid_t child = startChild();
  if (child == 0) {
    sendNowhere(STDOUT_FILENO);
    sendNowhere(STDERR_FILENO);
    becomeProgram(words);
  }
  return waitFor(child);
}

int runSideBySide(const std::vector<std::function<int()>>& tasks) {
  const std::size_t places = std::max(1U, std::thread::hardware_concurrency());
  std::size_t running = 0;
  int failed = 0;
  const auto waitForOne = [&] {
    int status = 0;
    if (wait(&status) > 0 && status != 0) ++failed;
    --running;
  };
  for (const auto& task : tasks) {
    if (running == places) waitForOne();
    startTask(task);
    ++running;
  }
  while (running > 0) waitForOne();
  return failed;
}

}  // namespace camcfg::torture
