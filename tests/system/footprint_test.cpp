#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "camcfg/livemedia.h"
#include "camcfg/network.h"
#include "camcfg/params.h"
#include "camcfg/preset.h"
#include "camcfg/stream.h"
#include "system/sample_set.h"

namespace {

// What the process has allocated, and the most that it had at once.
std::size_t held = 0;
std::size_t peak = 0;

void* counted(void* memory) {
  held += malloc_usable_size(memory);
  peak = std::max(peak, held);
  return memory;
}

void giveBack(void* memory) {
  held -= memory == nullptr ? 0 : malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) {
  void* memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return counted(memory);
}
void operator delete(void* memory) noexcept {
  giveBack(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  giveBack(memory);
}

namespace camcfg::tests {
namespace {

constexpr std::size_t kKilobyte = 1024;

// Runs a call and returns how much memory it held at most beyond what was held before.
template <typename Call>
std::size_t peakOf(Call call) {
  const std::size_t before = held;
  peak = before;
  captureOutput(call);
  return peak - before;
}

template <typename List>
std::size_t peakOfLoading(int (*load)(List&)) {
  List list;
  return peakOf([&] { EXPECT_EQ(load(list), 0); });
}

TEST_F(SampleDevice, StartUpHoldsLittleMemoryAtOnce) {
  const std::size_t most = peakOf([] { CFG_VerifyFileFormat(); });
  RecordProperty("bytes", static_cast<int>(most));
  EXPECT_LE(most, 112 * kKilobyte);
}

TEST_F(SampleDeviceAfterStartUp, CallsHoldLittleMemoryAtOnce) {
  char section[] = "System";
  char name[] = "Rtsp";
  char card[] = "Lan0";
  int port = 0;
  tagNETWORK_CFG_S settings;
  tagPRESET_CFG_S preset;
  const std::size_t most = std::max({
      peakOf([&] { CFG_COM_GetIntParam(section, name, &port); }),
      peakOf([&] { EXPECT_EQ(CFG_COM_SetIntParam(section, name, 8554), 0); }),
      peakOf([&] { CFG_NETWORK_GetAllParamCur(card, &settings); }),
      peakOf([&] { CFG_PRESET_QueryOneById(0, &preset); }),
      peakOfLoading(CFG_MPP_LoadStreamSourceConfig),
      peakOfLoading(CFG_MPP_LoadStreamCacheConfig),
      peakOfLoading(CFG_LM_LoadWebsocketConfig),
      peakOfLoading(CFG_LM_LoadRtspConfig),
      peakOfLoading(CFG_LM_LoadRtmpConfig),
      peakOfLoading(CFG_LM_LoadNdiConfig),
      peakOfLoading(CFG_LM_LoadSrtConfig),
  });
  RecordProperty("bytes", static_cast<int>(most));
  EXPECT_LE(most, 112 * kKilobyte);
}

}  // namespace
}  // namespace camcfg::tests
