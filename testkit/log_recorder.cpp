#include "camcfg/testkit/log_recorder.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>

namespace camcfg::testkit {
namespace {

std::mutex mutex;
bool recording = false;
std::vector<LogRecord> kept;

std::string formatted(const char* format, va_list args) {
  va_list measured;
  va_copy(measured, args);
  const int length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, args);
  return text;
}

}  // namespace

std::string LogRecord::function() const {
  const auto colon = prefix.rfind(':');
  return colon == std::string::npos || prefix[0] != '[' ? "" : prefix.substr(1, colon - 1);
}

int LogRecord::line() const {
  const auto colon = prefix.rfind(':');
  if (colon == std::string::npos) return 0;
  return static_cast<int>(std::strtol(prefix.c_str() + colon + 1, nullptr, 10));
}

LogRecorder::LogRecorder() {
  const std::lock_guard<std::mutex> guard(mutex);
  recording = true;
  kept.clear();
}

LogRecorder::~LogRecorder() {
  const std::lock_guard<std::mutex> guard(mutex);
  recording = false;
  kept.clear();
}

std::vector<LogRecord> LogRecorder::records() const {
  const std::lock_guard<std::mutex> guard(mutex);
  return kept;
}

std::vector<std::string> LogRecorder::texts() const {
  std::vector<std::string> texts;
  for (const LogRecord& record : records()) texts.push_back(record.text);
  return texts;
}

void LogRecorder::clear() {
  const std::lock_guard<std::mutex> guard(mutex);
  kept.clear();
}

}  // namespace camcfg::testkit

// The library calls this wherever the device's own logger would be called.
extern "C" __attribute__((visibility("default"))) void UTIL_LOG_Print(int level, char* prefix,
                                                                      char* format, ...) {
  using namespace camcfg::testkit;
  va_list args;
  va_start(args, format);
  try {
    const std::lock_guard<std::mutex> guard(mutex);
    if (recording) kept.push_back({level, prefix, formatted(format, args)});
  } catch (...) {
    // A logger that has no memory loses the record, not the process.
  }
  va_end(args);
}
