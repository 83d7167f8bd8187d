#include "media/wiring.h"

#include <algorithm>

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

std::string sourceText(int id) {
  return "source " + std::to_string(id);
}

void addFindings(const CacheEntry& cache, const Wiring& wiring,
                 std::vector<std::string>& findings) {
  const std::string name = "stream cache " + std::to_string(cache.id());
  const int carried = cache.record->s32EnabledSrc;
  const tag_CFG_STREAM_SOURCE_T* source = wiring.source(carried);
  if (source == nullptr)
    findings.push_back(name + " carries " + sourceText(carried) + ", which there is not");
  else if (source->s32Enabled == 0)
    findings.push_back(name + " carries " + sourceText(carried) + ", which is disabled");
  if (cache.marksDiffer())
    findings.push_back(name + " is marked \"Default\" at " + sourceText(carried) +
                       ", but \"Enable\" at " +
                       sourceText(*cache.marked(&AllowedSource::isEnabled)));
  for (const int id : cache.allowedIds())
    if (id != carried && wiring.source(id) == nullptr)
      findings.push_back(name + " allows " + sourceText(id) + ", which there is not");
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

const tag_CFG_STREAM_SOURCE_T* Wiring::source(int id) const {
  const auto found = std::find_if(sources.begin(), sources.end(),
                                  [=](const StreamSource& one) { return one->s32Id == id; });
  return found == sources.end() ? nullptr : found->get();
}

bool Wiring::hasCache(int id) const {
  return std::any_of(caches.begin(), caches.end(),
                     [=](const CacheEntry& cache) { return cache.id() == id; });
}

Wiring readWiring() {
  const std::list<StreamSource> sources = loadStreamSources();
  Wiring wiring{{sources.begin(), sources.end()}, readCaches(), {}};
  for (const auto add : {addWebsocket, addRtsp, addRtmp, addNdi, addSrt}) add(wiring.sessions);
  return wiring;
}

std::vector<std::string> findingsIn(const Wiring& wiring) {
  std::vector<std::string> findings;
  for (const CacheEntry& cache : wiring.caches) addFindings(cache, wiring, findings);
  for (const WiredSession& session : wiring.sessions)
    for (const WiredChannel& channel : session.channels)
      if (!wiring.hasCache(channel.cacheId))
        findings.push_back(session.service + " '" + session.name + "' sends stream cache " +
                           std::to_string(channel.cacheId) + ", which there is not");
  return findings;
}

Json jsonOf(const Wiring& wiring) {
  Json value;
  value["sources"] = jsonOf(std::list<StreamSource>(wiring.sources.begin(), wiring.sources.end()));
  value["caches"] = jsonOf(wiring.caches);
  value["sessions"] = Json::array();
  for (const WiredSession& session : wiring.sessions) value["sessions"].push_back(jsonOf(session));
  value["findings"] = findingsIn(wiring);
  return value;
}

}  // namespace camcfg::tool::media
