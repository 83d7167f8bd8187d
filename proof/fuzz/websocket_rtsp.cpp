#include <camcfg/livemedia.h>

#include "fuzz/round_trip.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

using Websocket = tag_CFG_WEBSOCKET_SESSION_T;
using Rtsp = std::shared_ptr<tag_CFG_RTSP_SESSION_T>;

std::string formOfWebsocket(const Websocket& session) {
  return field(session.s32Id) + field(session.strName);
}

std::string formOfRtsp(const Rtsp& session) {
  std::string form = field(session->strName);
  for (const tag_CFG_RTSP_SUBSESSION_T& channel : session->lstSubSession)
    form += field(channel.s32Id) + field(channel.strName);
  return form;
}

}  // namespace

// The media file.
void websocketRtsp(const Input& input) {
  writeFile(CFG_FILE_MPP, input.part(0));
  roundTrip<Websocket>(
      {CFG_LM_LoadWebsocketConfig, CFG_LM_DumpWebsocketConfig, always<Websocket>, formOfWebsocket});
  writeFile(CFG_FILE_MPP, input.part(0));
  roundTrip<Rtsp>({CFG_LM_LoadRtspConfig, CFG_LM_DumpRtspConfig, always<Rtsp>, formOfRtsp});
}

}  // namespace camcfg::fuzz
