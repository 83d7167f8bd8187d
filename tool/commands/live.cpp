#include "commands/groups.h"
#include "commands/options.h"
#include "media/json.h"
#include "media/media.h"

namespace camcfg::tool::commands {
namespace {

cli::Answer answerWith(Json sessions, std::vector<cli::Column> columns) {
  cli::Answer answer;
  answer.value = std::move(sessions);
  answer.layout = {cli::Table{"", std::move(columns)}};
  return answer;
}

media::Secrets secretsFor(const cli::Arguments& arguments) {
  return arguments.given(kShowSecrets) ? media::Secrets::Shown : media::Secrets::Masked;
}

cli::Answer websocket(const cli::Arguments& /*arguments*/) {
  return answerWith(media::jsonOf(media::loadWebsocketSessions()),
                    {{"ID", "{id}"}, {"NAME", "{name}"}});
}

cli::Answer rtsp(const cli::Arguments& /*arguments*/) {
  return answerWith(media::jsonOf(media::loadRtspSessions()),
                    {{"NAME", "{name}"}, {"CHANNELS", "{channels:{id} {name}}"}});
}

cli::Answer rtmp(const cli::Arguments& arguments) {
  return answerWith(media::jsonOf(media::loadRtmpTargets(), secretsFor(arguments)),
                    {{"ID", "{id}"},
                     {"ENABLED", "{enabled}"},
                     {"URL", "{url}"},
                     {"USER", "{username}"},
                     {"PASSWORD", "{password}"},
                     {"VIDEO", "{video}"},
                     {"AUDIO", "{audio}"}});
}

cli::Answer ndi(const cli::Arguments& /*arguments*/) {
  return answerWith(media::jsonOf(media::loadNdiInstances()),
                    {{"ID", "{id}"},
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

cli::Answer srt(const cli::Arguments& arguments) {
  return answerWith(media::jsonOf(media::loadSrtInstances(), secretsFor(arguments)),
                    {{"ID", "{id}"},
                     {"MODE", "{mode}"},
                     {"HOST", "{hostname}"},
                     {"PORT", "{port}"},
                     {"AES", "{aesMode}"},
                     {"PASSWORD", "{password}"},
                     {"LATENCY", "{latency}"},
                     {"STREAMS", "{streams:{id} ({channels}{default?; default})}"}});
}

const cli::Option kSecrets{cli::Option::Flag, kShowSecrets, "Show passwords as they are stored"};

}  // namespace

cli::CommandGroup liveGroup() {
  return {"Live media",
          {{"live", "Show what the live media services send", {}, nullptr},
           {"live websocket", "List the WebSocket sessions", {}, websocket},
           {"live rtsp", "List the RTSP sessions and their channels", {}, rtsp},
           {"live rtmp", "List the RTMP targets", {kSecrets}, rtmp},
           {"live ndi", "List the NDI instances", {}, ndi},
           {"live srt", "List the SRT instances and their streams", {kSecrets}, srt}}};
}

}  // namespace camcfg::tool::commands
