#include "base/log.h"

#include <unistd.h>

#include <cstdarg>
#include <cstring>

namespace camcfg {

void logToStandardError(Level level, const char* prefix, const char* format, ...) {
  const std::size_t length = std::strlen(format);
  const bool ended = length > 0 && format[length - 1] == '\n';
  // One call for the whole record, so that those of several threads do not mix.
  char line[512];
  std::snprintf(line, sizeof line, "<%d>%s%s%s", static_cast<int>(level), prefix, format,
                ended ? "" : "\n");
  va_list args;
  va_start(args, format);
  vdprintf(STDERR_FILENO, line, args);
  va_end(args);
}

}  // namespace camcfg
