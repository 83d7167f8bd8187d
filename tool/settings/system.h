#ifndef CAMCFG_TOOL_SETTINGS_SYSTEM_H
#define CAMCFG_TOOL_SETTINGS_SYSTEM_H

#include <optional>
#include <vector>

namespace camcfg::tool::settings {

/// Settings of the section "System" that the library has calls of their own for.
inline constexpr char kSystemSection[] = "System";

/// A port that the device itself listens on.
struct SystemPort {
  const char* parameter;  ///< "WebHttp"
  const char* member;     ///< in answers: "http"
  const char* label;      ///< "HTTP port"
  const char* command;    ///< "system http-port"
  const char* help;
  const char* example;           ///< how it is set
  const char* reader;            ///< the call that applications read it with
  std::optional<int> (*read)();  ///< none if no port is set
};

const std::vector<SystemPort>& systemPorts();

}  // namespace camcfg::tool::settings

#endif
