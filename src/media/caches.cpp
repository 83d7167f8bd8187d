#include "media/section.h"
#include "media/whitelist.h"

using namespace camcfg;
using tinyxml2::XMLElement;

namespace {

using Cache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

constexpr Rules kRules = {"StreamCache", {{"Cache"}}, Success::Silent, AfterFault::LeftToReader};
constexpr char kPath[] = "<Stream><StreamCache><Cache>";

// In the order in which they are written.
constexpr char kNames[][13] = {"Id", "Name", "BufferSizeB", "BufferSizeKB", "BufferSizeMB"};
enum Name { kId, kName, kBufferSizeB, kBufferSizeKb, kBufferSizeMb };

struct SizeUnit {
  Name attribute;
  unsigned shift;

  std::int32_t bytes() const { return 1 << shift; }
  // Wraps at 2 GiB, like signed 32-bit numbers.
  std::int32_t inBytes(std::int32_t size) const {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(size) << shift);
  }
};

// From the smallest to the largest; of equal amounts the first is kept.
constexpr SizeUnit kUnits[] = {{kBufferSizeB, 0}, {kBufferSizeKb, 10}, {kBufferSizeMb, 20}};

bool readSize(const Attributes& attributes, tag_CFG_STREAM_CACHE_T& cache) {
  bool anyGiven = false;
  std::int32_t best = 0;
  for (const SizeUnit& unit : kUnits) {
    std::int32_t size = -1;
    attributes.readInt(unit.attribute, size);
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

// Ends the load because of a fault that was reported.
bool reject() {
  kStream.closeRead();
  return false;
}

bool readCache(const XMLElement& element, Cache& record) {
  record = std::make_shared<tag_CFG_STREAM_CACHE_T>();
  tag_CFG_STREAM_CACHE_T& cache = *record;
  const Attributes attributes(element, kNames);
  if (!kStream.requireInt(attributes, kId, kPath, &cache.s32Id)) return reject();
  // Deliberate: only on this fault does the document stay open. [cache-size-leaves-open]
  if (!readSize(attributes, cache)) return false;
  if (!kStream.requireText(attributes, kName, kPath, &cache.strName)) return reject();
  kStream.print(kInfo, "StreamCache[%d] size %d x %d\n", cache.s32Id, cache.s32BufSize,
                cache.s32BufUnit);
  return readWhitelist(element, cache) || reject();
}

void writeCache(EntryWriter& section, const Cache& cache) {
  if (cache == nullptr) return;
  section.open(kRules.entries.name());
  section.setInt(kNames[kId], cache->s32Id);
  section.setText(kNames[kName], cache->strName);
  for (const SizeUnit& unit : kUnits)
    if (unit.bytes() == cache->s32BufUnit)
      section.setInt(kNames[unit.attribute], cache->s32BufSize);
  writeWhitelist(section, *cache, "Default");
  section.close();
}

constexpr Section<Cache> kCaches = {kStream, kRules, readEach<readCache>, writeCache};

}  // namespace

int CFG_MPP_LoadStreamCacheConfig(std::list<Cache>& caches) {
  return load<kCaches>(caches);
}

int CFG_MPP_DumpStreamCacheConfig(const std::list<Cache>& caches) {
  return dump<kCaches>(caches);
}
