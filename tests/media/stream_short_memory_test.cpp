#include <list>
#include <memory>
#include <ostream>

#include "camcfg/stream.h"
#include "media/media_test.h"
#include "support/each_shortage.h"
#include "support/quick_saves.h"

namespace camcfg::tests {
namespace {

using Sources = std::list<std::shared_ptr<tag_CFG_STREAM_SOURCE_T>>;
using Caches = std::list<std::shared_ptr<tag_CFG_STREAM_CACHE_T>>;

// Longer than what a std::string holds without an allocation.
constexpr char kLongName[] = "a name that does not fit into a std::string itself";

constexpr char kFile[] = R"(<Stream>
    <StreamSource>
        <VENC Id="0" Name="a name that does not fit into a std::string itself" ChnId="0"/>
        <AI Id="1" AiId="0"/>
        <AENC Id="2" AencId="0"/>
    </StreamSource>
    <StreamCache>
        <Cache Id="0" Name="a name that does not fit into a std::string itself" BufferSizeKB="1">
            <AllowedStreamSource Id="0" Default="1"/>
        </Cache>
    </StreamCache>
</Stream>
)";

struct Operation {
  const char* name;
  int (*run)();
  bool reads = false;
};
void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

int loadSources() {
  Sources sources;
  return CFG_MPP_LoadStreamSourceConfig(sources);
}

int dumpSources() {
  static const Sources sources = [] {
    const auto source = std::make_shared<tag_CFG_STREAM_SOURCE_AI_T>();
    source->strName = kLongName;
    source->s32ChnId = 0;
    return Sources{source, source};
  }();
  return CFG_MPP_DumpStreamSourceConfig(sources);
}

int loadCaches() {
  Caches caches;
  return CFG_MPP_LoadStreamCacheConfig(caches);
}

const Caches& someCaches() {
  static const Caches caches = [] {
    const auto cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
    cache->strName = kLongName;
    cache->s32AllowedMask = 7;
    return Caches{cache};
  }();
  return caches;
}

int dumpCaches() {
  return CFG_MPP_DumpStreamCacheConfig(someCaches());
}

int enableSource() {
  return CFG_MPP_UpdateStreamCacheEnabledStreamSource(0, 0);
}

int allowSources() {
  return CFG_MPP_UpdateStreamCacheAllowedStreamSource(someCaches().front());
}

class ShortMemoryTest : private QuickSaves,
                        public MediaTest,
                        public testing::WithParamInterface<Operation> {
 protected:
  ShortMemoryTest() : MediaTest("Stream", "StreamCache", "MppStream", g_STREAM_xmlDoc) {}
};

TEST_P(ShortMemoryTest, FailsWithTheDocumentDroppedAndTheFileUnlocked) {
  // The first run makes the lists and the lock's record. Nested so deep, the document needs memory
  // to be saved as well.
  device.write(CFG_FILE_MPP, kFile + deeplyNested());
  EXPECT_EQ(GetParam().run(), 0);
  const std::string printed = captureOutput([this] {
    underEachShortage(GetParam().run, [this](bool failed, int result) {
      EXPECT_EQ(result, failed ? CFG_MPP_ERR : 0);
      ASSERT_EQ(state(), "closed, unlocked");
      device.write(CFG_FILE_MPP, kFile + deeplyNested());
    });
  });
  EXPECT_FALSE(HasFailure()) << printed;
  // A reader has no lock to release.
  if (GetParam().reads) {
    EXPECT_THAT(printed, testing::Not(testing::HasSubstr("has not been locked")));
  }
}

INSTANTIATE_TEST_SUITE_P(, ShortMemoryTest,
                         testing::Values(Operation{"LoadSources", loadSources, true},
                                         Operation{"DumpSources", dumpSources},
                                         Operation{"LoadCaches", loadCaches, true},
                                         Operation{"DumpCaches", dumpCaches},
                                         Operation{"EnableSource", enableSource},
                                         Operation{"AllowSources", allowSources}),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace camcfg::tests
