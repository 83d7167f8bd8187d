#include "camcfg/livemedia.h"
#include "camcfg/preset.h"
#include "camcfg/stream.h"
#include "store/process_lock_test.h"

namespace camcfg::tests {
namespace {

constexpr char kMedia[] = "mpp_cfg.xml";
constexpr char kMediaFile[] =
    "<Stream><StreamCache><Cache Id='1' Name='c' BufferSizeB='1'><AllowedStreamSource Id='1'/>"
    "</Cache></StreamCache></Stream><LiveMediaService><RTMP/></LiveMediaService>";

class LeftLocksTest : public ProcessLockTest {
 protected:
  LeftLocksTest() {
    device.write(CFG_FILE_MPP, kMediaFile);
    device.write(CFG_FILE_PRESET, "<PresetCfg/>");
  }
  void expectLockedInsideOnly(const char* path, const char* name) {
    EXPECT_FALSE(isUnlocked(path));
    EXPECT_TRUE(othersMayWrite(name));
    log.clear();
    EXPECT_EQ(CFG_UnlockFile(text(path)), 0);
    EXPECT_TRUE(isUnlocked(path));
    EXPECT_THAT(log.records(), testing::IsEmpty());
    EXPECT_TRUE(othersMayWrite(name));
  }
};

TEST_F(LeftLocksTest, DeletionOfAnUnknownPresetKeepsNoOtherProgramOut) {
  EXPECT_EQ(CFG_PRESET_DeleteById(5), 0);
  expectLockedInsideOnly(CFG_FILE_PRESET, "preset_cfg.xml");
}

TEST_F(LeftLocksTest, DumpOfRtmpKeepsNoOtherProgramOut) {
  captureOutput([] { EXPECT_EQ(CFG_LM_DumpRtmpConfig({}), 0); });
  expectLockedInsideOnly(CFG_FILE_MPP, kMedia);
}

TEST_F(LeftLocksTest, UnknownCacheKeepsNoOtherProgramOut) {
  captureOutput([] { CFG_MPP_UpdateStreamCacheEnabledStreamSource(9, 1); });
  expectLockedInsideOnly(CFG_FILE_MPP, kMedia);
}

TEST_F(LeftLocksTest, RefusedSourceKeepsNoOtherProgramOutUntilItIsSaved) {
  captureOutput([] { EXPECT_EQ(CFG_MPP_UpdateStreamCacheEnabledStreamSource(1, 9), -1); });
  EXPECT_FALSE(isUnlocked(CFG_FILE_MPP));
  EXPECT_TRUE(othersMayWrite(kMedia));
  bool kept = false;
  insteadOfSync = [&] { kept = !othersMayRead(kMedia); };
  EXPECT_EQ(CFG_MPP_CloseWrite(), 0);
  EXPECT_TRUE(kept);
  EXPECT_TRUE(isUnlocked(CFG_FILE_MPP));
  EXPECT_TRUE(othersMayWrite(kMedia));
}

TEST_F(LeftLocksTest, WritingSessionClosedAsAReadingOneKeepsNoOtherProgramOut) {
  ASSERT_NE(CFG_LM_Open("RTMP", BU_FALSE), nullptr);
  EXPECT_FALSE(othersMayRead(kMedia));
  EXPECT_EQ(CFG_LM_CloseRead(), 0);
  expectLockedInsideOnly(CFG_FILE_MPP, kMedia);
}

TEST_F(LeftLocksTest, ReadingSessionThatEndsReleasesNoWritingSessionOfTheOtherFamily) {
  ASSERT_NE(CFG_LM_Open("RTMP", BU_TRUE), nullptr);
  ASSERT_NE(CFG_MPP_Open("StreamCache", BU_FALSE), nullptr);
  EXPECT_EQ(CFG_LM_CloseRead(), 0);
  EXPECT_FALSE(othersMayRead(kMedia));
  EXPECT_EQ(CFG_MPP_CloseWrite(), 0);
  EXPECT_TRUE(othersMayWrite(kMedia));
}

// Waits 10 seconds: the program has the file open already.
TEST_F(LeftLocksTest, SecondOpeningDiscardsTheFirstAndReleasesItForOthers) {
  ASSERT_NE(CFG_LM_Open("RTMP", BU_FALSE), nullptr);
  captureOutput([] { EXPECT_EQ(CFG_LM_Open("RTMP", BU_FALSE), nullptr); });
  EXPECT_FALSE(isUnlocked(CFG_FILE_MPP));
  EXPECT_TRUE(othersMayWrite(kMedia));
}

TEST_F(LeftLocksTest, FailedOpeningLeavesNothingLocked) {
  captureOutput([] { EXPECT_EQ(CFG_LM_Open("SRT", BU_FALSE), nullptr); });
  EXPECT_TRUE(isUnlocked(CFG_FILE_MPP));
  EXPECT_TRUE(othersMayWrite(kMedia));
}

}  // namespace
}  // namespace camcfg::tests
