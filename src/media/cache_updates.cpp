#include <new>

#include "camcfg/store.h"
#include "media/document.h"
#include "media/entries.h"
#include "media/whitelist.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

constexpr char kMark[] = "Enable";
constexpr char kNames[][3] = {"Id"};

// Opens the caches in write mode and finds the one of this number; reports its absence.
XMLElement* openCache(std::int32_t id) {
  XMLElement* section = kStream.open("StreamCache", BU_FALSE);
  if (section == nullptr) return nullptr;
  XMLElement* cache = CFG_GetElementByNameId(section, "Cache", id);
  if (cache == nullptr) {
    // Deliberate: the document is deleted, the lock stays held. Callers that ask for a cache that
    // does not exist release it themselves. [unknown-cache-locked]
    kStream.closeRead();
    kStream.print(kError, "StreamCache[%d] not found at config\n", id);
  }
  return cache;
}

// Marks every entry of one source and none else.
bool markSource(XMLElement& cache, std::int32_t sourceId) {
  bool marked = false;
  for (XMLElement* entry = cache.FirstChildElement(); entry != nullptr;
       entry = entry->NextSiblingElement()) {
    if (!isWord(entry->Name(), kAllowedSource)) continue;
    std::int32_t id = -1;
    Attributes(*entry, kNames).readInt(0, id);
    if (id == sourceId) {
      entry->SetAttribute(kMark, "1");
      marked = true;
    } else {
      entry->DeleteAttribute(kMark);
    }
  }
  return marked;
}

}  // namespace

int CFG_MPP_UpdateStreamCacheEnabledStreamSource(int s32CacheId, int s32SourceId) try {
  XMLElement* cache = openCache(s32CacheId);
  if (cache == nullptr) return CFG_MPP_ERR;
  if (markSource(*cache, s32SourceId)) return kStream.closeWrite();
  // Deliberate: the document stays open, with the marks taken away and unsaved, and the lock stays
  // held. The caller decides whether to save or to drop it. [refused-source-open]
  kStream.print(kError, "StreamSource[%d] not found in whitelist of StreamCache[%d]\n", s32SourceId,
                s32CacheId);
  kStream.leaveLocked();
  return -1;
} catch (const std::bad_alloc&) {
  return kStream.giveUp(BU_FALSE);
}

int CFG_MPP_UpdateStreamCacheAllowedStreamSource(
    // NOLINTNEXTLINE(performance-unnecessary-value-param): programs on the device pass it by value.
    std::shared_ptr<tag_CFG_STREAM_CACHE_T> cache) try {
  if (cache == nullptr) return CFG_MPP_ERR;
  XMLElement* element = openCache(cache->s32Id);
  if (element == nullptr) return CFG_MPP_ERR;
  EntryWriter writer(*element);
  writeWhitelist(writer, *cache, kMark);
  writer.end();
  return kStream.closeWrite();
} catch (const std::bad_alloc&) {
  return kStream.giveUp(BU_FALSE);
}
