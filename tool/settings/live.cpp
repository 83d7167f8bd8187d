#include <camcfg/livemedia.h>

#include <limits>

#include "settings/elements.h"
#include "settings/media.h"
#include "settings/record.h"
#include "settings/row.h"
#include "settings/secrets.h"

namespace camcfg::tool::settings {
namespace {

using Websocket = tag_CFG_WEBSOCKET_SESSION_T;
using RtspChannel = tag_CFG_RTSP_SUBSESSION_T;
using Rtsp = tag_CFG_RTSP_SESSION_T;
using Rtmp = tag_CFG_RTMP_SESSION_T;
using Ndi = tag_CFG_NDI_SESSION_T;
using SrtStream = tag_CFG_SRT_STREAM_T;
using Srt = tag_CFG_SRT_INSTANCE_T;

constexpr Need kRequired = Need::Required;
constexpr Need kExpected = Need::Expected;
constexpr Need kOptional = Need::Optional;
constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();

const Table& rtspChannel() {
  static const Table table =
      innerTable("channel of an RTSP session", "Channel", "id",
                 {Row("id", "Id", Kind::Id, kRequired, fieldOf<&RtspChannel::s32Id>(),
                      "Stream cache that is sent")
                      .channel(),
                  Row("name", "Name", Kind::Text, kRequired, fieldOf<&RtspChannel::strName>(),
                      "What the channel carries")});
  return table;
}

const Table& srtChannel() {
  static const Table table =
      innerTable("channel of an SRT stream", "Channel", nullptr,
                 {Row("id", "Id", Kind::Id, kRequired, {}, "Stream cache that is sent").channel()});
  return table;
}

const Table& srtStream() {
  static const Table table = innerTable(
      "stream of an SRT instance", "Stream", "id",
      {Row("id", "Id", Kind::Text, kRequired, fieldOf<&SrtStream::strId>(),
           "Number or name of the stream"),
       Row("default", "Default", Kind::Flag, kOptional, fieldOf<&SrtStream::s32Default>(),
           "Whether callers that ask for none get it"),
       Row("channels", nullptr, Kind::Ids, kOptional, fieldOf<&SrtStream::lstChannel>(),
           "Stream caches that it sends")
           .of(srtChannel())
           .channel()});
  return table;
}

void checkSrt(const Node& instance) {
  const bool listens = instance.value().at("mode") == "listener";
  const auto host = instance.value().find("hostname");
  const bool hasHost = host != instance.value().end() && host->is_string() && !host->text().empty();
  if (listens && hasHost) instance.member("hostname").refuse("a listener calls no host");
  if (!listens && !hasHost) instance.refuse("a caller must have a hostname");
}

// A section of the live media services.
Table liveTable(const char* place, const char* section, const char* entry, const char* element,
                const char* key, const char* label, Settings settings, const Calls& calls) {
  return {place,     place + sizeof "live", entry, key, label, "LiveMediaService", section,
          {element}, std::move(settings),   calls};
}

}  // namespace

const Table& websocket() {
  using Library = CallsOf<Websocket, CFG_LM_LoadWebsocketConfig, CFG_LM_DumpWebsocketConfig>;
  static const Table table =
      liveTable("live.websocket", "WEBSOCKET", "WebSocket session", "Channel", "id", "name",
                {Row("id", "Id", Kind::Id, kRequired, fieldOf<&Websocket::s32Id>(),
                     "Stream cache that is sent")
                     .channel()
                     .listed("ID", "{id}"),
                 Row("name", "Name", Kind::Text, kRequired, fieldOf<&Websocket::strName>(),
                     "Name that players ask for")
                     .listed("NAME", "{name}")},
                Library::calls(CFG_LM_CloseRead));
  return table;
}

const Table& rtsp() {
  using Library = CallsOf<std::shared_ptr<Rtsp>, CFG_LM_LoadRtspConfig, CFG_LM_DumpRtspConfig>;
  static const Table table =
      liveTable("live.rtsp", "RTSP", "RTSP session", "MediaGroup", "name", nullptr,
                {Row("name", "Name", Kind::Text, kRequired, fieldOf<&Rtsp::strName>(),
                     "Name that players ask for")
                     .listed("NAME", "{name}"),
                 Row("channels", nullptr, Kind::List, kOptional, fieldOf<&Rtsp::lstSubSession>(),
                     "What the session sends")
                     .of(rtspChannel())
                     .listed("CHANNELS", "{channels:{id} {name}}")},
                Library::calls(CFG_LM_CloseRead));
  return table;
}

// The library does not save this section.
const Table& rtmp() {
  using Library = CallsOf<Rtmp, CFG_LM_LoadRtmpConfig, CFG_LM_DumpRtmpConfig>;
  static const Table table = [] {
    Calls calls = Library::calls(CFG_LM_CloseRead);
    calls.store = storeElements;
    Table made = liveTable(
        "live.rtmp", "RTMP", "RTMP target", "Target", "id", nullptr,
        {Row("id", "Id", Kind::Id, kRequired, fieldOf<&Rtmp::s32Id>(), "Number of the target")
             .listed("ID", "{id}"),
         Row("enabled", "Enable", Kind::Switch, kOptional, fieldOf<&Rtmp::bEnable>(),
             "Whether it is sent to")
             .listed("ENABLED", "{enabled}"),
         Row("url", "url", Kind::Text, kRequired, fieldOf<&Rtmp::strUrl>(),
             "Address of the server, with the stream's key")
             .secret(maskedUrl)
             .listed("URL", "{url}"),
         Row("username", "username", Kind::Text, kExpected, fieldOf<&Rtmp::strUsername>(),
             "User name for the server")
             .listed("USER", "{username}"),
         Row("password", "password", Kind::Text, kExpected, fieldOf<&Rtmp::strPassword>(),
             "Password for the server")
             .secret(maskedPassword)
             .optional()
             .listed("PASSWORD", "{password}"),
         Row("video", nullptr, Kind::Id, kOptional, fieldOf<&Rtmp::s32VideoId>(),
             "Stream cache of the video")
             .fromChannel("Video")
             .listed("VIDEO", "{video}"),
         Row("audio", nullptr, Kind::Id, kOptional, fieldOf<&Rtmp::s32AudioId>(),
             "Stream cache of the audio")
             .fromChannel("Audio")
             .listed("AUDIO", "{audio}")},
        calls);
    made.isSaved = false;
    return made;
  }();
  return table;
}

// The library saves one of its attributes under another name than it loads.
const Table& ndi() {
  using Library = CallsOf<Ndi, CFG_LM_LoadNdiConfig, CFG_LM_DumpNdiConfig>;
  static const Table table = [] {
    Calls calls = Library::calls(CFG_LM_CloseRead);
    calls.store = storeElements;
    return liveTable(
        "live.ndi", "NDI", "NDI instance", "Instance", "id", "mainStreamName",
        {Row("id", "Id", Kind::Id, kExpected, fieldOf<&Ndi::s32Id>(), "Number of the instance")
             .noneIsNull()
             .listed("ID", "{id}"),
         Row("enabled", "Enable", Kind::Switch, kExpected, fieldOf<&Ndi::bEnable>(),
             "Whether it is published")
             .listed("ENABLED", "{enabled}"),
         Row("discoveryServerEnabled", "DiscoveryServerEnable", Kind::Switch, kOptional,
             fieldOf<&Ndi::bDiscoveryServerEnable>(), "Whether a discovery server is used")
             .listed("DISCOVERY", "{discoveryServerEnabled}", 3),
         Row("discoveryServer", "DiscoveryServer", Kind::Text, kExpected,
             fieldOf<&Ndi::strDiscoveryServer>(), "Address of the discovery server")
             .listed("SERVER", "{discoveryServer}", 3),
         Row("groupName", "GroupName", Kind::Text, kExpected, fieldOf<&Ndi::strGroupName>(),
             "Groups that it is announced in")
             .listed("GROUP", "{groupName}", 1),
         Row("mainStreamName", "MainStreamName", Kind::Text, kExpected,
             fieldOf<&Ndi::strMainStreamName>(), "Name that its main stream is announced by")
             .listed("NAME", "{mainStreamName}"),
         Row("multicastEnabled", "MulticastEnable", Kind::Switch, kOptional,
             fieldOf<&Ndi::bMulticastEnable>(), "Whether it is sent by multicast")
             .listed("MULTICAST", "{multicastEnabled}", 3),
         Row("multicastIp", "MulticastIp", Kind::Text, kOptional, fieldOf<&Ndi::strMulticastIp>(),
             "First multicast address")
             .listed("ADDRESS", "{multicastIp}/{multicastNetmask}", 3),
         Row("multicastNetmask", "MulticastNetmask", Kind::Text, kOptional,
             fieldOf<&Ndi::strMulticastNetmask>(), "Netmask of the multicast addresses"),
         Row("multicastTtl", "MulticastTTL", Kind::Integer, kOptional,
             fieldOf<&Ndi::s32MulticastTTL>(), "Time to live")
             .within(0, 255)
             .in("hops")
             .listed("TTL", "{multicastTtl}", 3),
         Row("mainVideo", nullptr, Kind::Id, kOptional, fieldOf<&Ndi::s32MainVideoId>(),
             "Stream cache of the main video")
             .fromChannel("MainVideo")
             .listed("MAIN", "{mainVideo}", 2),
         Row("subVideo", nullptr, Kind::Id, kOptional, fieldOf<&Ndi::s32SubVideoId>(),
             "Stream cache of the second video")
             .fromChannel("SubVideo")
             .listed("SUB", "{subVideo}", 2),
         Row("audio", nullptr, Kind::Id, kOptional, fieldOf<&Ndi::s32AudioId>(),
             "Stream cache of the audio")
             .fromChannel("Audio")
             .listed("AUDIO", "{audio}", 2)},
        calls);
  }();
  return table;
}

const Table& srt() {
  using Library = CallsOf<Srt, CFG_LM_LoadSrtConfig, CFG_LM_DumpSrtConfig>;
  static const Table table = [] {
    Table made = liveTable(
        "live.srt", "SRT", "SRT instance", "Instance", "id", "hostname",
        {Row("id", "Id", Kind::Id, kRequired, fieldOf<&Srt::s32Id>(), "Number of the instance")
             .listed("ID", "{id}"),
         Row("mode", "Mode", Kind::Word, kRequired, fieldOf<&Srt::s32Mode>(),
             "Whether it waits for calls or calls itself")
             .of({{"caller", 0, "Caller"}, {"listener", 1, "Listener"}})
             .listed("MODE", "{mode}"),
         Row("hostname", "Hostname", Kind::Text, kOptional, fieldOf<&Srt::strHostname>(),
             "Host that a caller calls")
             .noneIsNull()
             .listed("HOST", "{hostname}"),
         Row("port", "Port", Kind::Integer, kRequired, fieldOf<&Srt::s32Port>(),
             "Port to listen on, or to call")
             .within(1, 65535)
             .listed("PORT", "{port}"),
         Row("aesMode", "AesMode", Kind::Integer, kOptional, fieldOf<&Srt::s32AesMode>(),
             "Mode of encryption; 0 for none")
             .within(0, kMost)
             .listed("AES", "{aesMode}"),
         Row("password", "Password", Kind::Text, kOptional, fieldOf<&Srt::strPassword>(),
             "Pass phrase of the encryption")
             .secret(maskedPassword)
             .optional()
             .listed("PASSWORD", "{password}"),
         Row("latency", "Latency", Kind::Integer, kOptional, fieldOf<&Srt::s32Latency>(),
             "Time for sending lost packets again")
             .within(0, kMost)
             .in("ms")
             .listed("LATENCY", "{latency}"),
         Row("streams", nullptr, Kind::List, kOptional, fieldOf<&Srt::lstStream>(),
             "What the instance sends")
             .of(srtStream())
             .listed("STREAMS", "{streams:{id} ({channels}{default?; default})}")},
        Library::calls(CFG_LM_CloseRead));
    made.check = checkSrt;
    return made;
  }();
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
