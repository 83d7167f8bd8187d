#include <map>
#include <set>

#include "base/concat.h"
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

/// A kind of data.
struct Data {
  std::string kind;        ///< empty: not known
  bool isRaw = false;      ///< sound as it is recorded
  bool isRunning = false;  ///< of a source
};

using Kinds = std::map<int, Data>;  // of sources or caches, by their ids

Data dataOf(const XMLElement& source) {
  const bool isVideo = isSameWord(source.Name(), "VENC");
  return {isVideo ? kVideo : kAudio, isSameWord(source.Name(), "AI"),
          source.IntAttribute("Enabled", 1) != 0};
}

// What each of them delivers.
Kinds kindsOfSources(const Elements& sources) {
  Kinds kinds;
  for (const XMLElement* source : sources)
    if (const auto id = settings::integerIn(*source, "Id")) kinds.emplace(*id, dataOf(*source));
  return kinds;
}

Elements whitelistOf(const XMLElement& cache) {
  return media::entriesOf(cache, {"AllowedStreamSource"});
}

// What a cache carries: the source that is marked, or else the last one.
Data carriedBy(const XMLElement& cache, const Kinds& sources) {
  Data carried;
  bool isMarked = false;
  for (const XMLElement* entry : whitelistOf(cache)) {
    const auto source = sources.find(settings::integerIn(*entry, "Id").value_or(-1));
    if (isMarked) continue;
    isMarked = entry->IntAttribute("Default", 0) != 0;
    carried = source == sources.end() ? Data() : source->second;
  }
  return carried;
}

void checkKind(const XMLElement& channel, const std::string& expected, const Kinds& caches,
               const Rule& rule, const char* attribute, Findings& findings) {
  const auto cache = caches.find(settings::integerIn(channel, "Id").value_or(-1));
  if (cache == caches.end() || cache->second.kind.empty() || cache->second.kind == expected) return;
  Item{channel, tag(channel.Name()), findings}.addOf(
      rule, attribute,
      concat(" ", quoted(textOf(channel, attribute)), ": cache ", cache->first, " carries ",
             cache->second.kind));
}

const char* kindOfType(const char* type) {
  return isSameWord(type, kAudio) ? kAudio : kVideo;
}

using Channels = std::map<int, const XMLElement*>;  // the first that sends a cache as one kind

// The first channel of each type counts.
void checkTyped(const XMLElement& entry, const std::vector<const char*>& types, const Kinds& caches,
                Channels& typed, Findings& findings) {
  std::set<std::string> seen;
  for (const XMLElement* channel : media::entriesOf(entry, {"Channel"}))
    for (const char* type : types) {
      if (!isSameWord(textOf(*channel, "Type"), type) || !seen.insert(type).second) continue;
      checkKind(*channel, kindOfType(type), caches, kChannelKind, "Type", findings);
      typed.emplace(settings::integerIn(*channel, "Id").value_or(-1), channel);
    }
}

// Sources to which a cache can be switched, which then sends another kind than its channel says.
void checkSwitched(const XMLElement& cache, const XMLElement& channel, const Kinds& sources,
                   Findings& findings) {
  const std::string carried = carriedBy(cache, sources).kind;
  if (carried.empty()) return;
  const std::string which = concat(", and the channel", atLine(channel), " is for ", carried);
  for (const XMLElement* entry : whitelistOf(cache)) {
    const auto source = sources.find(settings::integerIn(*entry, "Id").value_or(-1));
    if (source == sources.end() || !source->second.isRunning || source->second.kind == carried)
      continue;
    Item{*entry, "cache " + clipped(textOf(cache, "Id")), findings}.addAt(
        kCacheMixed, "Id", concat(" can be switched to ", source->second.kind, which));
  }
}

void checkMixed(const Elements& caches, const Kinds& sources, const Channels& typed,
                Findings& findings) {
  for (const XMLElement* cache : caches) {
    const auto channel = typed.find(settings::integerIn(*cache, "Id").value_or(-1));
    if (channel != typed.end()) checkSwitched(*cache, *channel->second, sources, findings);
  }
}

// Servers and players of RTMP expect encoded sound.
void checkRaw(const XMLElement& target, const Kinds& caches, Findings& findings) {
  for (const XMLElement* channel : media::entriesOf(target, {"Channel"})) {
    const auto cache = caches.find(settings::integerIn(*channel, "Id").value_or(-1));
    if (!isSameWord(textOf(*channel, "Type"), kAudio) || cache == caches.end()) continue;
    if (cache->second.isRaw)
      Item{*channel, tag(channel->Name()), findings}.addOf(
          kRtmpRawSound, "Id",
          concat(" ", cache->first, ": the cache carries an audio input, not an encoder"));
    return;
  }
}

// Players show one picture of a session.
void checkPictures(const XMLElement& session, const Kinds& caches, Findings& findings) {
  const XMLElement* first = nullptr;
  for (const XMLElement* channel : media::entriesOf(session, {"Channel"})) {
    const auto cache = caches.find(settings::integerIn(*channel, "Id").value_or(-1));
    if (cache == caches.end() || cache->second.kind != kVideo) continue;
    if (first != nullptr)
      return Item{*channel, "session " + quoted(textOf(session, "Name")), findings}.addAt(
          kSessionTwoVideos, "Id", " sends video here, as with the channel" + atLine(*first));
    first = channel;
  }
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
  const Elements caches = entriesIn(document, settings::streamCaches());
  const Kinds ofSources = kindsOfSources(entriesIn(document, settings::streamSources()));
  Kinds ofCaches;
  for (const XMLElement* cache : caches)
    if (const auto id = settings::integerIn(*cache, "Id"))
      ofCaches.emplace(*id, carriedBy(*cache, ofSources));
  Channels typed;
  for (const settings::Table* table : settings::liveTables()) {
    const std::vector<const char*> types = settings::channelTypesOf(*table);
    for (const XMLElement* entry : entriesIn(document, *table))
      checkTyped(*entry, types, ofCaches, typed, findings);
  }
  checkMixed(caches, ofSources, typed, findings);
  for (const XMLElement* target : entriesIn(document, settings::rtmp()))
    checkRaw(*target, ofCaches, findings);
  checkNamed(entriesIn(document, settings::websocket()), ofCaches, findings);
  for (const XMLElement* session : entriesIn(document, settings::rtsp())) {
    checkNamed(media::entriesOf(*session, {"Channel"}), ofCaches, findings);
    checkPictures(*session, ofCaches, findings);
  }
}

}  // namespace camcfg::tool::lint
