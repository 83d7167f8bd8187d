#include "addresses.h"

#include <camcfg/livemedia.h>
#include <camcfg/network.h>
#include <camcfg/params.h>

#include <list>
#include <memory>

std::vector<std::string> rtspAddresses(const std::string& card) {
  std::vector<std::string> addresses;
  tagNETWORK_CFG_S network;
  CFG_NETWORK_GetAllParamCur(const_cast<char*>(card.c_str()), &network);
  const int port = CFG_SYSTEM_GetRtspPort();
  std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>> sessions;
  if (network.acIpAddr[0] == '\0' || port == 0 || CFG_LM_LoadRtspConfig(sessions) != 0)
    return addresses;

  const std::string server = "rtsp://" + std::string(network.acIpAddr) +
                             (port == 554 ? "" : ":" + std::to_string(port)) + "/";
  for (const std::shared_ptr<tag_CFG_RTSP_SESSION_T>& session : sessions)
    addresses.push_back(server + session->strName);
  return addresses;
}
