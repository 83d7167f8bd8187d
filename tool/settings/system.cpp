#include "settings/system.h"

#include <camcfg/params.h>

#include <limits>

namespace camcfg::tool::settings {
namespace {

// The library leaves a port alone that it does not find.
std::optional<int> webPort(std::size_t which) {
  constexpr int kUnset = std::numeric_limits<int>::min();
  int ports[] = {kUnset, kUnset};
  CFG_SYSTEM_GetHttpPort(&ports[0], &ports[1]);
  return ports[which] == kUnset ? std::nullopt : std::optional<int>(ports[which]);
}

std::optional<int> unlessZero(int port) {
  return port == 0 ? std::nullopt : std::optional<int>(port);
}

}  // namespace

const std::vector<SystemPort>& systemPorts() {
  static const std::vector<SystemPort> ports = {
      {"WebHttp", "http", "HTTP port", "system http-port", "Show or set the HTTP port",
       "system http-port 8081", "CFG_SYSTEM_GetHttpPort", [] { return webPort(0); }},
      {"WebHttps", "https", "HTTPS port", "system https-port", "Show or set the HTTPS port",
       "system https-port 8443", "CFG_SYSTEM_GetHttpPort", [] { return webPort(1); }},
      {"Rtsp", "rtsp", "RTSP port", "system rtsp-port", "Show or set the RTSP port",
       "system rtsp-port 8554", "CFG_SYSTEM_GetRtspPort",
       [] { return unlessZero(CFG_SYSTEM_GetRtspPort()); }},
      {"RtspOverHttp", "rtspOverHttp", "RTSP over HTTP port", "system rtsp-over-http-port",
       "Show or set the port of RTSP over HTTP", "system rtsp-over-http-port 8082 --dry-run",
       "CFG_SYSTEM_GetRtspOverHttpPort",
       [] { return unlessZero(CFG_SYSTEM_GetRtspOverHttpPort()); }}};
  return ports;
}

}  // namespace camcfg::tool::settings
