#include <camcfg/store.h>

#include <algorithm>

#include "base/concat.h"
#include "base/library_log.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "device/change.h"
#include "media/stream_cache.h"
#include "settings/node.h"

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

int requireId(const std::string& text) {
  const std::optional<std::int32_t> id = decimal32(text);
  if (!id) throw Refusal(concat("'", text, "' is not an id"));
  return *id;
}

// A cache that is to be changed, among those of the device.
struct Chosen {
  std::vector<CacheEntry> all = readCaches();
  std::size_t index = 0;

  const CacheEntry& cache() const { return all[index]; }
  std::string name() const { return "stream cache " + std::to_string(cache().id()); }

  /// @throws Refusal if there is no cache of this id
  explicit Chosen(const std::string& text) {
    const int id = requireId(text);
    std::vector<int> ids;
    for (; index < all.size() && cache().id() != id; ++index) ids.push_back(cache().id());
    if (index == all.size())
      throw Refusal(concat("there is no stream cache ", text,
                           ids.empty() ? "" : "; there are " + joined(ids)));
  }

  /// The id of a source.
  /// @throws Refusal if the cache does not allow it
  int requireAllowed(const std::string& text) const {
    const int id = requireId(text);
    if (cache().allows(id)) return id;
    throw Refusal(concat(name(), " does not allow source ", text, "; it allows ",
                         joined(cache().allowedIds())));
  }

  /// Makes a change of the cache, with a call of the library.
  /// @param arrived  whether the cache, as a document has it, holds the change
  /// @throws Refusal  see makeChange
  void change(const std::function<int()>& call,
              const std::function<bool(const CacheEntry&)>& arrived, bool rehearse) const {
    const auto make = [&] { return heard([&] { return orGivenUp(call()); }) == 0; };
    const auto isThere = [&](XMLDocument& document) {
      const std::vector<CacheEntry> there = cachesOf(document, {index + 1, cache().record});
      return arrived(there.size() > index ? there[index] : CacheEntry{cache().record, {}});
    };
    device::makeChange({CFG_FILE_MPP, name(), make, isThere}, rehearse);
  }

 private:
  // A call that fails may leave the document open and the lock held.
  static int orGivenUp(int result) {
    if (result == 0) return result;
    CFG_MPP_CloseRead();
    CFG_UnlockFile(device::argument(CFG_FILE_MPP));
    return result;
  }
};

// The update in place finds a source by an "Id" that is there.
void requireOwnId(const Chosen& chosen, int sourceId) {
  for (const AllowedSource& source : chosen.cache().allowed)
    if (source.id == sourceId && source.hasId) return;
  throw Refusal(concat(chosen.name(), ": its entry for source ", sourceId,
                       " has no \"Id\", so the library does not find it"));
}

// The library's updates find an element by the beginning of its name.
void requireReachable(const Chosen& chosen) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  const XMLElement* found = CFG_GetElementByNameId(
      &requireSection(*document, settings::streamCaches()), "Cache", chosen.cache().id());
  if (found != nullptr && found->GetLineNum() == chosen.cache().line) return;
  throw Refusal(concat(chosen.name(), ": the library would change ",
                       found == nullptr ? "nothing" : mediaPlace(*found),
                       " in place of the element at line ", chosen.cache().line,
                       ", whose name it does not find"));
}

Outcome markOutcome(const CacheEntry& cache, Mark mark, int sourceId) {
  return {{{"cache", cache.id()},
           {"mark", mark == &AllowedSource::isDefault ? "Default" : "Enable"},
           {"before", cache.marked(mark)},
           {"value", sourceId}},
          {}};
}

std::vector<int> requireSourceIds(const std::vector<std::string>& texts) {
  std::vector<int> ids;
  for (const std::string& text : texts) {
    const int id = requireId(text);
    if (!settings::kSourceIds.has(id))
      throw Refusal("source " + settings::outside(text, id, settings::kSourceIds));
    ids.push_back(id);
  }
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

std::vector<int> unknownOf(std::vector<int> ids) {
  for (const Json& source : loadEntries(settings::streamSources()))
    ids.erase(std::remove(ids.begin(), ids.end(), source.at("id").get<int>()), ids.end());
  return ids;
}

}  // namespace

