#include <new>
#include <utility>

#include "media/media_entries.h"
#include "media/stream_document.h"
#include "media/whitelist.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Cache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

constexpr char kCache[] = "Cache";
constexpr char kPath[] = "<Stream><StreamCache><Cache>";

struct SizeUnit {
  char attribute[13];
  unsigned shift;

  std::int32_t bytes() const { return 1 << shift; }
  // Wraps at 2 GiB, like signed 32-bit numbers.
  std::int32_t inBytes(std::int32_t size) const {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(size) << shift);
  }
};

// From the smallest to the largest; of equal amounts the first is kept.
constexpr SizeUnit kUnits[] = {{"BufferSizeB", 0}, {"BufferSizeKB", 10}, {"BufferSizeMB", 20}};

bool readSize(const XMLElement& element, tag_CFG_STREAM_CACHE_T& cache) {
  bool anyGiven = false;
  std::int32_t best = 0;
  for (const SizeUnit& unit : kUnits) {
    std::int32_t size = -1;
    readInt(element, unit.attribute, size);
    anyGiven = anyGiven || size != -1;
    const bool isFirst = unit.shift == 0;
    if (!isFirst && best >= unit.inBytes(size)) continue;
    best = unit.inBytes(size);
    cache.s32BufSize = size;
    cache.s32BufUnit = unit.bytes();
  }
  if (!anyGiven)
    kStream.print(
        kError,
        "Missing any of {BufferSizeB, BufferSizeKB, BufferSizeMB} for setup chanel buffer size.\n");
  return anyGiven;
}

bool readCache(const XMLElement& element, tag_CFG_STREAM_CACHE_T& cache) {
  if (!kStream.requireInt(element, "Id", kPath, &cache.s32Id)) return reject();
  // Deliberate: only on this fault does the document stay open. [cache-size-leaves-open]
  if (!readSize(element, cache)) return false;
  if (!kStream.requireText(element, "Name", kPath, &cache.strName)) return reject();
  kStream.print(kInfo, "StreamCache[%d] size %d x %d\n", cache.s32Id, cache.s32BufSize,
                cache.s32BufUnit);
  return readWhitelist(element, cache) || reject();
}

void writeCache(XMLElement& section, const tag_CFG_STREAM_CACHE_T& cache) {
  XMLElement& element = append(section, kCache);
  setInt(element, "Id", cache.s32Id);
  setText(element, "Name", cache.strName);
  for (const SizeUnit& unit : kUnits)
    if (unit.bytes() == cache.s32BufUnit) setInt(element, unit.attribute, cache.s32BufSize);
  writeWhitelist(element, cache, "Default");
}

}  // namespace

int CFG_MPP_LoadStreamCacheConfig(std::list<Cache>& caches) try {
  const XMLElement* section = kStream.open("StreamCache", BU_TRUE);
  if (section == nullptr) return CFG_MPP_ERR;
  caches.clear();
  for (const XMLElement* element = firstEntry(*section, kCache); element != nullptr;
       element = nextEntry(*element, kCache)) {
    Cache cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
    if (!readCache(*element, *cache)) return CFG_MPP_ERR;
    caches.push_back(std::move(cache));
  }
  kStream.closeRead();
  return 0;
} catch (const std::bad_alloc&) {
  return kStream.giveUp(BU_TRUE);
}

int CFG_MPP_DumpStreamCacheConfig(const std::list<Cache>& caches) try {
  XMLElement* section = kStream.open("StreamCache", BU_FALSE);
  if (section == nullptr) return CFG_MPP_ERR;
  section->DeleteChildren();
  for (const Cache& cache : caches)
    if (cache != nullptr) writeCache(*section, *cache);
  return kStream.closeWrite();
} catch (const std::bad_alloc&) {
  return kStream.giveUp(BU_FALSE);
}
