// Where every field of every record lies, in bytes: what programs built against an earlier release of
// this major version count on, on x86-64 and 64-bit ARM alike. Compiling is the test.
#include <cstddef>
#include <string>

#include "camcfg/livemedia.h"
#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/store.h"
#include "camcfg/stream.h"

// Well-defined for GCC and Clang where a record has strings, lists or a virtual destructor.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"

#define SIZE(record, bytes) static_assert(sizeof(record) == (bytes), #record)
#define FIELD(record, field, offset) \
  static_assert(offsetof(record, field) == (offset), #record "::" #field)
#define VALUE(name, value) static_assert((name) == (value), #name)

SIZE(std::string, 32);
SIZE(std::list<int>, 24);

SIZE(tag_CFG_FILE_LOCK, 16);
FIELD(tag_CFG_FILE_LOCK, pstMutex, 0);
FIELD(tag_CFG_FILE_LOCK, s32Locked, 8);

SIZE(tagCFG_VALUE_TXT_S, 528);
FIELD(tagCFG_VALUE_TXT_S, acOptTxt, 0);
FIELD(tagCFG_VALUE_TXT_S, acDef, 256);
FIELD(tagCFG_VALUE_TXT_S, acCur, 272);

SIZE(tagCFG_VALUE_INT_S, 20);
FIELD(tagCFG_VALUE_INT_S, s32Min, 0);
FIELD(tagCFG_VALUE_INT_S, s32Max, 4);
FIELD(tagCFG_VALUE_INT_S, s32Def, 8);
FIELD(tagCFG_VALUE_INT_S, s32Step, 12);
FIELD(tagCFG_VALUE_INT_S, s32Cur, 16);

SIZE(tag_CFG_STREAM_SOURCE_T, 56);
FIELD(tag_CFG_STREAM_SOURCE_T, s32Type, 8);
FIELD(tag_CFG_STREAM_SOURCE_T, s32Id, 12);
FIELD(tag_CFG_STREAM_SOURCE_T, strName, 16);
FIELD(tag_CFG_STREAM_SOURCE_T, s32Enabled, 48);
FIELD(tag_CFG_STREAM_SOURCE_T, s32ChnId, 52);

SIZE(tag_CFG_STREAM_SOURCE_VENC_T, 56);

SIZE(tag_CFG_STREAM_SOURCE_AI_T, 56);

SIZE(tag_CFG_STREAM_SOURCE_AENC_T, 56);

SIZE(tag_CFG_STREAM_CACHE_T, 56);
FIELD(tag_CFG_STREAM_CACHE_T, s32Id, 0);
FIELD(tag_CFG_STREAM_CACHE_T, strName, 8);
FIELD(tag_CFG_STREAM_CACHE_T, s32BufSize, 40);
FIELD(tag_CFG_STREAM_CACHE_T, s32BufUnit, 44);
FIELD(tag_CFG_STREAM_CACHE_T, s32EnabledSrc, 48);
FIELD(tag_CFG_STREAM_CACHE_T, s32AllowedMask, 52);

SIZE(tag_CFG_WEBSOCKET_SESSION_T, 40);
FIELD(tag_CFG_WEBSOCKET_SESSION_T, strName, 0);
FIELD(tag_CFG_WEBSOCKET_SESSION_T, s32Id, 32);

SIZE(tag_CFG_RTSP_SUBSESSION_T, 40);
FIELD(tag_CFG_RTSP_SUBSESSION_T, strName, 0);
FIELD(tag_CFG_RTSP_SUBSESSION_T, s32Id, 32);

SIZE(tag_CFG_RTSP_SESSION_T, 56);
FIELD(tag_CFG_RTSP_SESSION_T, strName, 0);
FIELD(tag_CFG_RTSP_SESSION_T, lstSubSession, 32);

SIZE(tag_CFG_RTMP_SESSION_T, 112);
FIELD(tag_CFG_RTMP_SESSION_T, s32Id, 0);
FIELD(tag_CFG_RTMP_SESSION_T, bEnable, 4);
FIELD(tag_CFG_RTMP_SESSION_T, strUrl, 8);
FIELD(tag_CFG_RTMP_SESSION_T, strUsername, 40);
FIELD(tag_CFG_RTMP_SESSION_T, strPassword, 72);
FIELD(tag_CFG_RTMP_SESSION_T, s32VideoId, 104);
FIELD(tag_CFG_RTMP_SESSION_T, s32AudioId, 108);

SIZE(tag_CFG_NDI_SESSION_T, 208);
FIELD(tag_CFG_NDI_SESSION_T, s32Id, 0);
FIELD(tag_CFG_NDI_SESSION_T, bEnable, 4);
FIELD(tag_CFG_NDI_SESSION_T, bDiscoveryServerEnable, 8);
FIELD(tag_CFG_NDI_SESSION_T, strDiscoveryServer, 16);
FIELD(tag_CFG_NDI_SESSION_T, bMulticastEnable, 48);
FIELD(tag_CFG_NDI_SESSION_T, strMulticastIp, 56);
FIELD(tag_CFG_NDI_SESSION_T, strMulticastNetmask, 88);
FIELD(tag_CFG_NDI_SESSION_T, s32MulticastTTL, 120);
FIELD(tag_CFG_NDI_SESSION_T, strGroupName, 128);
FIELD(tag_CFG_NDI_SESSION_T, strMainStreamName, 160);
FIELD(tag_CFG_NDI_SESSION_T, s32MainVideoId, 192);
FIELD(tag_CFG_NDI_SESSION_T, s32SubVideoId, 196);
FIELD(tag_CFG_NDI_SESSION_T, s32AudioId, 200);

SIZE(tag_CFG_SRT_STREAM_T, 64);
FIELD(tag_CFG_SRT_STREAM_T, strId, 0);
FIELD(tag_CFG_SRT_STREAM_T, s32Default, 32);
FIELD(tag_CFG_SRT_STREAM_T, lstChannel, 40);

SIZE(tag_CFG_SRT_INSTANCE_T, 112);
FIELD(tag_CFG_SRT_INSTANCE_T, s32Id, 0);
FIELD(tag_CFG_SRT_INSTANCE_T, s32Mode, 4);
FIELD(tag_CFG_SRT_INSTANCE_T, strHostname, 8);
FIELD(tag_CFG_SRT_INSTANCE_T, s32Port, 40);
FIELD(tag_CFG_SRT_INSTANCE_T, s32AesMode, 44);
FIELD(tag_CFG_SRT_INSTANCE_T, strPassword, 48);
FIELD(tag_CFG_SRT_INSTANCE_T, s32Latency, 80);
FIELD(tag_CFG_SRT_INSTANCE_T, lstStream, 88);

SIZE(tagPRESET_CFG_S, 88);
FIELD(tagPRESET_CFG_S, s32Id, 0);
FIELD(tagPRESET_CFG_S, s32PanPos, 4);
FIELD(tagPRESET_CFG_S, s32TiltPos, 8);
FIELD(tagPRESET_CFG_S, s32ZoomPos, 12);
FIELD(tagPRESET_CFG_S, s32FocusPos, 16);
FIELD(tagPRESET_CFG_S, s32FocusMode, 20);
FIELD(tagPRESET_CFG_S, s8Description, 24);

SIZE(tagNETWORK_CFG_S, 300);
FIELD(tagNETWORK_CFG_S, enEnable, 0);
FIELD(tagNETWORK_CFG_S, acIntf, 4);
FIELD(tagNETWORK_CFG_S, enIpMode, 20);
FIELD(tagNETWORK_CFG_S, acIpAddr, 24);
FIELD(tagNETWORK_CFG_S, acNetMask, 56);
FIELD(tagNETWORK_CFG_S, acGateWay, 88);
FIELD(tagNETWORK_CFG_S, enDnsMode, 120);
FIELD(tagNETWORK_CFG_S, acDns1, 124);
FIELD(tagNETWORK_CFG_S, acDns2, 156);
FIELD(tagNETWORK_CFG_S, acDnsSearch, 188);
FIELD(tagNETWORK_CFG_S, acDhcpDns1, 220);
FIELD(tagNETWORK_CFG_S, acDhcpDns2, 252);
FIELD(tagNETWORK_CFG_S, enAutoneg, 284);
FIELD(tagNETWORK_CFG_S, enSpeed, 288);
FIELD(tagNETWORK_CFG_S, enDuplex, 292);
FIELD(tagNETWORK_CFG_S, s32MTU, 296);

SIZE(tagNETWORK_CARDS_S, 100);
FIELD(tagNETWORK_CARDS_S, acCard, 0);
FIELD(tagNETWORK_CARDS_S, acIntf, 48);
FIELD(tagNETWORK_CARDS_S, s32Count, 96);

SIZE(tagBU_BOOL, 4);
VALUE(BU_FALSE, 0);
VALUE(BU_TRUE, 1);

SIZE(tagDUPLEX_E, 4);
VALUE(LINK_DUPLEX_HALF, 0);
VALUE(LINK_DUPLEX_FULL, 1);

SIZE(tagLINK_SPEED_E, 4);
VALUE(LINK_SPEED_10M, 10);
VALUE(LINK_SPEED_100M, 100);
VALUE(LINK_SPEED_1000M, 1000);

SIZE(tagIP_MODE_E, 4);
VALUE(IP_MODE_DHCP, 0);
VALUE(IP_MODE_STATIC, 1);

SIZE(tagDNS_MODE_E, 4);
VALUE(DNS_MODE_AUTO, 0);
VALUE(DNS_MODE_MANUAL, 1);

VALUE(CFG_PATH_SIZE, 128);
VALUE(CFG_TXT_CUR_SIZE, 256);
VALUE(CFG_LANG_TEXT_SIZE, 1024);
VALUE(PRESET_ID_MAX, 128);
VALUE(CFG_STREAM_SOURCE_VENC, 1);
VALUE(CFG_STREAM_SOURCE_AI, 2);
VALUE(CFG_STREAM_SOURCE_AENC, 3);
VALUE(static_cast<std::uint32_t>(CFG_MPP_ERR), 0x80002205);
VALUE(static_cast<std::uint32_t>(CFG_LM_ERR), 0x80002305);
