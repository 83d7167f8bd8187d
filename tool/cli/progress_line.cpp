#include "cli/progress_line.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include "base/descriptor.h"
#include "base/printable.h"
#include "base/progress.h"

namespace camcfg::tool::cli {
namespace {

constexpr std::chrono::milliseconds kDelay(1000);
constexpr std::chrono::milliseconds kInterval(250);
constexpr std::size_t kUsualColumns = 80;

// A line as wide as the terminal would move on to the next one.
std::size_t widest(int terminal) {
  winsize size{};
  const bool isKnown = ioctl(terminal, TIOCGWINSZ, &size) == 0 && size.ws_col > 1;
  return (isKnown ? size.ws_col : kUsualColumns) - 1;
}

std::string cut(std::string text, std::size_t width) {
  while (characters(text) > width) text.pop_back();
  return text;
}

}  // namespace

ProgressLine::ProgressLine(std::string command, int terminal)
    : name_(std::move(command)), terminal_(terminal) {
  if (isatty(terminal) != 1) return;
  watchWork([this](const std::string& work) {
    const std::lock_guard<std::mutex> lock(mutex_);
    work_ = work;
  });
  try {
    thread_ = std::thread([this] { run(); });
  } catch (const std::system_error&) {
    // Without a thread nothing is shown; the command is nevertheless carried out.
  }
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
  remove();
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
  const std::string text =
      cut(printable("camcfg: " + name_ + ": " + work + (work.empty() ? "" : ", ") +
                    std::to_string(seconds) + " s"),
          widest(terminal_));
  const std::size_t width = characters(text);
  const std::string rest(width_ > width ? width_ - width : 0, ' ');
  writeAll(terminal_, "\r" + text + rest);
  width_ = std::max(width_, width);
}

void ProgressLine::remove() const {
  if (width_ != 0) writeAll(terminal_, "\r" + std::string(width_, ' ') + "\r");
}

}  // namespace camcfg::tool::cli
