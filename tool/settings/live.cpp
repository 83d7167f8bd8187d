#include <camcfg/livemedia.h>

#include <limits>

#include "base/concat.h"
#include "settings/media.h"
#include "settings/network.h"
#include "settings/secrets.h"
#include "settings/table.h"

namespace camcfg::tool::settings {
namespace {

using Websocket = tag_CFG_WEBSOCKET_SESSION_T;
using RtspChannel = tag_CFG_RTSP_SUBSESSION_T;
using Rtsp = tag_CFG_RTSP_SESSION_T;
using Rtmp = tag_CFG_RTMP_SESSION_T;
using Ndi = tag_CFG_NDI_SESSION_T;
using SrtStream = tag_CFG_SRT_STREAM_T;
using Srt = tag_CFG_SRT_INSTANCE_T;

constexpr char kLive[] = "LiveMediaService";
constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

const Table& rtspChannel() {
  static const Table table = innerTable(
      "channel of an RTSP session", "Channel", "id", "name",
      {id<&RtspChannel::s32Id>("id", "Id", kRequired, "Stream cache that is sent").channel(),
       text<&RtspChannel::strName>("name", "Name", kRequired, "What the channel carries")});
  return table;
}

const Table& srtChannel() {
  static const Table table =
      innerTable("channel of an SRT stream", "Channel", nullptr, nullptr,
                 {Row("id", "Id", Kind::Id, kRequired, "Stream cache that is sent").channel()});
  return table;
}

const Table& srtStream() {
  static const Table table = innerTable(
      "stream of an SRT instance", "Stream", "id", nullptr,
      {text<&SrtStream::strId>("id", "Id", kRequired, "Number or name of the stream"),
       flag<&SrtStream::s32Default>("default", "Default", kOptional,
                                    "Whether callers that ask for none get it"),
       ids<&SrtStream::lstChannel>("channels", nullptr, kOptional, "Stream caches that it sends")
           .of(srtChannel())
           .channel()});
  return table;
}

void checkSrt(const Node& instance) {
  if (instance.holds({"mode", "hostname"})) return;
  const bool listens = instance.value().at("mode") == "listener";
  const auto host = instance.value().find("hostname");
  const bool hasHost = host != instance.value().end() && host->is_string() && !host->text().empty();
  if (listens && hasHost) instance.member("hostname").refuse("a listener calls no host");
  if (!listens && !hasHost) instance.refuse("a caller must have a hostname");
}

// "listener 0"
std::string srtSessionName(const Json& instance) {
  return concat(instance.at("mode").text(), " ", instance.at("id").dump());
}

// The library stores any text, but players cannot receive what is sent to it.
void checkNdi(const Node& instance) {
  if (!instance.value().at("multicastEnabled").get<bool>()) return;
  const auto require = [&](const char* name, std::string (*whyNot)(const std::string&)) {
    if (instance.holds({"multicastEnabled", name})) return;
    const auto found = instance.value().find(name);
    const std::string fault = found == instance.value().end() ? "" : whyNot(found->text());
    if (!fault.empty()) instance.member(name).refuse(fault);
  };
  require("multicastIp", whyNotMulticast);
  require("multicastNetmask", whyNotAMask);
}

// One that the library does not save as it loads it.
Table storedByElements(Table table, bool isSaved, void (*check)(const Node& entry) = nullptr) {
  table.check = check;
  table.calls.store = storeElements;
  table.isSaved = isSaved;
  return table;
}

}  // namespace

const Table& websocket() {
  static const Table table =
      tableOf<Websocket, CFG_LM_LoadWebsocketConfig, CFG_LM_DumpWebsocketConfig>(
          "live.websocket", "websocket", "WebSocket session", "id", "name", kLive, "WEBSOCKET",
          {"Channel"}, CFG_LM_CloseRead,
          {id<&Websocket::s32Id>("id", "Id", kRequired, "Stream cache that is sent")
               .channel()
               .listed("ID"),
           text<&Websocket::strName>("name", "Name", kRequired, "Name that players ask for")
               .listed("NAME")});
  return table;
}

const Table& rtsp() {
  static const Table table =
      tableOf<std::shared_ptr<Rtsp>, CFG_LM_LoadRtspConfig, CFG_LM_DumpRtspConfig>(
          "live.rtsp", "rtsp", "RTSP session", "name", nullptr, kLive, "RTSP", {"MediaGroup"},
          CFG_LM_CloseRead,
          {text<&Rtsp::strName>("name", "Name", kRequired, "Name that players ask for")
               .listed("NAME"),
           list<&Rtsp::lstSubSession>("channels", nullptr, kOptional, "What the session sends")
               .of(rtspChannel())
               .listed("CHANNELS", "{channels:{id} {name}}")});
  return table;
}

// The library does not save this section.
const Table& rtmp() {
  static const Table table = storedByElements(
      tableOf<Rtmp, CFG_LM_LoadRtmpConfig, CFG_LM_DumpRtmpConfig>(
          "live.rtmp", "rtmp", "RTMP target", "id", nullptr, kLive, "RTMP", {"Target"},
          CFG_LM_CloseRead,
          {id<&Rtmp::s32Id>("id", "Id", kRequired, "Number of the target").listed("ID"),
           onOff<&Rtmp::bEnable>("enabled", "Enable", kOptional, "Whether it is sent to")
               .assumed([](const Json&) { return Json(true); })
               .listed("ENABLED"),
           text<&Rtmp::strUrl>("url", "url", kRequired,
                               "Address of the server, with the stream's key")
               .secret(maskedUrl)
               .listed("URL"),
           text<&Rtmp::strUsername>("username", "username", kExpected, "User name for the server")
               .listed("USER"),
           text<&Rtmp::strPassword>("password", "password", kExpected, "Password for the server")
               .secret(maskedPassword)
               .optional()
               .listed("PASSWORD"),
           id<&Rtmp::s32VideoId>("video", nullptr, kOptional, "Stream cache of the video")
               .fromChannel("Video")
               .listed("VIDEO"),
           id<&Rtmp::s32AudioId>("audio", nullptr, kOptional, "Stream cache of the audio")
               .fromChannel("Audio")
               .listed("AUDIO")}),
      false);
  return table;
}

// The library saves one of its attributes under another name than it loads.
const Table& ndi() {
  static const Table table = storedByElements(
      tableOf<Ndi, CFG_LM_LoadNdiConfig, CFG_LM_DumpNdiConfig>(
          "live.ndi", "ndi", "NDI instance", "id", "mainStreamName", kLive, "NDI", {"Instance"},
          CFG_LM_CloseRead,
          {id<&Ndi::s32Id>("id", "Id", kExpected, "Number of the instance")
               .noneIsNull()
               .listed("ID"),
           onOff<&Ndi::bEnable>("enabled", "Enable", kExpected, "Whether it is published")
               .listed("ENABLED"),
           onOff<&Ndi::bDiscoveryServerEnable>("discoveryServerEnabled", "DiscoveryServerEnable",
                                               kOptional, "Whether a discovery server is used")
               .listed("DISCOVERY", 3),
           text<&Ndi::strDiscoveryServer>("discoveryServer", "DiscoveryServer", kExpected,
                                          "Address of the discovery server")
               .listed("SERVER", 3),
           text<&Ndi::strGroupName>("groupName", "GroupName", kExpected,
                                    "Groups that it is announced in")
               .listed("GROUP", 1),
           text<&Ndi::strMainStreamName>("mainStreamName", "MainStreamName", kExpected,
                                         "Name that its main stream is announced by")
               .listed("NAME"),
           onOff<&Ndi::bMulticastEnable>("multicastEnabled", "MulticastEnable", kOptional,
                                         "Whether it is sent by multicast")
               .listed("MULTICAST", 3),
           text<&Ndi::strMulticastIp>("multicastIp", "MulticastIp", kOptional,
                                      "First multicast address")
               .listed("ADDRESS", "{multicastIp}/{multicastNetmask}", 3),
           text<&Ndi::strMulticastNetmask>("multicastNetmask", "MulticastNetmask", kOptional,
                                           "Netmask of the multicast addresses"),
           integer<&Ndi::s32MulticastTTL>("multicastTtl", "MulticastTTL", kOptional, "Time to live")
               .within(0, 255)
               .in("hops")
               .listed("TTL", 3),
           id<&Ndi::s32MainVideoId>("mainVideo", nullptr, kOptional,
                                    "Stream cache of the main video")
               .fromChannel("MainVideo")
               .labelled("main video")
               .listed("MAIN", 2),
           id<&Ndi::s32SubVideoId>("subVideo", nullptr, kOptional,
                                   "Stream cache of the second video")
               .fromChannel("SubVideo")
               .labelled("sub video")
               .listed("SUB", 2),
           id<&Ndi::s32AudioId>("audio", nullptr, kOptional, "Stream cache of the audio")
               .fromChannel("Audio")
               .listed("AUDIO", 2)}),
      true, checkNdi);
  return table;
}

const Table& srt() {
  static const Table table = tableOf<Srt, CFG_LM_LoadSrtConfig, CFG_LM_DumpSrtConfig>(
      "live.srt", "srt", "SRT instance", "id", "hostname", kLive, "SRT", {"Instance"},
      CFG_LM_CloseRead,
      {id<&Srt::s32Id>("id", "Id", kRequired, "Number of the instance").listed("ID"),
       word<&Srt::s32Mode>("mode", "Mode", kRequired, "Whether it waits for calls or calls itself")
           .of({{"caller", 0, "Caller"}, {"listener", 1, "Listener"}})
           .listed("MODE"),
       text<&Srt::strHostname>("hostname", "Hostname", kOptional, "Host that a caller calls")
           .noneIsNull()
           .listed("HOST"),
       integer<&Srt::s32Port>("port", "Port", kRequired, "Port to listen on, or to call")
           .within(kPorts)
           .listed("PORT"),
       integer<&Srt::s32AesMode>("aesMode", "AesMode", kOptional, "Mode of encryption; 0 for none")
           .within(0, kMost)
           .listed("AES"),
       text<&Srt::strPassword>("password", "Password", kOptional, "Pass phrase of the encryption")
           .secret(maskedPassword)
           .optional()
           .listed("PASSWORD"),
       integer<&Srt::s32Latency>("latency", "Latency", kOptional,
                                 "Time for sending lost packets again")
           .within(0, kMost)
           .in("ms")
           .listed("LATENCY"),
       list<&Srt::lstStream>("streams", nullptr, kOptional, "What the instance sends")
           .of(srtStream())
           .listed("STREAMS", "{streams:{id} ({channels}{default?; default})}")},
      checkSrt, srtSessionName);
  return table;
}

const std::vector<const Table*>& liveTables() {
  static const std::vector<const Table*> tables = {&websocket(), &rtsp(), &rtmp(), &ndi(), &srt()};
  return tables;
}

const std::vector<const Table*>& mediaTables() {
  static const std::vector<const Table*> tables = [] {
    std::vector<const Table*> all = {&streamSources(), &streamCaches()};
    all.insert(all.end(), liveTables().begin(), liveTables().end());
    return all;
  }();
  return tables;
}

}  // namespace camcfg::tool::settings
