#ifndef CAMCFG_TOOL_MEDIA_STREAM_CACHE_H
#define CAMCFG_TOOL_MEDIA_STREAM_CACHE_H

#include <optional>
#include <string>
#include <vector>

#include "base/json.h"
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
  /// Both marks are there and name different sources.
  bool marksDiffer() const;
};

/// The stream caches of the device.
/// @throws Refusal if the file or its caches are unusable
std::vector<CacheEntry> readCaches();

/// The same of a document of the file, with records that the library loaded from it.
std::vector<CacheEntry> cachesOf(tinyxml2::XMLElement* section,
                                 const std::list<StreamCache>& records);

/// The caches as an answer shows them.
Json jsonOf(const std::vector<CacheEntry>& caches);

/// An id, or null where there is none.
Json idOrNull(const std::optional<int>& id);

}  // namespace camcfg::tool::media

#endif
