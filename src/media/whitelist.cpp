#include "media/whitelist.h"

#include "media/document.h"
#include "media/entries.h"

namespace camcfg {

using tinyxml2::XMLElement;

namespace {

constexpr char kPath[] = "<Stream><StreamCache><Cache><AllowedStreamSource>";
constexpr std::int32_t kNone = -1;
constexpr char kNames[][8] = {"Id", "Default"};

std::int32_t bitOf(std::int32_t id) {
  return static_cast<std::int32_t>(1U << (static_cast<std::uint32_t>(id) % 32));
}

// Of several entries marked as default the first counts.
void enable(tag_CFG_STREAM_CACHE_T& cache, std::int32_t id) {
  if (cache.s32EnabledSrc == kNone)
    cache.s32EnabledSrc = id;
  else
    kStream.print(kWarning, "StreamCache[%d] already enabled StreamSource[%d], ignore enable %d.\n",
                  cache.s32Id, cache.s32EnabledSrc, id);
}

}  // namespace

bool readWhitelist(const XMLElement& element, tag_CFG_STREAM_CACHE_T& cache) {
  cache.s32EnabledSrc = kNone;
  cache.s32AllowedMask = 0;
  // Deliberate: begins as the cache's own number and is not reset between entries, so an entry
  // without "Id" stands for the number before it. [whitelist-id-carried]
  std::int32_t id = cache.s32Id;
  for (const XMLElement* entry = firstEntry(element, kAllowedSource); entry != nullptr;
       entry = nextEntry(*entry, kAllowedSource)) {
    const Attributes attributes(*entry, kNames);
    attributes.readInt(0, id);
    if (id == -1) {
      kStream.reportMissing("Id", kPath);
      return false;
    }
    cache.s32AllowedMask |= bitOf(id);
    // Deliberate: the mark is "Default"; the "Enable" that the updates set is not looked at.
    // [default-and-enable]
    std::int32_t mark = 0;
    attributes.readInt(1, mark);
    if (mark != 0) enable(cache, id);
  }
  if (cache.s32AllowedMask == 0) {
    kStream.print(kError, "StreamCache[%d] no allowed StreamSource!\n", cache.s32Id);
    return false;
  }
  if (cache.s32EnabledSrc == kNone) {
    cache.s32EnabledSrc = id;
    kStream.print(kInfo, "StreamCache[%d] no enabled StreamSource, default select %d.\n",
                  cache.s32Id, id);
  }
  return true;
}

void writeWhitelist(EntryWriter& parent, const tag_CFG_STREAM_CACHE_T& cache, const char* mark) {
  if (cache.s32AllowedMask <= 0) return;
  const auto mask = static_cast<std::uint32_t>(cache.s32AllowedMask);
  for (std::int32_t id = 0; (1U << id) <= mask; ++id) {
    if ((mask & (1U << id)) == 0) continue;
    parent.open(kAllowedSource);
    parent.setInt(kNames[0], id);
    if (id == cache.s32EnabledSrc) parent.setInt(mark, 1);
    parent.close();
  }
}

}  // namespace camcfg
