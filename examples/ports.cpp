// Shows the device's ports, or sets one of them.
//
//   ports              all ports
//   ports rtsp 8554    sets the RTSP port; "rtsp-over-http" likewise
//   ports web 80 443   sets the web ports, HTTP and HTTPS
#include <camcfg/params.h>

#include <cstdio>
#include <cstring>

#include "number.h"

namespace {

int show() {
  int http = 0;
  int https = 0;
  if (CFG_SYSTEM_GetHttpPort(&http, &https) != 0) {
    std::fprintf(stderr, "ports: the web ports cannot be read\n");
    return 1;
  }
  std::printf("web %d %d\n", http, https);
  std::printf("rtsp %d\n", CFG_SYSTEM_GetRtspPort());  // 0 if it cannot be read
  std::printf("rtsp-over-http %d\n", CFG_SYSTEM_GetRtspOverHttpPort());
  return 0;
}

// The library refuses a value outside the parameter's range. The range is asked for here.
void explain(const char* parameter) {
  tagCFG_VALUE_INT_S value = {};
  if (CFG_COM_GetIntParams(const_cast<char*>(parameter), &value) == 0)
    std::fprintf(stderr, "ports: %s takes %d to %d\n", parameter, value.s32Min, value.s32Max);
}

int set(int result, const char* parameter) {
  if (result == 0) return 0;
  explain(parameter);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 1) return show();
  int port = 0;
  int second = 0;
  const bool one = argc == 3 && readNumber(argv[2], &port);
  const bool two = argc == 4 && readNumber(argv[2], &port) && readNumber(argv[3], &second);
  if (one && std::strcmp(argv[1], "rtsp") == 0) return set(CFG_SYSTEM_SetRtspPort(port), "Rtsp");
  if (one && std::strcmp(argv[1], "rtsp-over-http") == 0)
    return set(CFG_SYSTEM_SetRtspOverHttpPort(port), "RtspOverHttp");
  // The two web ports are saved one after the other: the first may be stored, the second refused.
  if (two && std::strcmp(argv[1], "web") == 0)
    return set(CFG_SYSTEM_SetHttpPort(port, second), "WebHttp");

  std::fprintf(stderr, "usage: ports [rtsp PORT | rtsp-over-http PORT | web HTTP HTTPS]\n");
  return 2;
}
