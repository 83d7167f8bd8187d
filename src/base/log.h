#ifndef CAMCFG_BASE_LOG_H
#define CAMCFG_BASE_LOG_H

#include <cstdio>

#include "base/place.h"

// The platform's logging service. Weak: a workstation has none.
extern "C" void UTIL_LOG_Print(int level, char* prefix, char* format, ...) __attribute__((weak));

namespace camcfg {

enum class Level { Error = 3, Warning = 4, Info = 6 };

/// Used where the platform has no logger: one record on standard error, its level first.
void logToStandardError(Level level, const char* prefix, const char* format, ...);

template <typename... Args>
void log(Level level, Place place, const char* format, Args... args) {
  char prefix[256] = {};
  std::snprintf(prefix, sizeof prefix, "[%s:%d] ", place.function, place.line);
  if (UTIL_LOG_Print != nullptr)
    UTIL_LOG_Print(static_cast<int>(level), prefix, const_cast<char*>(format), args...);
  else
    logToStandardError(level, prefix, format, args...);
}

template <typename... Args>
void logError(Place place, const char* format, Args... args) {
  log(Level::Error, place, format, args...);
}

}  // namespace camcfg

#endif
