#include "media/wiring.h"

#include <algorithm>

namespace camcfg::tool::media {
namespace {

using Channels = std::vector<WiredChannel>;

// The channels of an entry that has one for each purpose.
Channels channelsOf(const Json& entry,
                    const std::vector<std::pair<const char*, const char*>>& roles) {
  Channels channels;
  for (const auto& [member, role] : roles)
    if (!entry.at(member).is_null()) channels.push_back({entry.at(member).get<int>(), role});
  return channels;
}

// Each channel of this service is a session of its own.
void addWebsocket(std::vector<WiredSession>& sessions) {
  for (const Json& session : loadEntries(settings::websocket()))
    sessions.push_back(
        {"WebSocket", session.at("name").text(), true, {{session.at("id").get<int>(), ""}}});
}

void addRtsp(std::vector<WiredSession>& sessions) {
  for (const Json& session : loadEntries(settings::rtsp())) {
    Channels channels;
    for (const Json& channel : session.at("channels"))
      channels.push_back({channel.at("id").get<int>(), channel.at("name").text()});
    sessions.push_back({"RTSP", session.at("name").text(), true, channels});
  }
}

void addRtmp(std::vector<WiredSession>& sessions) {
  for (const Json& target : loadEntries(settings::rtmp()))
    sessions.push_back({"RTMP", "target " + target.at("id").dump(),
                        target.at("enabled").get<bool>(),
                        channelsOf(target, {{"video", "video"}, {"audio", "audio"}})});
}

void addNdi(std::vector<WiredSession>& sessions) {
  for (const Json& instance : loadEntries(settings::ndi()))
    sessions.push_back(
        {"NDI", instance.at("mainStreamName").text(), instance.at("enabled").get<bool>(),
         channelsOf(instance,
                    {{"mainVideo", "main video"}, {"subVideo", "sub video"}, {"audio", "audio"}})});
}

void addSrt(std::vector<WiredSession>& sessions) {
  for (const Json& instance : loadEntries(settings::srt())) {
    const std::string name = instance.at("mode").text() + " " + instance.at("id").dump() + ": ";
    for (const Json& stream : instance.at("streams")) {
      Channels channels;
      for (const Json& id : stream.at("channels")) channels.push_back({id.get<int>(), ""});
      sessions.push_back({"SRT", name + stream.at("id").text(), true, channels});
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
  value["sources"] = loadEntries(settings::streamSources());
  value["caches"] = jsonOf(wiring.caches);
  value["sessions"] = Json::array();
  for (const WiredSession& session : wiring.sessions) value["sessions"].push_back(jsonOf(session));
  value["findings"] = findingsIn(wiring);
  return value;
}

}  // namespace camcfg::tool::media