Outcome selectSource(const std::string& cacheId, const std::string& sourceId, bool rehearse) {
  const Chosen chosen(cacheId);
  const CacheEntry& cache = chosen.cache();
  const int source = chosen.requireAllowed(sourceId);
  requireOwnId(chosen, source);
  requireReachable(chosen);
  chosen.change(
      [&] { return CFG_MPP_UpdateStreamCacheEnabledStreamSource(cache.id(), source); },
      [&](const CacheEntry& now) { return now.markedOnly(&AllowedSource::isEnabled, source); },
      rehearse);

  Outcome outcome = markOutcome(cache, &AllowedSource::isEnabled, source);
  const int carried = cache.record->s32EnabledSrc;
  if (source != carried)
    outcome.notes.push_back("note: the loader goes by \"Default\" and still takes source " +
                            std::to_string(carried));
  return outcome;
}

Outcome makeDefaultSource(const std::string& cacheId, const std::string& sourceId, bool rehearse) {
  const Chosen chosen(cacheId);
  const CacheEntry& cache = chosen.cache();
  const int source = chosen.requireAllowed(sourceId);
  requireDumpable(chosen.all);

  Outcome outcome = markOutcome(cache, &AllowedSource::isDefault, source);
  outcome.notes = cacheLossNotes(chosen.all, cache.id());
  std::list<StreamCache> records;
  for (const CacheEntry& entry : chosen.all) {
    records.push_back(std::make_shared<tag_CFG_STREAM_CACHE_T>(*entry.record));
    if (&entry == &cache) records.back()->s32EnabledSrc = source;
  }
  chosen.change(
      [&] { return CFG_MPP_DumpStreamCacheConfig(records); },
      [&](const CacheEntry& now) { return now.markedOnly(&AllowedSource::isDefault, source); },
      rehearse);
  return outcome;
}

Outcome allowSources(const std::string& cacheId, const std::vector<std::string>& sourceIds,
                     bool rehearse) {
  const Chosen chosen(cacheId);
  const CacheEntry& cache = chosen.cache();
  const std::vector<int> ids = requireSourceIds(sourceIds);
  const std::vector<int> unknown = unknownOf(ids);
  requireReachable(chosen);

  const auto record = std::make_shared<tag_CFG_STREAM_CACHE_T>(*cache.record);
  record->s32AllowedMask = 0;
  for (const int id : ids) record->s32AllowedMask |= 1 << id;
  record->s32EnabledSrc =
      cache.marked(&AllowedSource::isEnabled).value_or(cache.record->s32EnabledSrc);
  chosen.change([&] { return CFG_MPP_UpdateStreamCacheAllowedStreamSource(record); },
                [&](const CacheEntry& now) { return now.allowedIds() == ids; }, rehearse);

  const bool kept = std::binary_search(ids.begin(), ids.end(), record->s32EnabledSrc);
  Outcome outcome{{{"cache", cache.id()},
                   {"before", Json(cache.allowedIds())},
                   {"allowed", Json(ids)},
                   {"enable", kept ? Json(record->s32EnabledSrc) : Json()}},
                  {}};
  if (!unknown.empty())
    outcome.notes.push_back("note: not among the stream sources: " + joined(unknown));
  // The loader goes by "Default", which a replaced whitelist has not; without it the last one counts.
  if (const std::optional<int> before = cache.marked(&AllowedSource::isDefault))
    outcome.notes.push_back(concat("note: the mark \"Default\" at source ", *before,
                                   " is gone; the loader takes source ", ids.back(),
                                   ", the last one, until 'camcfg stream cache ", cache.id(),
                                   " default SOURCE' marks one"));
  return outcome;
}

}  // namespace camcfg::tool::media
