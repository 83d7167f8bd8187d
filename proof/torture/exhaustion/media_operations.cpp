#include "camcfg/livemedia.h"
#include "camcfg/stream.h"
#include "torture/exhaustion/allocations.h"
#include "torture/exhaustion/operations.h"

namespace camcfg::torture {
namespace {

constexpr char kMedia[] = "mpp_cfg.xml";

// The records that a dumper writes: loaded once, before anything fails.
template <auto Load, typename List>
const List& loadedOnce() {
  static const List list = [] {
    List loaded;
    Load(loaded);
    return loaded;
  }();
  return list;
}

template <auto Load>
struct ListOf;
template <typename List, int (*Load)(List&)>
struct ListOf<Load> {
  using Type = List;
};

template <auto Load>
int load() {
  typename ListOf<Load>::Type list;
  return Load(list);
}

template <auto Load, auto Dump>
int dumpReversed() {
  const auto list = [] {
    const PlentyOfMemory plenty;
    auto copy = loadedOnce<Load, typename ListOf<Load>::Type>();
    copy.reverse();
    return copy;
  }();
  return Dump(list);
}

template <auto Load>
Operation loading(const char* name, int failure) {
  return {name, kMedia, load<Load>, 0, failure};
}

template <auto Load, auto Dump>
Operation dumping(const char* name, int failure) {
  return {name, kMedia, dumpReversed<Load, Dump>, 0, failure, true};
}

int updateEnabled() {
  return CFG_MPP_UpdateStreamCacheEnabledStreamSource(12, 2);
}

int updateAllowed() {
  static const auto cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
  cache->s32Id = 12;
  cache->s32AllowedMask = 5;
  return CFG_MPP_UpdateStreamCacheAllowedStreamSource(cache);
}

template <auto Open, auto Close>
int openAndClose(const char* section, tagBU_BOOL readOnly) {
  if (Open(section, readOnly) == nullptr) return -1;
  return Close();
}

std::vector<Operation> streamOperations() {
  constexpr int kError = CFG_MPP_ERR;
  return {
      {"CFG_MPP_Open", kMedia,
       [] { return openAndClose<CFG_MPP_Open, CFG_MPP_CloseRead>("StreamCache", BU_TRUE); }},
      {"CFG_MPP_CloseRead", kMedia,
       [] { return openAndClose<CFG_MPP_Open, CFG_MPP_CloseRead>("StreamCache", BU_FALSE); }, 0, -1,
       false, Either::Never, true},
      {"CFG_MPP_CloseWrite", kMedia,
       [] { return openAndClose<CFG_MPP_Open, CFG_MPP_CloseWrite>("StreamCache", BU_FALSE); }, 0,
       -1, true},
      loading<CFG_MPP_LoadStreamSourceConfig>("CFG_MPP_LoadStreamSourceConfig", kError),
      loading<CFG_MPP_LoadStreamCacheConfig>("CFG_MPP_LoadStreamCacheConfig", kError),
      dumping<CFG_MPP_LoadStreamSourceConfig, CFG_MPP_DumpStreamSourceConfig>(
          "CFG_MPP_DumpStreamSourceConfig", kError),
      dumping<CFG_MPP_LoadStreamCacheConfig, CFG_MPP_DumpStreamCacheConfig>(
          "CFG_MPP_DumpStreamCacheConfig", kError),
      {"CFG_MPP_UpdateStreamCacheEnabledStreamSource", kMedia, updateEnabled, 0, kError, true},
      {"CFG_MPP_UpdateStreamCacheAllowedStreamSource", kMedia, updateAllowed, 0, kError, true},
  };
}

std::vector<Operation> liveOperations() {
  constexpr int kError = CFG_LM_ERR;
  Operation rtmp =
      dumping<CFG_LM_LoadRtmpConfig, CFG_LM_DumpRtmpConfig>("CFG_LM_DumpRtmpConfig", kError);
  rtmp.writes = false;
  rtmp.leavesLocked = true;
  return {
      {"CFG_LM_Open", kMedia,
       [] { return openAndClose<CFG_LM_Open, CFG_LM_CloseRead>("SRT", BU_TRUE); }},
      {"CFG_LM_CloseRead", kMedia,
       [] { return openAndClose<CFG_LM_Open, CFG_LM_CloseRead>("SRT", BU_FALSE); }, 0, -1, false,
       Either::Never, true},
      {"CFG_LM_CloseWrite", kMedia,
       [] { return openAndClose<CFG_LM_Open, CFG_LM_CloseWrite>("SRT", BU_FALSE); }, 0, -1, true},
      loading<CFG_LM_LoadWebsocketConfig>("CFG_LM_LoadWebsocketConfig", kError),
      loading<CFG_LM_LoadRtspConfig>("CFG_LM_LoadRtspConfig", kError),
      loading<CFG_LM_LoadRtmpConfig>("CFG_LM_LoadRtmpConfig", kError),
      loading<CFG_LM_LoadNdiConfig>("CFG_LM_LoadNdiConfig", kError),
      loading<CFG_LM_LoadSrtConfig>("CFG_LM_LoadSrtConfig", kError),
      dumping<CFG_LM_LoadWebsocketConfig, CFG_LM_DumpWebsocketConfig>("CFG_LM_DumpWebsocketConfig",
                                                                      kError),
      dumping<CFG_LM_LoadRtspConfig, CFG_LM_DumpRtspConfig>("CFG_LM_DumpRtspConfig", kError),
      rtmp,
      dumping<CFG_LM_LoadNdiConfig, CFG_LM_DumpNdiConfig>("CFG_LM_DumpNdiConfig", kError),
      dumping<CFG_LM_LoadSrtConfig, CFG_LM_DumpSrtConfig>("CFG_LM_DumpSrtConfig", kError),
  };
}

}  // namespace

std::vector<Operation> mediaOperations() {
  std::vector<Operation> all = streamOperations();
  const std::vector<Operation> live = liveOperations();
  all.insert(all.end(), live.begin(), live.end());
  return all;
}

}  // namespace camcfg::torture
