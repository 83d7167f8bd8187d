#include <map>
#include <set>

#include "lint/item.h"
#include "lint/lint.h"
#include "lint/media_form.h"
#include "lint/rules.h"
#include "settings/table.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr char kVideo[] = "video";
constexpr char kAudio[] = "audio";

using Kinds = std::map<int, std::string>;  // of sources or caches, by their ids

Kinds kindsOfSources(const XMLDocument& document, Findings& findings) {
  Kinds kinds;
  std::map<std::string, const XMLElement*> hardware;
  for (const XMLElement* source : entriesIn(document, settings::streamSources())) {
    const bool isVideo = isSameWord(source->Name(), "VENC");
    if (const auto id = settings::integerIn(*source, "Id"))
      kinds.emplace(*id, isVideo ? kVideo : kAudio);
    const char* channel = isVideo ? "ChnId" : isSameWord(source->Name(), "AI") ? "AiId" : "AencId";
    const auto number = settings::integerIn(*source, channel);
    if (!number || *number == -1) continue;
    const auto [first, isNew] = hardware.emplace(channel + std::to_string(*number), source);
    if (!isNew)
      Item{*source, tag(source->Name()), findings}.addOf(
          kHardwareTwice, channel,
          " " + std::to_string(*number) + " is that of the one" + atLine(*first->second) + ", too");
  }
  return kinds;
}

// What a cache carries: the source that is marked, or else the last one.
std::string kindOfCache(const XMLElement& cache, const Kinds& sources) {
  std::string carried;
  bool isMarked = false;
  for (const XMLElement* entry : media::entriesOf(cache, {"AllowedStreamSource"})) {
    const auto source = sources.find(settings::integerIn(*entry, "Id").value_or(-1));
    if (isMarked) continue;
    isMarked = entry->IntAttribute("Default", 0) != 0;
    carried = source == sources.end() ? "" : source->second;
  }
  return carried;
}

void checkKind(const XMLElement& channel, const std::string& expected, const Kinds& caches,
               const Rule& rule, const char* attribute, Findings& findings) {
  const auto cache = caches.find(settings::integerIn(channel, "Id").value_or(-1));
  if (cache == caches.end() || cache->second.empty() || cache->second == expected) return;
  Item{channel, tag(channel.Name()), findings}.addOf(rule, attribute,
                                                     " " + quoted(textOf(channel, attribute)) +
                                                         ": cache " + std::to_string(cache->first) +
                                                         " carries " + cache->second);
}

// The first channel of each type counts.
void checkTyped(const XMLElement& entry, const std::vector<const char*>& types, const Kinds& caches,
                Findings& findings) {
  std::set<std::string> seen;
  for (const XMLElement* channel : media::entriesOf(entry, {"Channel"}))
    for (const char* type : types)
      if (isSameWord(textOf(*channel, "Type"), type) && seen.insert(type).second)
        checkKind(*channel, isSameWord(type, kAudio) ? kAudio : kVideo, caches, kChannelKind,
                  "Type", findings);
}

// Channels without a type that are named after one.
void checkNamed(const Elements& channels, const Kinds& caches, Findings& findings) {
  for (const XMLElement* channel : channels)
    for (const char* kind : {kVideo, kAudio})
      if (isSameWord(textOf(*channel, "Name"), kind))
        checkKind(*channel, kind, caches, kChannelNameKind, "Name", findings);
}

}  // namespace

void checkKinds(const Source& source, Findings& findings) {
  const XMLDocument& document = *source.document;
  const Kinds sources = kindsOfSources(document, findings);
  Kinds caches;
  for (const XMLElement* cache : entriesIn(document, settings::streamCaches())) {
    const std::string kind = kindOfCache(*cache, sources);
    if (const auto id = settings::integerIn(*cache, "Id")) caches.emplace(*id, kind);
  }
  for (const settings::Table* table : settings::liveTables()) {
    const std::vector<const char*> types = settings::channelTypesOf(*table);
    for (const XMLElement* entry : entriesIn(document, *table))
      checkTyped(*entry, types, caches, findings);
  }
  checkNamed(entriesIn(document, settings::websocket()), caches, findings);
  for (const XMLElement* session : entriesIn(document, settings::rtsp()))
    checkNamed(media::entriesOf(*session, {"Channel"}), caches, findings);
}

}  // namespace camcfg::tool::lint
