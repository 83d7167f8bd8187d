#include "support/log.h"

#include <cstdarg>
#include <cstring>

namespace camcfg {

void logToStandardError(Level level, const char* prefix, const char* format, ...) {
  va_list args;
  va_start(args, format);
  flockfile(stderr);
  std::fprintf(stderr, "<%d>%s", static_cast<int>(level), prefix);
  std::vfprintf(stderr, format, args);
  const std::size_t length = std::strlen(format);
  if (length == 0 || format[length - 1] != '\n') std::fputc('\n', stderr);
  funlockfile(stderr);
  va_end(args);
}

}  // namespace camcfg
