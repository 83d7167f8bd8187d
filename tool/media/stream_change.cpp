#include "media/stream_change.h"

#include <camcfg/store.h>

#include <algorithm>
#include <climits>

#include "base/decimal.h"
#include "base/library_log.h"
#include "base/refusal.h"
#include "device/change.h"
#include "media/cache_losses.h"
#include "media/stream_cache.h"
#include "settings/node.h"

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

constexpr std::size_t kEntryBytes = 64;  // of a whitelist's entry, its line's indentation included

std::string joined(const std::vector<int>& ids) {
  std::string list;
  for (const int id : ids) list += (list.empty() ? "" : ", ") + std::to_string(id);
  return list;
}

std::string nameOf(const CacheEntry& cache) {
  return "stream cache " + std::to_string(cache.id());
}

int requireId(const std::string& text) {
  const std::optional<long long> id = decimal(text);
  if (!id || *id < INT_MIN || *id > INT_MAX) throw Refusal("'" + text + "' is no id");
  return static_cast<int>(*id);
}

std::size_t requireCache(const std::vector<CacheEntry>& caches, const std::string& text) {
  const int id = requireId(text);
  std::vector<int> ids;
  for (const CacheEntry& cache : caches) {
    if (cache.id() == id) return ids.size();
    ids.push_back(cache.id());
  }
  throw Refusal("there is no stream cache " + text +
                (ids.empty() ? "" : "; there are " + joined(ids)));
}

int requireAllowed(const CacheEntry& cache, const std::string& text) {
  const int id = requireId(text);
  if (cache.allows(id)) return id;
  throw Refusal(nameOf(cache) + " does not allow source " + text + "; it allows " +
                joined(cache.allowedIds()));
}

// The update in place finds a source by an "Id" that is there.
void requireOwnId(const CacheEntry& cache, int sourceId) {
  for (const AllowedSource& source : cache.allowed)
    if (source.id == sourceId && source.hasId) return;
  throw Refusal(nameOf(cache) + ": its entry for source " + std::to_string(sourceId) +
                " has no \"Id\", so the library does not find it");
}

// The element that the library's updates find: by the beginning of its name.
XMLElement* foundForUpdate(XMLDocument& document, int cacheId) {
  return CFG_GetElementByNameId(requireSection(document, settings::streamCaches()), "Cache",
                                cacheId);
}

void requireReachable(const CacheEntry& cache) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  const XMLElement* found = foundForUpdate(*document, cache.id());
  if (found != nullptr && found->GetLineNum() == cache.line) return;
  const std::string line = " at line " + std::to_string(cache.line);
  throw Refusal(nameOf(cache) + ": the library would change " +
                (found == nullptr ? "nothing" : mediaPlace(found)) + " in place of the element" +
                line + ", whose name it does not find");
}

// An update that fails may leave the document open and the lock held.
bool update(const std::function<int()>& call) {
  return heard([&] {
           const int result = call();
           if (result != 0) {
             CFG_MPP_CloseRead();
             CFG_UnlockFile(device::argument(CFG_FILE_MPP));
           }
           return result;
         }) == 0;
}

// A cache in a document of the file, as it is there.
CacheEntry cacheIn(XMLDocument& document, const StreamCache& record, std::size_t index) {
  XMLElement* section = requireSection(document, settings::streamCaches());
  const std::vector<CacheEntry> caches = cachesOf(section, {index + 1, record});
  return caches.size() > index ? caches[index] : CacheEntry{record, {}};
}

Outcome markAnswer(const CacheEntry& cache, Mark mark, int sourceId) {
  Outcome outcome;
  const bool isDefault = mark == &AllowedSource::isDefault;
  outcome.value = {{"cache", cache.id()}, {"mark", isDefault ? "Default" : "Enable"}};
  outcome.value["before"] = idOrNull(cache.marked(mark));
  outcome.value["value"] = sourceId;
  return outcome;
}

void tellDisagreement(Outcome& outcome, int enabled, int carried) {
  if (enabled == carried) return;
  outcome.notes.push_back("note: the loader goes by \"Default\" and still takes source " +
                          std::to_string(carried));
}

