#include <algorithm>
#include <cerrno>
#include <cstring>

#include "support/device_test.h"
#include "support/interposed_calls.h"

namespace camcfg::tests {
namespace {

class CopyFaultsTest : public DeviceTest {
 protected:
  CopyFaultsTest() {
    for (std::size_t i = 0; i < contents.size(); ++i)
      contents[i] = static_cast<char>(i * 31 + i / 251);
    device.write("/from", contents);
    device.write("/to", "older");
  }

  /// Copies, expecting the whole file to arrive although the kernel's own copy needed help.
  void expectCopied() {
    EXPECT_EQ(cfgSyncCfgFile("/from", "/to"), 0);
    EXPECT_TRUE(device.read("/to") == contents);
    EXPECT_GT(asked, 0);
  }

  InterposedCallsScope calls;
  std::string contents = std::string(100000, '\0');
  int asked = 0;
};

class KernelThatCannotCopy : public CopyFaultsTest, public testing::WithParamInterface<int> {};

TEST_P(KernelThatCannotCopy, IsHelpedOut) {
  calls->copyFileRange = [&](std::size_t&) {
    ++asked;
    errno = GetParam();
    return -1;
  };
  expectCopied();
}

TEST_P(KernelThatCannotCopy, IsHelpedOutFromWhereItStopped) {
  calls->copyFileRange = [&](std::size_t& size) -> std::optional<ssize_t> {
    size = std::min<std::size_t>(size, 12345);
    if (++asked <= 3) return std::nullopt;
    errno = GetParam();
    return -1;
  };
  expectCopied();
}

INSTANTIATE_TEST_SUITE_P(Errors, KernelThatCannotCopy,
                         testing::Values(ENOSYS, EXDEV, EINVAL, EOPNOTSUPP, EPERM),
                         [](const auto& test) { return strerrorname_np(test.param); });

TEST_F(CopyFaultsTest, KernelThatCopiesNothingOfAFileWithContentsIsHelpedOut) {
  calls->copyFileRange = [&](std::size_t&) {
    ++asked;
    return 0;
  };
  expectCopied();
}

TEST_F(CopyFaultsTest, KernelThatCopiesPieceByPieceIsAskedUntilAllIsThere) {
  calls->copyFileRange = [&](std::size_t& size) {
    size = std::min<std::size_t>(size, 1000);
    ++asked;
    return std::nullopt;
  };
  expectCopied();
  EXPECT_GE(asked, 100);
}

TEST_F(CopyFaultsTest, InterruptedCopyGoesOn) {
  calls->copyFileRange = [&](std::size_t& size) -> std::optional<ssize_t> {
    size = std::min<std::size_t>(size, 40000);
    if (++asked % 2 == 0) return std::nullopt;
    errno = EINTR;
    return -1;
  };
  expectCopied();
}

TEST_F(CopyFaultsTest, BrokenDeviceFailsTheCopy) {
  for (const int error : {EIO, ENOSPC, EDQUOT}) {
    calls->copyFileRange = [&](std::size_t&) {
      errno = error;
      return -1;
    };
    EXPECT_EQ(cfgSyncCfgFile("/from", "/to"), 256) << strerrorname_np(error);
  }
}

}  // namespace
}  // namespace camcfg::tests
