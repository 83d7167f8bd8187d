#include "media/wiring.h"

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
  value["sources"] = loadEntries(settings::streamSources());
  value["caches"] = jsonOf(wiring.caches);
  value["sessions"] = Json::array();
  for (const WiredSession& session : wiring.sessions) value["sessions"].push_back(jsonOf(session));
  return value;
}

}  // namespace camcfg::tool::media
