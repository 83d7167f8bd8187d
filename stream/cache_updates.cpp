#include "stream/document.h"
#include "stream/whitelist.h"
#include "support/media_entries.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

constexpr char kMark[] = "Enable";

// Opens the caches in write mode and hands the one of this number to `change`.
template <typename Change>
int updateCache(std::int32_t id, Change change) {
  return kStream.edit("StreamCache", [&](XMLElement& section) -> std::int32_t {
    XMLElement* cache = CFG_GetElementByNameId(&section, "Cache", id);
    if (cache != nullptr) return change(*cache);
    // Deliberate: the document goes, the lock stays held. Callers that ask for a cache that does
    // not exist release it themselves. [unknown-cache-locked]
    kStream.closeRead();
    kStream.print(kError, "StreamCache[%d] not found at config\n", id);
    return CFG_MPP_ERR;
  });
}

// Marks every entry of one source and none else.
bool markSource(XMLElement& cache, std::int32_t sourceId) {
  bool marked = false;
  const auto markEntry = [&](XMLElement& entry) {
    if (entry.IntAttribute("Id", -1) == sourceId) {
      entry.SetAttribute(kMark, 1);
      marked = true;
    } else {
      entry.DeleteAttribute(kMark);
    }
    return true;
  };
  readEntries(cache, kAllowedSource, markEntry, skipQuietly);
  return marked;
}

}  // namespace

int CFG_MPP_UpdateStreamCacheEnabledStreamSource(int s32CacheId, int s32SourceId) {
  return updateCache(s32CacheId, [=](XMLElement& cache) {
    if (markSource(cache, s32SourceId)) return kStream.closeWrite();
    // Deliberate: the document stays open, with the marks taken away and unsaved, and the lock
    // stays held. The caller decides whether to save or to drop it. [refused-source-open]
    kStream.print(kError, "StreamSource[%d] not found in whitelist of StreamCache[%d]\n",
                  s32SourceId, s32CacheId);
    return -1;
  });
}

int CFG_MPP_UpdateStreamCacheAllowedStreamSource(std::shared_ptr<tag_CFG_STREAM_CACHE_T> cache) {
  if (cache == nullptr) return CFG_MPP_ERR;
  return updateCache(cache->s32Id, [&cache](XMLElement& element) {
    element.DeleteChildren();
    writeWhitelist(element, *cache, kMark);
    return kStream.closeWrite();
  });
}
