#include "device/room.h"

#include <gmock/gmock.h>
#include <sys/statvfs.h>

#include <filesystem>
#include <fstream>

#include "camcfg/testkit/device_root.h"

namespace camcfg::tests {
namespace {

using tool::device::whyNotWritable;

class RoomTest : public testing::Test {
 protected:
  std::string path(const std::string& inside) const { return device.hostPath() + inside; }

  testkit::DeviceRoot device{testkit::DeviceRoot::StayOut};
};

constexpr std::uintmax_t kMoreThanAnyDisk = std::uintmax_t{1} << 60;

TEST_F(RoomTest, NothingPreventsASmallFile) {
  EXPECT_EQ(whyNotWritable({{path("/cfg0/x.xml"), 100}, {path("/cfg1/x.xml"), 100}}), "");
  device.write("/cfg0/x.xml", "<A/>");
  EXPECT_EQ(whyNotWritable({{path("/cfg0/x.xml"), 100}}), "");
  EXPECT_EQ(whyNotWritable({}), "");
}

TEST_F(RoomTest, FilesOnOneFileSystemAreCountedTogether) {
  const std::string fault = whyNotWritable(
      {{path("/cfg0/x.xml"), kMoreThanAnyDisk}, {path("/cfg1/x.xml"), kMoreThanAnyDisk}});
  EXPECT_THAT(fault, testing::StartsWith(
                         "no room for " + path("/cfg0/x.xml") + " and " + path("/cfg1/x.xml") +
                         ": " + std::to_string(2 * kMoreThanAnyDisk) + " bytes are needed and "));
  EXPECT_THAT(fault, testing::EndsWith(" are free"));
}

TEST_F(RoomTest, BytesAreCountedInWholeBlocks) {
  struct statvfs space {};
  ASSERT_EQ(statvfs(device.hostPath().c_str(), &space), 0);
  EXPECT_THAT(whyNotWritable({{path("/cfg0/x.xml"), kMoreThanAnyDisk + 1}}),
              testing::HasSubstr(std::to_string(kMoreThanAnyDisk + space.f_frsize) + " bytes"));
}

TEST_F(RoomTest, MissingDirectoryIsReported) {
  device.remove("/cfg1");
  EXPECT_EQ(whyNotWritable({{path("/cfg1/x.xml"), 1}}),
            "cannot write " + path("/cfg1/x.xml") + ": No such file or directory");
}

TEST_F(RoomTest, DirectoryInPlaceOfAFileIsReported) {
  device.makeDirectory("/cfg1/x.xml");
  EXPECT_EQ(whyNotWritable({{path("/cfg1/x.xml"), 1}}),
            "cannot write " + path("/cfg1/x.xml") + ": it is not a regular file; move it away");
}

}  // namespace
}  // namespace camcfg::tests
