#include "media/sections.h"

#include <strings.h>

#include <limits>

#include "base/library_log.h"
#include "media/live_elements.h"

namespace camcfg::tool::media {

using namespace settings;
namespace {

using Websocket = tag_CFG_WEBSOCKET_SESSION_T;
using RtspChannel = tag_CFG_RTSP_SUBSESSION_T;
using Rtsp = tag_CFG_RTSP_SESSION_T;
using Rtmp = tag_CFG_RTMP_SESSION_T;
using Ndi = tag_CFG_NDI_SESSION_T;
using SrtStream = tag_CFG_SRT_STREAM_T;
using Srt = tag_CFG_SRT_INSTANCE_T;

const Range kPort{1, 65535};
const Range kTimeToLive{0, 255};
const Range kCount{0, std::numeric_limits<std::int32_t>::max()};

const Members<Websocket> kWebsocket = {id("id", &Websocket::s32Id),
                                       text("name", &Websocket::strName)};

const Members<RtspChannel> kRtspChannel = {id("id", &RtspChannel::s32Id),
                                           text("name", &RtspChannel::strName)};

const Members<Rtsp> kRtsp = {text("name", &Rtsp::strName),
                             records("channels", &Rtsp::lstSubSession, kRtspChannel, "id")};

const Members<Rtmp> kRtmp = {attribute("Id", id("id", &Rtmp::s32Id)),
                             attribute("Enable", flag("enabled", &Rtmp::bEnable)),
                             attribute("url", text("url", &Rtmp::strUrl)),
                             attribute("username", text("username", &Rtmp::strUsername)),
                             attribute("password", optional(text("password", &Rtmp::strPassword))),
                             channel("Video", idOrNone("video", &Rtmp::s32VideoId)),
                             channel("Audio", idOrNone("audio", &Rtmp::s32AudioId))};

const Members<Ndi> kNdi = {
    attribute("Id", idOrNone("id", &Ndi::s32Id)),
    attribute("Enable", flag("enabled", &Ndi::bEnable)),
    attribute("DiscoveryServerEnable",
              flag("discoveryServerEnabled", &Ndi::bDiscoveryServerEnable)),
    attribute("DiscoveryServer", text("discoveryServer", &Ndi::strDiscoveryServer)),
    attribute("GroupName", text("groupName", &Ndi::strGroupName)),
    attribute("MainStreamName", text("mainStreamName", &Ndi::strMainStreamName)),
    attribute("MulticastEnable", flag("multicastEnabled", &Ndi::bMulticastEnable)),
    attribute("MulticastIp", text("multicastIp", &Ndi::strMulticastIp)),
    attribute("MulticastNetmask", text("multicastNetmask", &Ndi::strMulticastNetmask)),
    attribute("MulticastTTL", number("multicastTtl", &Ndi::s32MulticastTTL, kTimeToLive)),
    channel("MainVideo", idOrNone("mainVideo", &Ndi::s32MainVideoId)),
    channel("SubVideo", idOrNone("subVideo", &Ndi::s32SubVideoId)),
    channel("Audio", idOrNone("audio", &Ndi::s32AudioId))};

const Members<SrtStream> kSrtStream = {text("id", &SrtStream::strId),
                                       flag("default", &SrtStream::s32Default),
                                       ids("channels", &SrtStream::lstChannel)};

const Words kModes = {{"caller", 0}, {"listener", 1}};

const Members<Srt> kSrt = {id("id", &Srt::s32Id),
                           word("mode", &Srt::s32Mode, kModes),
                           textOrNone("hostname", &Srt::strHostname),
                           number("port", &Srt::s32Port, kPort),
                           number("aesMode", &Srt::s32AesMode, kCount),
                           optional(text("password", &Srt::strPassword)),
                           number("latency", &Srt::s32Latency, kCount),
                           records("streams", &Srt::lstStream, kSrtStream, "id")};

void checkSrt(const Node& node, const Srt& instance, device::Plan& /*plan*/) {
  const bool listens = instance.s32Mode != 0;
  if (listens && !instance.strHostname.empty())
    node.member("hostname").refuse("a listener calls no host");
  if (!listens && instance.strHostname.empty()) node.refuse("a caller must have a hostname");
}

// A listener's host is not loaded.
void addUnreadHost(const tinyxml2::XMLElement& instance, Losses& losses) {
  const char* mode = instance.Attribute("Mode");
  if (mode != nullptr && strcasecmp(mode, "Listener") == 0 &&
      instance.Attribute("Hostname") != nullptr)
    losses.push_back("\"Hostname\" of the listener at line " +
                     std::to_string(instance.GetLineNum()));
}

const ElementForm kChannelForm{"Channel", {"Id"}, {}};
const ElementForm kNamedChannelForm{"Channel", {"Id", "Name"}, {}};
const ElementForm kGroupForm{"MediaGroup", {"Name"}, {kNamedChannelForm}};
const ElementForm kSrtForm{"Instance",
                           {"Id", "Mode", "Hostname", "Port", "AesMode", "Password", "Latency"},
                           {{"Stream", {"Id", "Default"}, {kChannelForm}}}};

template <typename Records>
auto dumpWith(int (*dump)(const Records&)) {
  return [=](const Records& records) { return heard([&] { return dump(records); }) == 0; };
}

bool storeRtsp(const std::list<Rtsp>& records) {
  return heard([&] { return CFG_LM_DumpRtspConfig(sharedCopiesOf(records)); }) == 0;
}

device::Section websocketSection() {
  const std::string name = "live.websocket";
  return sectionOf(RecordSection<Websocket>{
      name, kWebsocket, "id", loadWebsocketSessions, dumpWith(CFG_LM_DumpWebsocketConfig),
      [=] { return lossNotes(name, kWebsocketSessions, {kNamedChannelForm}); }});
}

device::Section rtspSection() {
  const std::string name = "live.rtsp";
  return sectionOf(
      RecordSection<Rtsp>{name, kRtsp, nullptr, [] { return copiesOf(loadRtspSessions()); },
                          storeRtsp, [=] { return lossNotes(name, kRtspSessions, {kGroupForm}); }});
}

device::Section rtmpSection() {
  const std::string name = "live.rtmp";
  return sectionOf(RecordSection<Rtmp>{
      name, kRtmp, "id", loadRtmpTargets,
      [](const std::list<Rtmp>& records) { return storeElements(kRtmpTargets, kRtmp, records); },
      [=] { return elementLosses(name, kRtmpTargets, kRtmp); }});
}

device::Section ndiSection() {
  const std::string name = "live.ndi";
  return sectionOf(RecordSection<Ndi>{
      name, kNdi, "id", loadNdiInstances,
      [](const std::list<Ndi>& records) { return storeElements(kNdiInstances, kNdi, records); },
      [=] { return elementLosses(name, kNdiInstances, kNdi); }});
}

device::Section srtSection() {
  const std::string name = "live.srt";
  return sectionOf(RecordSection<Srt>{
      name, kSrt, "id", loadSrtInstances, dumpWith(CFG_LM_DumpSrtConfig),
      [=] { return lossNotes(name, kSrtInstances, {kSrtForm}, addUnreadHost); }, checkSrt});
}

}  // namespace

std::vector<device::Section> liveSections() {
  return {websocketSection(), rtspSection(), rtmpSection(), ndiSection(), srtSection()};
}

}  // namespace camcfg::tool::media
