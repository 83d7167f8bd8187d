#include "cli/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <system_error>
#include <utility>

#include "base/concat.h"
#include "base/host.h"
#include "base/plain_text.h"
#include "base/progress.h"

namespace camcfg::tool::cli {
namespace {

constexpr std::pair<std::string_view, Tone> kStates[] = {
    {"good", Tone::Good},        {"ok", Tone::Good},        {"well", Tone::Good},
    {"missing", Tone::Bad},      {"damaged", Tone::Bad},    {"no-element", Tone::Bad},
    {"unreadable", Tone::Bad},   {"not-a-file", Tone::Bad}, {"cut-short", Tone::Bad},
    {"unusable", Tone::Bad},     {"error", Tone::Bad},      {"out-of-step", Tone::Warning},
    {"degraded", Tone::Warning}, {"warning", Tone::Warning}};

constexpr const char* kSequences[] = {"", "\x1b[32m", "\x1b[33m", "\x1b[31m", "\x1b[2m", "\x1b[1m"};
static_assert(std::size(kSequences) == static_cast<std::size_t>(Tone::New) + 1);
constexpr char kEnd[] = "\x1b[0m";

std::string variable(const char* name) {
  const char* value = getenv(name);
  return value == nullptr ? "" : value;
}

constexpr std::chrono::milliseconds kDelay(1000);
constexpr std::chrono::milliseconds kInterval(250);
constexpr std::size_t kUsualColumns = 80;

// A line as wide as the terminal would move on to the next one.
std::size_t widest(int terminal) {
  winsize size{};
  const bool isKnown = ioctl(terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
  return (isKnown ? size.ws_col : kUsualColumns) - 1;
}

}  // namespace

Tone toneOfState(const std::string& word) {
  for (const auto& [state, tone] : kStates)
    if (word == state) return tone;
  return Tone::Plain;
}

std::string coloured(const std::string& text, Tone tone) {
  if (tone == Tone::Plain || text.empty()) return text;
  return concat(kSequences[static_cast<std::size_t>(tone)], text, kEnd);
}

std::size_t shownWidth(const std::string& text) {
  if (text.find('\x1b') == std::string::npos) return characters(text);
  std::string shown;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\x1b')
      at = text.find('m', at);
    else
      shown += text[at];
  }
  return characters(shown);
}

bool wantsColours(const std::string& when, bool isTerminal) {
  if (when != "auto") return when == "always";
  const std::string terminal = variable("TERM");
  return isTerminal && !terminal.empty() && terminal != "dumb" && variable("NO_COLOR").empty();
}

ProgressLine::ProgressLine(std::string command, int terminal)
    : name_(std::move(command)), terminal_(terminal) {
  if (isatty(terminal) != 1) return;
  watchWork([this](const std::string& work) {
    const std::lock_guard<std::mutex> lock(mutex_);
    work_ = work;
  });
  // Signals are for the thread that carries the command out: it may have them wait.
  sigset_t all{};
  sigset_t former{};
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // Without a thread nothing is shown; the command is nevertheless carried out.
  }
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

ProgressLine::~ProgressLine() {
  watchWork(nullptr);
  if (!thread_.joinable()) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    isOver_ = true;
  }
  ended_.notify_one();
  thread_.join();
  if (width_ != 0) writeAll(terminal_, concat("\r", std::string(width_, ' '), "\r"));
}

void ProgressLine::run() {
  std::unique_lock<std::mutex> lock(mutex_);
  const auto isOver = [this] { return isOver_; };
  auto elapsed = kDelay;
  for (auto wait = kDelay; !ended_.wait_for(lock, wait, isOver); wait = kInterval) {
    const std::string work = work_;
    lock.unlock();
    show(work, static_cast<std::size_t>(elapsed.count()) / 1000);
    lock.lock();
    elapsed += kInterval;
  }
}

void ProgressLine::show(const std::string& work, std::size_t seconds) {
  std::string text =
      printable(concat("camcfg: ", name_, ": ", work, work.empty() ? "" : ", ", seconds, " s"));
  while (characters(text) > widest(terminal_)) text.pop_back();
  const std::size_t width = characters(text);
  const std::string rest(width_ > width ? width_ - width : 0, ' ');
  writeAll(terminal_, concat("\r", text, rest));
  width_ = std::max(width_, width);
}

}  // namespace camcfg::tool::cli
