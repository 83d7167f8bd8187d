#ifndef CAMCFG_TOOL_MEDIA_STREAM_CACHE_H
#define CAMCFG_TOOL_MEDIA_STREAM_CACHE_H

#include <optional>
#include <string>
#include <vector>

#include "base/outcome.h"
#include "media/media.h"

namespace camcfg::tool::media {

/// An "AllowedStreamSource" of a cache.
struct AllowedSource {
  int id;          ///< as the loader reads it: without "Id" that of the one before, or the cache's
  bool hasId;      ///< "Id" is there; the update in place passes over one without it
  bool isDefault;  ///< marked "Default", which the loader reads
  bool isEnabled;  ///< marked "Enable", which the update in place writes and no loader reads
};

using Mark = bool AllowedSource::*;

/// A cache as the library loads it and as it is in the file.
struct CacheEntry {
  StreamCache record;
  std::vector<AllowedSource> allowed;  ///< in document order
  int line = 0;

  int id() const { return record->s32Id; }
  bool allows(int sourceId) const;
  /// The ids that it allows, ascending, each once.
  std::vector<int> allowedIds() const;
  /// The source that carries a mark; the first of several.
  std::optional<int> marked(Mark mark) const;
  /// Whether a mark is at the entries of one source and nowhere else.
  bool markedOnly(Mark mark, int sourceId) const;
};

/// The stream caches of the device.
/// @throws Refusal if the file or its caches are unusable
std::vector<CacheEntry> readCaches();

/// The same of a document of the file, with records that the library loaded from it.
std::vector<CacheEntry> cachesOf(tinyxml2::XMLDocument& document,
                                 const std::list<StreamCache>& records);

/// The caches as an answer shows them.
Json jsonOf(const std::vector<CacheEntry>& caches);

/// What becomes different by saving all caches whole, a remark each.
/// @param caches   as they are in the file
/// @param changed  the cache whose "Default" is changed on purpose; none if nothing is
std::vector<std::string> cacheLossNotes(const std::vector<CacheEntry>& caches,
                                        std::optional<int> changed = std::nullopt);

/// Makes sure that the library, when it saves all caches whole, writes what it loaded: a source id
/// that does not fit the whitelist would come back as another one.
/// @throws Refusal
void requireDumpable(const std::vector<CacheEntry>& caches);

// Changes of one stream cache, each with its ids as they were written. They return what was changed
// and throw a Refusal: the files are unusable or cannot be written, there is no such cache, the
// library would change another one, or the source is not permitted. No lock is left held.

/// @param rehearse  report what would be changed and lost, and change nothing

/// Marks an allowed source with "Enable" and no other one, in place.
Outcome selectSource(const std::string& cacheId, const std::string& sourceId, bool rehearse);

/// Marks an allowed source with "Default" and no other one. The library saves all caches whole for
/// this; what is lost by it is listed in the answer's notes.
Outcome makeDefaultSource(const std::string& cacheId, const std::string& sourceId, bool rehearse);

/// Replaces the sources that a cache allows. The one that was marked "Enable", or else the one that
/// the loader took, is marked "Enable" if it is still allowed; no one is marked "Default" any more.
Outcome allowSources(const std::string& cacheId, const std::vector<std::string>& sourceIds,
                     bool rehearse);

}  // namespace camcfg::tool::media

#endif
