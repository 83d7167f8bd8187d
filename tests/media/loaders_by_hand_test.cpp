#include "bench/loaders_by_hand.h"

#include <algorithm>

#include "bench/files.h"
#include "camcfg/testkit/captured_output.h"
#include "media/records.h"
#include "support/device_test.h"

namespace camcfg::tests {
namespace {

/// What the benchmark compares the loaders with has to give the same records.
class LoadersByHandTest : public DeviceTest {
 protected:
  template <typename List>
  struct Loaded {
    List byLibrary;
    List byHand;
  };

  template <typename List>
  Loaded<List> loaded(const std::string& file, int (*load)(List&)) const {
    constexpr std::size_t kEntries = 3;
    device.write(CFG_FILE_MPP, file);
    Loaded<List> lists;
    captureOutput([&] { EXPECT_EQ(load(lists.byLibrary), 0); });
    bench::loadByHand(lists.byHand);
    EXPECT_EQ(lists.byLibrary.size(), kEntries);
    return lists;
  }

  template <typename List>
  void expectSame(const char* section, int (*load)(List&)) const {
    const Loaded<List> lists = loaded(bench::liveMediaFile(section, 3), load);
    EXPECT_EQ(contentsOf(lists.byHand), contentsOf(lists.byLibrary));
  }
};

TEST_F(LoadersByHandTest, SourcesAreThoseOfTheLibrary) {
  const auto lists = loaded(bench::streamFile("StreamSource", 3), CFG_MPP_LoadStreamSourceConfig);
  const auto same = [](const auto& left, const auto& right) {
    return left->s32Type == right->s32Type && left->s32Id == right->s32Id &&
           left->strName == right->strName && left->s32Enabled == right->s32Enabled &&
           left->s32ChnId == right->s32ChnId;
  };
  EXPECT_TRUE(std::equal(lists.byHand.begin(), lists.byHand.end(), lists.byLibrary.begin(),
                         lists.byLibrary.end(), same));
}

TEST_F(LoadersByHandTest, CachesAreThoseOfTheLibrary) {
  const auto lists = loaded(bench::streamFile("StreamCache", 3), CFG_MPP_LoadStreamCacheConfig);
  const auto same = [](const auto& left, const auto& right) {
    return left->s32Id == right->s32Id && left->strName == right->strName &&
           left->s32BufSize == right->s32BufSize && left->s32BufUnit == right->s32BufUnit &&
           left->s32EnabledSrc == right->s32EnabledSrc &&
           left->s32AllowedMask == right->s32AllowedMask;
  };
  EXPECT_TRUE(std::equal(lists.byHand.begin(), lists.byHand.end(), lists.byLibrary.begin(),
                         lists.byLibrary.end(), same));
}

TEST_F(LoadersByHandTest, SessionsOfEachServiceAreThoseOfTheLibrary) {
  expectSame("WEBSOCKET", CFG_LM_LoadWebsocketConfig);
  expectSame("RTSP", CFG_LM_LoadRtspConfig);
  expectSame("RTMP", CFG_LM_LoadRtmpConfig);
  expectSame("NDI", CFG_LM_LoadNdiConfig);
  expectSame("SRT", CFG_LM_LoadSrtConfig);
}

}  // namespace
}  // namespace camcfg::tests
