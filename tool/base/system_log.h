#ifndef CAMCFG_TOOL_BASE_SYSTEM_LOG_H
#define CAMCFG_TOOL_BASE_SYSTEM_LOG_H

#include <string>

namespace camcfg::tool {

/// Opens the log of the system that the tool was started on. Call before the device's root is entered:
/// from inside it is out of reach.
void openSystemLog();

/// Puts a line into that log. Where there is none, nothing happens.
void logToSystem(const std::string& line);

}  // namespace camcfg::tool

#endif