std::vector<int> requireSourceIds(const std::vector<std::string>& texts) {
  std::vector<int> ids;
  for (const std::string& text : texts) {
    const int id = requireId(text);
    if (id < 0 || id > settings::kGreatestSourceId)
      throw Refusal("source " + settings::outside(text, id, 0, settings::kGreatestSourceId));
    ids.push_back(id);
  }
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

std::vector<int> unknownOf(std::vector<int> ids) {
  for (const StreamSource& source : loadStreamSources())
    ids.erase(std::remove(ids.begin(), ids.end(), source->s32Id), ids.end());
  return ids;
}

// The loader goes by "Default", which a replaced whitelist has not; without it the last one counts.
void tellLostDefault(Outcome& outcome, const CacheEntry& cache, const std::vector<int>& ids) {
  const std::optional<int> before = cache.marked(&AllowedSource::isDefault);
  if (!before) return;
  const std::string id = std::to_string(cache.id());
  outcome.notes.push_back("note: the mark \"Default\" at source " + std::to_string(*before) +
                          " is gone; the loader takes source " + std::to_string(ids.back()) +
                          ", the last one, until 'camcfg stream cache " + id +
                          " default SOURCE' marks one");
}

}  // namespace

Outcome selectSource(const std::string& cacheId, const std::string& sourceId) {
  const std::vector<CacheEntry> caches = readCaches();
  const std::size_t index = requireCache(caches, cacheId);
  const CacheEntry& cache = caches[index];
  const int source = requireAllowed(cache, sourceId);
  requireOwnId(cache, source);
  requireReachable(cache);
  const auto make = [&] {
    return update([&] { return CFG_MPP_UpdateStreamCacheEnabledStreamSource(cache.id(), source); });
  };
  const auto arrived = [&](XMLDocument& document) {
    return cacheIn(document, cache.record, index).markedOnly(&AllowedSource::isEnabled, source);
  };
  device::makeChange(
      {CFG_FILE_MPP, nameOf(cache), cache.allowed.size() * kEntryBytes, make, arrived});

  Outcome outcome = markAnswer(cache, &AllowedSource::isEnabled, source);
  tellDisagreement(outcome, source, cache.record->s32EnabledSrc);
  return outcome;
}

Outcome makeDefaultSource(const std::string& cacheId, const std::string& sourceId, bool rehearse) {
  const std::vector<CacheEntry> caches = readCaches();
  const std::size_t index = requireCache(caches, cacheId);
  const CacheEntry& cache = caches[index];
  const int source = requireAllowed(cache, sourceId);
  requireDumpable(caches);

  Outcome outcome = markAnswer(cache, &AllowedSource::isDefault, source);
  outcome.notes = dumpNotes(caches, cache.id());
  if (rehearse) return outcome;
  std::list<StreamCache> records;
  std::size_t entries = 0;
  for (const CacheEntry& entry : caches) {
    records.push_back(std::make_shared<tag_CFG_STREAM_CACHE_T>(*entry.record));
    entries += 1 + entry.allowed.size();
  }
  (*std::next(records.begin(), static_cast<std::ptrdiff_t>(index)))->s32EnabledSrc = source;
  const auto make = [&] { return update([&] { return CFG_MPP_DumpStreamCacheConfig(records); }); };
  const auto arrived = [&](XMLDocument& document) {
    return cacheIn(document, cache.record, index).markedOnly(&AllowedSource::isDefault, source);
  };
  device::makeChange({CFG_FILE_MPP, nameOf(cache), entries * kEntryBytes, make, arrived});
  return outcome;
}

Outcome allowSources(const std::string& cacheId, const std::vector<std::string>& sourceIds) {
  const std::vector<CacheEntry> caches = readCaches();
  const std::size_t index = requireCache(caches, cacheId);
  const CacheEntry& cache = caches[index];
  const std::vector<int> ids = requireSourceIds(sourceIds);
  const std::vector<int> unknown = unknownOf(ids);
  requireReachable(cache);

  const auto record = std::make_shared<tag_CFG_STREAM_CACHE_T>(*cache.record);
  record->s32AllowedMask = 0;
  for (const int id : ids) record->s32AllowedMask |= 1 << id;
  record->s32EnabledSrc =
      cache.marked(&AllowedSource::isEnabled).value_or(cache.record->s32EnabledSrc);
  const auto make = [&] {
    return update([&] { return CFG_MPP_UpdateStreamCacheAllowedStreamSource(record); });
  };
  const auto arrived = [&](XMLDocument& document) {
    return cacheIn(document, record, index).allowedIds() == ids;
  };
  device::makeChange({CFG_FILE_MPP, nameOf(cache), (1 + ids.size()) * kEntryBytes, make, arrived});

  Outcome outcome;
  const bool kept = std::binary_search(ids.begin(), ids.end(), record->s32EnabledSrc);
  outcome.value = {{"cache", cache.id()}};
  outcome.value["before"] = Json(cache.allowedIds());
  outcome.value["allowed"] = Json(ids);
  outcome.value["enable"] = kept ? Json(record->s32EnabledSrc) : Json();
  if (!unknown.empty())
    outcome.notes.push_back("note: not among the stream sources: " + joined(unknown));
  tellLostDefault(outcome, cache, ids);
  return outcome;
}

}  // namespace camcfg::tool::media
