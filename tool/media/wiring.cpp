#include "media/wiring.h"

#include "media/json.h"

namespace camcfg::tool::media {
namespace {

using Channels = std::vector<WiredChannel>;

void addIfAny(Channels& channels, std::int32_t id, const char* role) {
  if (!channelOrNull(id).is_null()) channels.push_back({id, role});
}

// Each channel of this service is a session of its own.
void addWebsocket(std::vector<WiredSession>& sessions) {
  for (const auto& session : loadWebsocketSessions())
    sessions.push_back({"WebSocket", session.strName, true, {{session.s32Id, ""}}});
}

void addRtsp(std::vector<WiredSession>& sessions) {
  for (const RtspSession& session : loadRtspSessions()) {
    Channels channels;
    for (const auto& channel : session->lstSubSession)
      channels.push_back({channel.s32Id, channel.strName});
    sessions.push_back({"RTSP", session->strName, true, channels});
  }
}

void addRtmp(std::vector<WiredSession>& sessions) {
  for (const auto& target : loadRtmpTargets()) {
    Channels channels;
    addIfAny(channels, target.s32VideoId, "video");
    addIfAny(channels, target.s32AudioId, "audio");
    sessions.push_back(
        {"RTMP", "target " + std::to_string(target.s32Id), target.bEnable != 0, channels});
  }
}

void addNdi(std::vector<WiredSession>& sessions) {
  for (const auto& instance : loadNdiInstances()) {
    Channels channels;
    addIfAny(channels, instance.s32MainVideoId, "main video");
    addIfAny(channels, instance.s32SubVideoId, "sub video");
    addIfAny(channels, instance.s32AudioId, "audio");
    sessions.push_back({"NDI", instance.strMainStreamName, instance.bEnable != 0, channels});
  }
}

void addSrt(std::vector<WiredSession>& sessions) {
  for (const auto& instance : loadSrtInstances()) {
    const std::string name = std::string(instance.s32Mode != 0 ? "listener " : "caller ") +
                             std::to_string(instance.s32Id) + ": ";
    for (const auto& stream : instance.lstStream) {
      Channels channels;
      for (const int id : stream.lstChannel) channels.push_back({id, ""});
      sessions.push_back({"SRT", name + stream.strId, true, channels});
    }
  }
}

Json jsonOf(const WiredSession& session) {
  Json channels = Json::array();
  for (const WiredChannel& channel : session.channels)
    channels.push_back({{"cache", channel.cacheId}, {"role", channel.role}});
  return {{"service", session.service},
          {"name", session.name},
          {"enabled", session.enabled},
          {"channels", channels}};
}

}  // namespace

std::optional<std::size_t> Wiring::source(int id) const {
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (sources[i]->s32Id == id) return i;
  return std::nullopt;
}

std::optional<std::size_t> Wiring::cache(int id) const {
  for (std::size_t i = 0; i < caches.size(); ++i)
    if (caches[i].id() == id) return i;
  return std::nullopt;
}

Wiring readWiring() {
  const std::list<StreamSource> sources = loadStreamSources();
  Wiring wiring{{sources.begin(), sources.end()}, readCaches(), {}};
  for (const auto add : {addWebsocket, addRtsp, addRtmp, addNdi, addSrt}) add(wiring.sessions);
  return wiring;
}

Json jsonOf(const Wiring& wiring) {
  Json value;
  value["sources"] = jsonOf(std::list<StreamSource>(wiring.sources.begin(), wiring.sources.end()));
  value["caches"] = jsonOf(wiring.caches);
  value["sessions"] = Json::array();
  for (const WiredSession& session : wiring.sessions) value["sessions"].push_back(jsonOf(session));
  return value;
}

}  // namespace camcfg::tool::media
