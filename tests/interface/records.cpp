// Every record and enumeration of the interface as an argument of its own. The library's functions
// take most of them inside lists, where tools that compare interfaces do not look.
#include "camcfg/livemedia.h"
#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "camcfg/stream.h"

extern "C" {

#define RECORD(name)                \
  CFG_API void takes_##name(name*); \
  void takes_##name(name*) {}

RECORD(tag_CFG_FILE_LOCK)
RECORD(tagCFG_VALUE_TXT_S)
RECORD(tagCFG_VALUE_INT_S)
RECORD(tag_CFG_STREAM_SOURCE_T)
RECORD(tag_CFG_STREAM_SOURCE_VENC_T)
RECORD(tag_CFG_STREAM_SOURCE_AI_T)
RECORD(tag_CFG_STREAM_SOURCE_AENC_T)
RECORD(tag_CFG_STREAM_CACHE_T)
RECORD(tag_CFG_WEBSOCKET_SESSION_T)
RECORD(tag_CFG_RTSP_SUBSESSION_T)
RECORD(tag_CFG_RTSP_SESSION_T)
RECORD(tag_CFG_RTMP_SESSION_T)
RECORD(tag_CFG_NDI_SESSION_T)
RECORD(tag_CFG_SRT_STREAM_T)
RECORD(tag_CFG_SRT_INSTANCE_T)
RECORD(tagPRESET_CFG_S)
RECORD(tagNETWORK_CFG_S)
RECORD(tagNETWORK_CARDS_S)
RECORD(tagBU_BOOL)
RECORD(tagDUPLEX_E)
RECORD(tagLINK_SPEED_E)
RECORD(tagIP_MODE_E)
RECORD(tagDNS_MODE_E)

}  // extern "C"
