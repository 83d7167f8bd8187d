#include <list>
#include <memory>
#include <string>

#include "media/every_source.h"
#include "media/media_test.h"

namespace camcfg::tests {
namespace {

using Cache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

class CacheUpdatesTest : public MediaTest {
 protected:
  CacheUpdatesTest() : MediaTest(kStreams, "StreamCache") {}

  Outcome enable(int cacheId, int sourceId) {
    return observe([=] { return CFG_MPP_UpdateStreamCacheEnabledStreamSource(cacheId, sourceId); });
  }

  Outcome allow(int cacheId, int mask, int enabled) {
    const auto cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
    cache->s32Id = cacheId;
    cache->s32AllowedMask = mask;
    cache->s32EnabledSrc = enabled;
    return observe([&] { return CFG_MPP_UpdateStreamCacheAllowedStreamSource(cache); });
  }

  std::string noCache(int id) const {
    return line("Error", "StreamCache[" + std::to_string(id) + "] not found at config");
  }
  std::string notAllowed(int source, int cache) const {
    return line("Error", "StreamSource[" + std::to_string(source) +
                             "] not found in whitelist of StreamCache[" + std::to_string(cache) +
                             "]");
  }
};

// Two caches, the first with these entries.
std::string twoCaches(const std::string& entries) {
  return "<Cache Id=\"0\" Name=\"a\" BufferSizeKB=\"512\" Extra=\"x\">\n" + entries +
         R"(</Cache>
<Cache Id="1" Name="b" BufferSizeKB="256">
    <AllowedStreamSource Id="2" Enable="1"/>
</Cache>
)";
}

const std::string kTwoCaches = twoCaches(
    "    <AllowedStreamSource Id=\"0\" Default=\"1\" Enable=\"1\"/>\n"
    "    <AllowedStreamSource Id=\"2\"/>\n");
const std::string kMarkGone = twoCaches(
    "    <AllowedStreamSource Id=\"0\" Default=\"1\"/>\n"
    "    <AllowedStreamSource Id=\"2\"/>\n");
const std::string kMarkMoved = twoCaches(
    "    <AllowedStreamSource Id=\"0\" Default=\"1\"/>\n"
    "    <AllowedStreamSource Id=\"2\" Enable=\"1\"/>\n");

TEST_F(CacheUpdatesTest, EnabledSourceIsMarkedEnableAndTheOthersLoseThatMark) {
  give(kTwoCaches);
  EXPECT_EQ(enable(0, 2), (Outcome{0, ""}));
  expectSaved(kMarkMoved);
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CacheUpdatesTest, LoaderStillGoesByDefaultAfterwards) {
  give(kTwoCaches);
  EXPECT_EQ(enable(0, 2).result, 0);
  std::list<Cache> caches;
  EXPECT_EQ(observe([&] { return CFG_MPP_LoadStreamCacheConfig(caches); }).result, 0);
  ASSERT_EQ(caches.size(), 2u);
  EXPECT_EQ(caches.front()->s32EnabledSrc, 0);
  EXPECT_EQ(caches.front()->s32AllowedMask, 5);
}

TEST_F(CacheUpdatesTest, EveryEntryOfTheSourceIsMarkedAndOtherElementsAreLeftAlone) {
  give(R"(<Cache Id="3">
    <!-- comment -->
    <allowedstreamsource Id="2" Enable="0"/>
    <Other Id="2" Enable="1"/>
    <AllowedStreamSource Enable="1"/>
    <ALLOWEDSTREAMSOURCE Id="2" Default="0"/>
    <AllowedStreamSource Id="two" Enable="1" enable="1"/>
</Cache>
)");
  EXPECT_EQ(enable(3, 2), (Outcome{0, ""}));
  expectSaved(R"(<Cache Id="3">
    <!-- comment -->
    <allowedstreamsource Id="2" Enable="1"/>
    <Other Id="2" Enable="1"/>
    <AllowedStreamSource/>
    <ALLOWEDSTREAMSOURCE Id="2" Default="0" Enable="1"/>
    <AllowedStreamSource Id="two" enable="1"/>
</Cache>
)");
}

TEST_F(CacheUpdatesTest, EntryWithoutNumberIsSourceMinusOne) {
  give("<Cache Id=\"3\">\n    <AllowedStreamSource/>\n</Cache>\n");
  EXPECT_EQ(enable(3, -1), (Outcome{0, ""}));
  expectSaved("<Cache Id=\"3\">\n    <AllowedStreamSource Enable=\"1\"/>\n</Cache>\n");
}

TEST_F(CacheUpdatesTest, CacheIsTheFirstWhoseNameBeginsSoAndHasTheNumber) {
  give(R"(<cache Id="3">
    <AllowedStreamSource Id="1"/>
</cache>
<CacheOfAudio Id="3">
    <AllowedStreamSource Id="1"/>
</CacheOfAudio>
<Cache Id="3">
    <AllowedStreamSource Id="1"/>
</Cache>
)");
  EXPECT_EQ(enable(3, 1), (Outcome{0, ""}));
  EXPECT_EQ(allow(3, 0b100, 2), (Outcome{0, ""}));
  expectSaved(R"(<cache Id="3">
    <AllowedStreamSource Id="1"/>
</cache>
<CacheOfAudio Id="3">
    <AllowedStreamSource Id="2" Enable="1"/>
</CacheOfAudio>
<Cache Id="3">
    <AllowedStreamSource Id="1"/>
</Cache>
)");
}

TEST_F(CacheUpdatesTest, CacheThatDoesNotExistLeavesTheLockHeld) {
  give(kTwoCaches);
  EXPECT_EQ(enable(4, 2), (Outcome{CFG_MPP_ERR, noCache(4)}));
  EXPECT_EQ(state(), "closed, locked");
  expectNotSaved(kTwoCaches);
}

TEST_F(CacheUpdatesTest, NoCacheAtAllIsOneThatDoesNotExist) {
  give("");
  EXPECT_EQ(enable(0, 0), (Outcome{CFG_MPP_ERR, noCache(0)}));
  EXPECT_EQ(state(), "closed, locked");
}

TEST_F(CacheUpdatesTest, SourceNotAllowedLeavesTheDocumentOpenAndTheLockHeld) {
  give(kTwoCaches);
  EXPECT_EQ(enable(0, 7), (Outcome{-1, notAllowed(7, 0)}));
  EXPECT_EQ(state(), "open, locked");
  expectNotSaved(kTwoCaches);
}

TEST_F(CacheUpdatesTest, CallerMaySaveTheMarksTakenAwayForASourceNotAllowed) {
  give(kTwoCaches);
  EXPECT_EQ(enable(0, 7).result, -1);
  EXPECT_EQ(observe(CFG_MPP_CloseWrite), (Outcome{0, ""}));
  expectSaved(kMarkGone);
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CacheUpdatesTest, CallerMayDropTheMarksTakenAwayForASourceNotAllowed) {
  give(kTwoCaches);
  EXPECT_EQ(enable(0, 7).result, -1);
  EXPECT_EQ(observe(CFG_MPP_CloseRead), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, locked");
  CFG_UnlockFile(text(CFG_FILE_MPP));
  expectNotSaved(kTwoCaches);
  EXPECT_EQ(enable(0, 2), (Outcome{0, ""}));
}

TEST_F(CacheUpdatesTest, CacheWithoutEntriesAllowsNoSource) {
  give("<Cache Id=\"0\"/>\n<Cache Id=\"1\">\n    <Other Id=\"5\"/>\n</Cache>\n");
  EXPECT_EQ(enable(0, 5), (Outcome{-1, notAllowed(5, 0)}));
  CFG_UnlockFile(text(CFG_FILE_MPP));
  EXPECT_EQ(enable(1, 5), (Outcome{-1, notAllowed(5, 1)}));
  EXPECT_EQ(state(), "open, locked");
}

TEST_F(CacheUpdatesTest, FailedOpenFailsTheUpdatesAndLeavesNothingLocked) {
  device.write(CFG_FILE_MPP, "<Stream/>");
  const Outcome failed{CFG_MPP_ERR, line("Error", "<StreamCache> not found")};
  EXPECT_EQ(enable(0, 2), failed);
  EXPECT_EQ(allow(0, 1, 0), failed);
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CacheUpdatesTest, AllowedSourcesReplaceTheChildrenAndLeaveTheAttributes) {
  give(R"(<Cache Id="0" Name="a" BufferSizeKB="512" Extra="x">
    <AllowedStreamSource Id="0" Default="1"/>
    <!-- comment -->
    <Other/>
</Cache>
<Cache Id="1"/>
)");
  EXPECT_EQ(allow(0, 0b1010, 3), (Outcome{0, ""}));
  expectSaved(R"(<Cache Id="0" Name="a" BufferSizeKB="512" Extra="x">
    <AllowedStreamSource Id="1"/>
    <AllowedStreamSource Id="3" Enable="1"/>
</Cache>
<Cache Id="1"/>
)");
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(CacheUpdatesTest, AllowedSourcesWithoutTheEnabledOneCarryNoMark) {
  give("<Cache Id=\"0\"/>\n");
  EXPECT_EQ(allow(0, 0b1, 5), (Outcome{0, ""}));
  expectSaved("<Cache Id=\"0\">\n    <AllowedStreamSource Id=\"0\"/>\n</Cache>\n");
}

TEST_F(CacheUpdatesTest, MaskBelowOneIsSavedAsACacheThatAllowsNothing) {
  for (const int mask : {0, -1, -2147483647 - 1}) {
    give("<Cache Id=\"0\" Name=\"a\">\n    <AllowedStreamSource Id=\"0\"/>\n</Cache>\n");
    EXPECT_EQ(allow(0, mask, 0), (Outcome{0, ""})) << mask;
    expectSaved("<Cache Id=\"0\" Name=\"a\"/>\n");
    EXPECT_EQ(state(), "closed, unlocked");
  }
}

TEST_F(CacheUpdatesTest, EveryBitOfTheLargestMaskIsWritten) {
  give("<Cache Id=\"0\"/>\n");
  EXPECT_EQ(allow(0, 2147483647, 30), (Outcome{0, ""}));
  expectSaved("<Cache Id=\"0\">\n" + everySource("Enable") + "</Cache>\n");
}

TEST_F(CacheUpdatesTest, AllowedSourcesOfACacheThatDoesNotExistLeaveTheLockHeld) {
  give(kTwoCaches);
  EXPECT_EQ(allow(5, 1, 0), (Outcome{CFG_MPP_ERR, noCache(5)}));
  EXPECT_EQ(state(), "closed, locked");
  expectNotSaved(kTwoCaches);
}

TEST_F(CacheUpdatesTest, NoCacheGivenOpensNothing) {
  EXPECT_EQ(observe([] { return CFG_MPP_UpdateStreamCacheAllowedStreamSource(nullptr); }),
            (Outcome{CFG_MPP_ERR, ""}));
  EXPECT_EQ(g_STREAM_xmlDoc, nullptr);
}

}  // namespace
}  // namespace camcfg::tests
