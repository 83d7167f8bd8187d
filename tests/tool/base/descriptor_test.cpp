#include "base/host.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mman.h>

#include <cerrno>

namespace camcfg::tests {
namespace {

using tool::Descriptor;

TEST(DescriptorTest, TextIsWrittenAndReadWhole) {
  const std::string text(100000, 'x');
  const Descriptor file(memfd_create("file", MFD_CLOEXEC));
  ASSERT_TRUE(file);
  ASSERT_TRUE(tool::writeAll(file.get(), text));
  ASSERT_EQ(lseek(file.get(), 0, SEEK_SET), 0);
  std::string read;
  EXPECT_TRUE(tool::readAll(file.get(), read));
  EXPECT_EQ(read, text);
}

TEST(DescriptorTest, FailureLeavesItsReasonInErrno) {
  const Descriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
  EXPECT_FALSE(tool::writeAll(full.get(), "x"));
  EXPECT_EQ(errno, ENOSPC);
  const Descriptor directory(open("/", O_RDONLY | O_CLOEXEC));
  std::string text;
  EXPECT_FALSE(tool::readAll(directory.get(), text));
  EXPECT_EQ(errno, EISDIR);
}

TEST(DescriptorTest, ClosesOnce) {
  Descriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
  EXPECT_TRUE(file.close());
  EXPECT_FALSE(file);
  EXPECT_TRUE(file.close());
}

}  // namespace
}  // namespace camcfg::tests
