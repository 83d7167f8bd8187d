#include "cli/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "base/concat.h"
#include "base/host.h"
#include "base/library_log.h"
#include "base/plain_text.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kName[] = "camcfg:";

bool messagesAreColoured = false;

// What the caller wants to happen when nobody reads what is written.
using Handler = void (*)(int);
Handler whenUnread = SIG_DFL;

// A configuration file must never be opened as descriptor 1 or 2 and be printed into.
void occupyStandardDescriptors() {
  for (int fd = open("/dev/null", O_RDWR); fd >= 0; fd = open("/dev/null", O_RDWR)) {
    if (fd <= STDERR_FILENO) continue;
    close(fd);
    return;
  }
}

// Standard output if the caller gave one; else a descriptor that nothing can be written to.
int duplicateStandardOutput() {
  const bool given = fcntl(STDOUT_FILENO, F_GETFD) >= 0;
  occupyStandardDescriptors();
  return given ? fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)
               : open("/dev/null", O_RDONLY | O_CLOEXEC);
}

bool waitsForNoReader = false;

// Writes by a process of its own, which has no file open that anybody may wait for.
bool writeApart(int fd, const std::string& text) {
  constexpr int kLooks = 500;
  constexpr timespec kLookInterval{0, 2'000'000};
  const pid_t child = fork();
  if (child < 0) return writeAll(fd, text);
  if (child == 0) {
    dup2(fd, STDERR_FILENO);
    if (close_range(STDERR_FILENO + 1, ~0U, 0) != 0)
      for (int other = STDERR_FILENO + 1; other < FD_SETSIZE; ++other) close(other);
    _exit(writeAll(STDERR_FILENO, text) ? 0 : errno);
  }
  int status = 0;
  for (int look = 0; look < kLooks && waitpid(child, &status, WNOHANG) == 0; ++look)
    nanosleep(&kLookInterval, nullptr);
  errno = WIFEXITED(status) ? WEXITSTATUS(status) : EPIPE;
  return errno == 0;
}

// Signals that wait, since a change is in force, still end the wait for whoever reads.
bool writeUntilInterrupted(int fd, const std::string& text) {
  sigset_t waiting{};
  pthread_sigmask(SIG_SETMASK, nullptr, &waiting);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    sigdelset(&waiting, signal);
    struct sigaction action {};
    const bool isIgnored = sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
    action.sa_handler = [](int) {};
    action.sa_flags = 0;
    if (!isIgnored) sigaction(signal, &action, nullptr);
  }
  for (std::size_t done = 0; done < text.size();) {
    pollfd room{fd, POLLOUT, 0};
    if (ppoll(&room, 1, nullptr, &waiting) < 0) return false;
    // So much is written at once wherever there is room at all.
    const ssize_t written =
        write(fd, text.data() + done, std::min<std::size_t>(PIPE_BUF, text.size() - done));
    if (written < 0 && errno != EINTR) return false;
    done += static_cast<std::size_t>(std::max<ssize_t>(written, 0));
  }
  return true;
}

bool put(int fd, const std::string& text) {
  if (waitsForNoReader) return writeApart(fd, text);
  return changeWasMade() ? writeUntilInterrupted(fd, text) : writeAll(fd, text);
}

[[noreturn]] void refuseToAnswer(int error) {
  constexpr char kPlace[] = "standard output";
  throw Refusal::about(kPlace, concat(kPlace, ": ", std::strerror(error)));
}

}  // namespace

Streams::Streams() : answers_(duplicateStandardOutput()) {
  // A file that reaches the process's size limit is a failed write, not the end of the process.
  std::signal(SIGXFSZ, SIG_IGN);
  // Neither is a message that nobody reads: the tool may be in the middle of a change.
  whenUnread = std::signal(SIGPIPE, SIG_IGN);
  const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  dup2(nowhere ? nowhere.get() : STDERR_FILENO, STDOUT_FILENO);
}

void Streams::showLibraryOutput() {
  dup2(STDERR_FILENO, STDOUT_FILENO);
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  showLibraryLog([](const std::string& line) { message(line); });
}

void Streams::answer(const std::string& text) {
  isBroken_ = !put(answers_.get(), text);
  if (!isBroken_) return;
  if (errno == EPIPE && !changeWasMade()) endUnread();
  refuseToAnswer(errno);
}

void Streams::tryToAnswer(const std::string& text) {
  isBroken_ = isBroken_ || !writeAll(answers_.get(), text);
}

void Streams::endUnread() {
  std::signal(SIGPIPE, whenUnread);
  raise(SIGPIPE);
  refuseToAnswer(EPIPE);
}

void Streams::giveBackStandardOutput() const {
  std::signal(SIGPIPE, whenUnread);
  dup2(answers_.get(), STDOUT_FILENO);
}

void Streams::waitForNoReader() {
  waitsForNoReader = true;
}

bool Streams::answersToTerminal() const {
  return isatty(answers_.get()) == 1;
}

void Streams::colourMessages(const std::string& when) {
  messagesAreColoured = wantsColours(when, isatty(STDERR_FILENO) == 1);
}

std::string Streams::lineOf(const std::string& text) {
  return printable(withShortWords(text));
}

void Streams::message(const std::string& text, Tone tone) {
  const std::string name = messagesAreColoured ? coloured(kName, tone) : kName;
  put(STDERR_FILENO, concat(name, " ", lineOf(text), "\n"));
}

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
  for (const int number : {SIGXFSZ, SIGIO}) std::signal(number, SIG_DFL);
  std::signal(SIGPIPE, whenUnread);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  if (!isInside || (fchdir(root_.get()) == 0 && chroot(".") == 0))
    execvp(pointers.front(), pointers.data());
}

pid_t HostPrograms::start(const std::vector<std::string>& words, int in, int out, int err,
                          int fault) const {
  const pid_t child = fork();
  if (child < 0) throw Refusal(std::strerror(errno));
  if (child > 0) return child;
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  become(words);
  writeAll(fault, std::to_string(errno));
  _exit(127);
}

}  // namespace camcfg::tool::cli
