#include "base/library_log.h"

#include <cstdarg>
#include <cstdio>
#include <exception>

namespace camcfg::tool {
namespace {

constexpr int kError = 3;
constexpr int kWarning = 4;

void (*shown)(const std::string& line) = nullptr;
std::string complaint;

const char* levelWord(int level) {
  if (level <= kError) return "error";
  return level == kWarning ? "warning" : "info";
}

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

void record(int level, const char* prefix, const std::string& text) {
  if (level <= kWarning) complaint = text;
  if (shown != nullptr) shown(levelWord(level) + std::string(": ") + prefix + text);
}

}  // namespace

void showLibraryLog(void (*print)(const std::string& line)) {
  shown = print;
}

std::string lastComplaint() {
  return complaint;
}

void recordComplaint(const std::string& text) {
  complaint = text;
}

void forgetComplaint() {
  complaint.clear();
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
