#include <list>
#include <memory>

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"
#include "torture/threads/family.h"

namespace camcfg::torture {
namespace {

// The record of a cell in a list that has one for each.
template <typename List>
auto& recordOf(List& list, int cell) {
  return *std::next(list.begin(), cell);
}

bool writeCache(int cell, int value) {
  std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>> caches;
  if (CFG_MPP_LoadStreamCacheConfig(caches) != 0) return false;
  tag_CFG_STREAM_CACHE_T& cache = *recordOf(caches, cell);
  cache.strName = longText(value);
  cache.s32BufSize = value;
  return CFG_MPP_DumpStreamCacheConfig(caches) == 0;
}

int readCache(int cell) {
  std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>> caches;
  if (CFG_MPP_LoadStreamCacheConfig(caches) != 0) return kFailed;
  const tag_CFG_STREAM_CACHE_T& cache = *recordOf(caches, cell);
  return valueOfLongText(cache.strName) == cache.s32BufSize ? cache.s32BufSize : kTorn;
}

bool writeInstance(int cell, int value) {
  std::list<tag_CFG_SRT_INSTANCE_T> instances;
  if (CFG_LM_LoadSrtConfig(instances) != 0) return false;
  tag_CFG_SRT_INSTANCE_T& instance = recordOf(instances, cell);
  instance.s32Port = value;
  instance.strPassword = longText(value);
  return CFG_LM_DumpSrtConfig(instances) == 0;
}

int readInstance(int cell) {
  std::list<tag_CFG_SRT_INSTANCE_T> instances;
  if (CFG_LM_LoadSrtConfig(instances) != 0) return kFailed;
  const tag_CFG_SRT_INSTANCE_T& instance = recordOf(instances, cell);
  return valueOfLongText(instance.strPassword) == instance.s32Port ? instance.s32Port : kTorn;
}

}  // namespace

std::vector<Family> mediaFamilies() {
  return {
      {"CFG_MPP (one mutex)", false, kThreads, writeCache, readCache, nullptr, nullptr},
      {"CFG_LM (one mutex)", false, kThreads, writeInstance, readInstance, nullptr, nullptr},
  };
}

std::string mediaFile() {
  std::string caches;
  std::string instances;
  for (int cell = 0; cell < kThreads; ++cell) {
    const std::string id = std::to_string(cell);
    caches += "<Cache Id='" + id + "' Name='" + longText(1) +
              "' BufferSizeB='1'><AllowedStreamSource Id='0' Default='1'/></Cache>";
    instances += "<Instance Id='" + id + "' Mode='Listener' Port='1' Password='" + longText(1) +
                 "'><Stream Id='a'><Channel Id='0'/></Stream></Instance>";
  }
  return "<Stream><StreamSource/><StreamCache>" + caches +
         "</StreamCache></Stream><LiveMediaService><SRT>" + instances + "</SRT></LiveMediaService>";
}

}  // namespace camcfg::torture
