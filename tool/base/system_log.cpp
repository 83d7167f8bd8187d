#include "base/system_log.h"

#include <syslog.h>

#include "base/plain_text.h"

namespace camcfg::tool {

void openSystemLog() {
  openlog("camcfg", LOG_PID | LOG_NDELAY, LOG_USER);
}

void logToSystem(const std::string& line) {
  syslog(LOG_WARNING, "%s", printable(line).c_str());
}

}  // namespace camcfg::tool
