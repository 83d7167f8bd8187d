#include "fuzz/device.h"

#include <camcfg/store.h>
#include <gmock/gmock.h>

#include <cstdio>

#include "camcfg/testkit/captured_output.h"
#include "fuzz/targets.h"

namespace camcfg::fuzz {
namespace {

char kFile[] = "/cfg0/preset_cfg.xml";

TEST(DeviceTest, IsEmptyForEachInput) {
  inDevice([] { writeFile(kFile, "<a/>"); });
  std::string found;
  inDevice([&] { found = readFile(kFile); });
  EXPECT_EQ(found, kNoFile);
}

TEST(DeviceTest, SilencesStandardOutputWhileInside) {
  const std::string printed = testkit::captureOutput([] {
    prepareDevice();
    std::printf("before ");
    inDevice([] { std::printf("inside "); });
    std::printf("after");
  });
  EXPECT_EQ(printed, "before after");
}

TEST(DeviceTest, ALockThatIsLeftHeldBreaksAPromise) {
  EXPECT_THROW(inDevice([] { cfgLockFile(kFile); }), Broken);
  cfgUnlockFile(kFile);
  EXPECT_NO_THROW(inDevice([] {
    cfgLockFile(kFile);
    releaseIfLocked(kFile);
  }));
}

TEST(DeviceTest, IsLeftWhenATargetThrows) {
  EXPECT_THROW(inDevice([] { require(false, "x"); }), Broken);
  EXPECT_EQ(std::fopen(kFile, "r"), nullptr);
  EXPECT_NE(readFile("/proc/self/status"), kNoFile);
}

TEST(DeviceTest, WritingNoFileRemovesOne) {
  std::string found;
  inDevice([&] {
    writeFile(kFile, "<a/>");
    writeFile(kFile, kNoFile);
    found = readFile(kFile);
  });
  EXPECT_EQ(found, kNoFile);
}

TEST(DeviceTest, LineEndsInAttributesAreReadBackAsXmlHasThem) {
  EXPECT_EQ(asReadBack("a\r\nb\n\rc\rd\ne"), "a\nb\nc\nd\ne");
  EXPECT_EQ(asReadBack("\r\r\n\n"), "\n\n\n");
}

TEST(DeviceTest, AnUnknownTargetIsRefused) {
  EXPECT_THROW(tryInput("none", ""), std::invalid_argument);
}

}  // namespace
}  // namespace camcfg::fuzz
