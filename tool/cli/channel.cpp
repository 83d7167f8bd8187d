#include "cli/channel.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "base/concat.h"
#include "base/outcome.h"

namespace camcfg::tool::cli {
namespace {

// What was ignored when the tool was started, as by nohup, stays ignored.
sigset_t blocked() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int number : {SIGINT, SIGTERM}) {
    struct sigaction action {};
    if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN)
      sigaddset(&signals, number);
  }
  std::signal(SIGCHLD, SIG_DFL);
  sigaddset(&signals, SIGCHLD);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

}  // namespace

Channel::Channel(Streams& streams, const HostPrograms& programs, std::string name, bool json,
                 const Look& look)
    : streams_(streams),
      programs_(programs),
      name_(std::move(name)),
      json_(json),
      look_(look),
      signals_(blocked()),
      arrived_(signalfd(-1, &signals_, SFD_NONBLOCK | SFD_CLOEXEC)) {
  if (!arrived_) throw Refusal(std::string("signals: ") + std::strerror(errno));
}

std::string Channel::lines(const Json& records, const Template& line, const Look& look) const {
  if (!json_) return renderText({records, {Lines{"", line}}}, look);
  std::string text;
  for (const Json& record : records) text += renderJson({record, {}}, -1);
  return text;
}

void Channel::answer(const Json& records, const Template& line) const {
  streams_.answer(lines(records, line, look_));
}

void Channel::answer(const Answer& answer, const Json& json) const {
  streams_.answer(json_ ? renderJson({json, {}}, -1) : renderText(answer, look_));
}

void Channel::say(const std::string& text) const {
  Streams::message(concat(name_, ": ", text), Tone::Warning);
}

void Channel::takeSignals() const {
  signalfd_siginfo signal{};
  while (read(arrived_.get(), &signal, sizeof signal) == sizeof signal)
    if (signal.ssi_signo != SIGCHLD) throw Stopped();
}

bool Channel::wait(int descriptor, int milliseconds) const {
  pollfd polled[] = {
      {descriptor, POLLIN, 0}, {arrived_.get(), POLLIN, 0}, {streams_.descriptor(), 0, 0}};
  if (poll(polled, 3, milliseconds) < 0 && errno != EINTR) throw Refusal(std::strerror(errno));
  if (polled[1].revents != 0) takeSignals();
  if (polled[2].revents != 0) Streams::endUnread();
  return polled[0].revents != 0;
}

void Channel::pause(int milliseconds) const {
  pollfd polled{arrived_.get(), POLLIN, 0};
  if (poll(&polled, 1, milliseconds) > 0) takeSignals();
}

void Channel::feed(const std::string& commandLine, const Json& records,
                   const Template& line) const {
  const MemoryFile in;
  if (!in.fill(lines(records, line, {}))) throw Refusal(std::strerror(errno));
  const pid_t child = programs_.start({"sh", "-c", commandLine}, in.get(), streams_.descriptor(),
                                      STDERR_FILENO, STDERR_FILENO);
  int status = 0;
  for (pollfd polled{arrived_.get(), POLLIN, 0}; waitpid(child, &status, WNOHANG) == 0;) {
    poll(&polled, 1, -1);
    takeSignals();
  }
  if (WIFSIGNALED(status))
    say(concat("'", commandLine, "' was ended by signal ", WTERMSIG(status)));
  else if (WEXITSTATUS(status) != 0)
    say(concat("'", commandLine, "' ended with status ", WEXITSTATUS(status)));
}

}  // namespace camcfg::tool::cli
