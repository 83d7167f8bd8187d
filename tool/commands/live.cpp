#include "commands/groups.h"
#include "device/media.h"
#include "device/media_json.h"

namespace camcfg::tool {
namespace {

constexpr char kShowSecrets[] = "--show-secrets";

Answer answerWith(Json sessions, std::vector<Column> columns) {
  Answer answer;
  answer.value = std::move(sessions);
  answer.layout = {Table{"", std::move(columns)}};
  return answer;
}

Secrets secretsFor(const Arguments& arguments) {
  return arguments.given(kShowSecrets) ? Secrets::Shown : Secrets::Masked;
}

Answer websocket(const Arguments& /*arguments*/) {
  return answerWith(jsonOf(loadWebsocketSessions()), {{"ID", "{id}"}, {"NAME", "{name}"}});
}

Answer rtsp(const Arguments& /*arguments*/) {
  return answerWith(jsonOf(loadRtspSessions()),
                    {{"NAME", "{name}"}, {"CHANNELS", "{channels:{id} {name}}"}});
}

Answer rtmp(const Arguments& arguments) {
  return answerWith(jsonOf(loadRtmpTargets(), secretsFor(arguments)), {{"ID", "{id}"},
                                                                       {"ENABLED", "{enabled}"},
                                                                       {"URL", "{url}"},
                                                                       {"USER", "{username}"},
                                                                       {"PASSWORD", "{password}"},
                                                                       {"VIDEO", "{video}"},
                                                                       {"AUDIO", "{audio}"}});
}

Answer ndi(const Arguments& /*arguments*/) {
  return answerWith(jsonOf(loadNdiInstances()), {{"ID", "{id}"},
                                                 {"ENABLED", "{enabled}"},
                                                 {"NAME", "{mainStreamName}"},
                                                 {"GROUP", "{groupName}"},
                                                 {"MAIN", "{mainVideo}"},
                                                 {"SUB", "{subVideo}"},
                                                 {"AUDIO", "{audio}"},
                                                 {"DISCOVERY", "{discoveryServerEnabled}"},
                                                 {"SERVER", "{discoveryServer}"},
                                                 {"MULTICAST", "{multicastEnabled}"},
                                                 {"ADDRESS", "{multicastIp}/{multicastNetmask}"},
                                                 {"TTL", "{multicastTtl}"}});
}

Answer srt(const Arguments& arguments) {
  return answerWith(jsonOf(loadSrtInstances(), secretsFor(arguments)),
                    {{"ID", "{id}"},
                     {"MODE", "{mode}"},
                     {"HOST", "{hostname}"},
                     {"PORT", "{port}"},
                     {"AES", "{aesMode}"},
                     {"PASSWORD", "{password}"},
                     {"LATENCY", "{latency}"},
                     {"STREAMS", "{streams:{id} ({channels}{default?; default})}"}});
}

const Option kSecrets{Option::Flag, kShowSecrets, "Show passwords as they are stored"};

}  // namespace

CommandGroup liveGroup() {
  return {"Live media",
          {{"live", "Show what the live media services send", {}, nullptr},
           {"live websocket", "List the WebSocket sessions", {}, websocket},
           {"live rtsp", "List the RTSP sessions and their channels", {}, rtsp},
           {"live rtmp", "List the RTMP targets", {kSecrets}, rtmp},
           {"live ndi", "List the NDI instances", {}, ndi},
           {"live srt", "List the SRT instances and their streams", {kSecrets}, srt}}};
}

}  // namespace camcfg::tool
