#include "cli/streams.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include "base/library_log.h"
#include "base/printable.h"
#include "base/refusal.h"

namespace camcfg::tool::cli {
namespace {

constexpr char kName[] = "camcfg:";

bool messagesAreColoured = false;

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

}  // namespace

Streams::Streams() : answers_(duplicateStandardOutput()) {
  // A file that reaches the process's size limit is a failed write, not the end of the process.
  std::signal(SIGXFSZ, SIG_IGN);
  const Descriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
  dup2(nowhere ? nowhere.get() : STDERR_FILENO, STDOUT_FILENO);
}

void Streams::showLibraryOutput() {
  dup2(STDERR_FILENO, STDOUT_FILENO);
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
  showLibraryLog([](const std::string& line) { message(line); });
}

void Streams::answer(const std::string& text) const {
  if (!writeAll(answers_.get(), text))
    throw Refusal(std::string("standard output: ") + std::strerror(errno));
}

bool Streams::answersToTerminal() const {
  return isatty(answers_.get()) == 1;
}

void Streams::colourMessages(const std::string& when) {
  messagesAreColoured = wantsColours(when, isatty(STDERR_FILENO) == 1);
}

void Streams::message(const std::string& text, Tone tone) {
  const std::string name = messagesAreColoured ? coloured(kName, tone) : kName;
  writeAll(STDERR_FILENO, name + " " + printable(withShortWords(text)) + "\n");
}

}  // namespace camcfg::tool::cli
