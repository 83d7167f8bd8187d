#include "media/wiring.h"

#include <iterator>
#include <map>

#include "base/concat.h"
#include "base/elements.h"

namespace camcfg::tool::media {
namespace {

constexpr char kEnabled[] = "enabled";

using settings::Setting;
using settings::Table;

bool hasChannelAsKey(const Table& table) {
  const Setting* key = table.key == nullptr ? nullptr : table.find(table.key);
  return key != nullptr && key->isChannel;
}

// Records inside an entry are its channels, or sessions of their own.
bool holdsSessions(const Setting& setting) {
  return setting.kind == settings::Kind::List && !hasChannelAsKey(*setting.inner);
}

// "RTMP target": the service and what it has.
std::string serviceOf(const Table& table) {
  const std::string text = table.entry;
  return text.substr(0, text.find(' '));
}

std::string nameOf(const Table& table, const Json& entry) {
  if (table.sessionName != nullptr) return table.sessionName(entry);
  const Json& name = entry.at(table.label == nullptr ? table.key : table.label);
  if (name.is_string()) return name.text();
  const std::string text = table.entry;
  return concat(text.substr(text.rfind(' ') + 1), " ", name.dump());
}

void addChannels(const Setting& setting, const Json& value, std::vector<WiredChannel>& channels) {
  if (setting.kind == settings::Kind::List) {
    const Table& inner = *setting.inner;
    for (const Json& channel : value)
      channels.push_back({channel.at(inner.key).get<int>(),
                          inner.label == nullptr ? "" : channel.at(inner.label).text()});
  } else if (setting.kind == settings::Kind::Ids) {
    for (const Json& id : value) channels.push_back({id.get<int>(), ""});
  } else if (!value.is_null()) {
    const bool hasRole = setting.channelType != nullptr;
    channels.push_back({value.get<int>(), hasRole ? settings::labelOf(setting) : ""});
  }
}

// @param session  what is known of it so far: its service, and the name of what it is in
void addSessions(const Table& table, const Json& entry, WiredSession session,
                 std::vector<WiredSession>& sessions) {
  session.name += nameOf(table, entry);
  if (table.find(kEnabled) != nullptr) session.enabled = entry.at(kEnabled).get<bool>();
  bool isSession = true;
  for (const Setting& setting : table.settings) {
    const Json& value = entry.at(setting.member);
    if (holdsSessions(setting)) {
      isSession = false;
      for (const Json& record : value)
        addSessions(*setting.inner, record,
                    {session.service, session.name + ": ", session.id, session.enabled}, sessions);
    } else if (setting.isChannel || setting.kind == settings::Kind::List) {
      addChannels(setting, value, session.channels);
    }
  }
  if (isSession) sessions.push_back(std::move(session));
}

Json jsonOf(const WiredSession& session) {
  Json channels = Json::array();
  for (const WiredChannel& channel : session.channels)
    channels.push_back({{"cache", channel.cacheId}, {"role", channel.role}});
  return {{"service", session.service},
          {"name", session.name},
          {"id", session.id},
          {kEnabled, session.enabled},
          {"channels", channels}};
}

const char* keyAttributeOf(const Table& table) {
  return table.find(table.key)->attributes.front().name;
}

// "source 0", "cache 7", "RTSP live"
std::string nodeNameOf(const Table& table, const std::string& key) {
  if (&table == &settings::streamSources()) return "source " + key;
  if (&table == &settings::streamCaches()) return "cache " + key;
  return concat(serviceOf(table), " ", key);
}

}  // namespace

std::optional<std::size_t> Wiring::source(int id) const {
  for (std::size_t i = 0; i < sources.size(); ++i)
    if (sources[i].at("id") == id) return i;
  return std::nullopt;
}

std::optional<std::size_t> Wiring::cache(int id) const {
  for (std::size_t i = 0; i < caches.size(); ++i)
    if (caches[i].id() == id) return i;
  return std::nullopt;
}

std::vector<WiredSession> sessionsOf(const Table& table, const Json& entries) {
  std::vector<WiredSession> sessions;
  for (const Json& entry : entries)
    addSessions(table, entry, {serviceOf(table), "", entry.at(table.key)}, sessions);
  return sessions;
}

Wiring readWiring() {
  Wiring wiring{loadEntries(settings::streamSources()), readCaches(), {}};
  for (const Table* table : settings::liveTables())
    for (WiredSession& session : sessionsOf(*table, loadEntries(*table)))
      wiring.sessions.push_back(std::move(session));
  return wiring;
}

Json remarksByNode(const tinyxml2::XMLDocument& document, const std::vector<Remark>& remarks) {
  // Where entries begin, and what is drawn of them; sections and all else are nothing.
  std::map<int, std::string> begins;
  for (const tinyxml2::XMLElement* top : childrenOf(document))
    for (const tinyxml2::XMLElement* section : childrenOf(*top)) begins[section->GetLineNum()];
  for (const Table* table : settings::mediaTables())
    if (const tinyxml2::XMLElement* section = sectionIn(document, *table))
      for (const tinyxml2::XMLElement* entry : entriesOf(*section, table->elements))
        if (const char* key = entry->Attribute(keyAttributeOf(*table)))
          begins[entry->GetLineNum()] = nodeNameOf(*table, key);
  Json byNode = Json::object();
  for (const auto& [line, text] : remarks) {
    const auto next = begins.upper_bound(line);
    if (next == begins.begin() || std::prev(next)->second.empty()) continue;
    byNode[std::prev(next)->second].push_back(text);
  }
  return byNode;
}

Json jsonOf(const Wiring& wiring) {
  Json sessions = Json::array();
  for (const WiredSession& session : wiring.sessions) sessions.push_back(jsonOf(session));
  return {{"sources", wiring.sources}, {"caches", jsonOf(wiring.caches)}, {"sessions", sessions}};
}

}  // namespace camcfg::tool::media
