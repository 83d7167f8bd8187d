#include "base/library_log.h"

#include <cstdarg>
#include <cstdio>
#include <exception>
#include <mutex>

#include "base/concat.h"
#include "base/host.h"

namespace camcfg::tool {
namespace {

constexpr int kError = 3;
constexpr int kWarning = 4;

void (*shown)(const std::string& line) = nullptr;
std::string complaint;

std::string formatted(const char* format, va_list arguments) {
  va_list measured;
  va_copy(measured, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
  return text;
}

// Several files may be saved side by side.
void record(int level, const char* prefix, const std::string& text) {
  static std::mutex recording;
  const std::lock_guard<std::mutex> alone(recording);
  if (level <= kWarning) complaint = text;
  const char* word = level <= kError ? "error: " : level == kWarning ? "warning: " : "info: ";
  if (shown != nullptr) shown(concat(word, prefix, text));
}

// Replaces descriptor 1 while the library prints.
class Ear {
 public:
  Ear() : former_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    listening_ = former_ && dup2(printed_.get(), STDOUT_FILENO) == STDOUT_FILENO;
  }
  ~Ear() {
    if (!listening_) return;
    std::fflush(stdout);
    std::clearerr(stdout);
    dup2(former_.get(), STDOUT_FILENO);
    try {
      const std::string printed = printed_.contents();
      writeAll(STDOUT_FILENO, printed);
      const std::string heard = complaintIn(printed);
      if (!heard.empty()) complaint = heard;
    } catch (const std::exception&) {
      // Without memory the lines are lost; what the library was doing goes on.
    }
  }
  Ear(const Ear&) = delete;
  Ear& operator=(const Ear&) = delete;

 private:
  MemoryFile printed_;
  Descriptor former_;
  bool listening_ = false;
};

std::string lastOf(const std::string& level, const std::string& printed) {
  const std::size_t line = printed.rfind(concat("[", level, "][CFG]["));
  if (line == std::string::npos) return "";
  const std::size_t frame = printed.find("]: ", line);
  if (frame == std::string::npos) return "";
  std::string text = printed.substr(frame + 3, printed.find('\n', frame) - frame - 3);
  text.erase(text.find_last_not_of(" .") + 1);
  return text;
}

}  // namespace

void showLibraryLog(void (*print)(const std::string& line)) {
  shown = print;
}

std::string lastComplaint() {
  return complaint;
}

void forgetComplaint() {
  complaint.clear();
}

std::string complaintIn(const std::string& printed) {
  const std::string error = lastOf("Error", printed);
  return error.empty() ? lastOf("Warning", printed) : error;
}

int heard(const std::function<int()>& call) {
  const Ear ear;
  return call();
}

}  // namespace camcfg::tool

// The library finds its logging service here, as it finds the device's own in other programs.
extern "C" __attribute__((visibility("default"))) void UTIL_LOG_Print(int level, char* prefix,
                                                                      char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  try {
    camcfg::tool::record(level, prefix, camcfg::tool::formatted(format, arguments));
  } catch (const std::exception&) {
    // Without memory the record is lost; what the library was doing goes on.
  }
  va_end(arguments);
}
