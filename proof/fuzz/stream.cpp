#include <camcfg/stream.h>

#include "fuzz/round_trip.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

using Source = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;
using Cache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

// Of "Enabled" only whether it is 0.
std::string formOfSource(const Source& source) {
  return field(source->s32Type) + field(source->s32Id) + field(source->strName) +
         field(source->s32Enabled != 0 ? 1 : 0) + field(source->s32ChnId);
}

// A size below 0 and a source beyond 30 cannot be written so that they are read again.
bool survives(const Cache& cache) {
  const auto bytes = static_cast<std::int32_t>(static_cast<std::uint32_t>(cache->s32BufSize) *
                                               static_cast<std::uint32_t>(cache->s32BufUnit));
  return bytes >= 0 && cache->s32AllowedMask > 0 && cache->s32EnabledSrc >= 0 &&
         cache->s32EnabledSrc <= 30 && cache->s32BufSize != -1;
}

std::string formOfCache(const Cache& cache) {
  return field(cache->s32Id) + field(cache->strName) + field(cache->s32BufSize) +
         field(cache->s32BufUnit) + field(cache->s32EnabledSrc) + field(cache->s32AllowedMask);
}

}  // namespace

// The numbers of a cache and a source; the media file.
void stream(const Input& input) {
  const auto writeInput = [&] { writeFile(CFG_FILE_MPP, input.part(1)); };
  writeInput();
  roundTrip<Source>({CFG_MPP_LoadStreamSourceConfig, CFG_MPP_DumpStreamSourceConfig, always<Source>,
                     formOfSource});

  writeInput();
  std::list<Cache> caches;
  CFG_MPP_LoadStreamCacheConfig(caches);
  if (CFG_MPP_UpdateStreamCacheEnabledStreamSource(input.number(0), input.number(1)) == -1)
    CFG_MPP_CloseWrite();
  releaseIfLocked(CFG_FILE_MPP);
  for (const Cache& cache : caches) {
    CFG_MPP_UpdateStreamCacheAllowedStreamSource(cache);
    releaseIfLocked(CFG_FILE_MPP);
  }

  writeInput();
  roundTrip<Cache>(
      {CFG_MPP_LoadStreamCacheConfig, CFG_MPP_DumpStreamCacheConfig, survives, formOfCache});
}

}  // namespace camcfg::fuzz
