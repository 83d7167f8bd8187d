#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

  /// Leaves the copying to the library itself.
  void withoutTheKernelsHelp() {
    calls->copyFileRange = [this](std::size_t&) {
      ++asked;
      errno = ENOSYS;
      return -1;
    };
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

TEST_F(CopyFaultsTest, KernelThatCopiesNothingOfAFileThatCannotBeReadFailsTheCopy) {
  calls->copyFileRange = [](std::size_t&) { return 0; };
  calls->read = [](std::size_t&) {
    errno = EIO;
    return -1;
  };
  const int result = cfgSyncCfgFile("/from", "/to");
  calls->read = nullptr;
  EXPECT_EQ(result, 256);
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

TEST_F(CopyFaultsTest, WithoutTheKernelsHelpInterruptedReadsAndWritesAreRepeated) {
  withoutTheKernelsHelp();
  int interruptions = 0;
  const auto everyOther = [&, turn = 0](std::size_t&) mutable -> std::optional<ssize_t> {
    if (++turn % 2 == 0) return std::nullopt;
    ++interruptions;
    errno = EINTR;
    return -1;
  };
  calls->read = everyOther;
  calls->write = everyOther;
  const int result = cfgSyncCfgFile("/from", "/to");
  calls->read = nullptr;
  calls->write = nullptr;
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(device.read("/to") == contents);
  EXPECT_GE(interruptions, 2 * 7);
}

TEST_F(CopyFaultsTest, WithoutTheKernelsHelpWhatIsReadAndWrittenInPartIsCompleted) {
  withoutTheKernelsHelp();
  calls->read = [](std::size_t& size) -> std::optional<ssize_t> {
    size = std::min<std::size_t>(size, 5000);
    return std::nullopt;
  };
  calls->write = [](std::size_t& size) -> std::optional<ssize_t> {
    if (size > 1) --size;  // so that a single byte is left each time
    return std::nullopt;
  };
  const int result = cfgSyncCfgFile("/from", "/to");
  calls->read = nullptr;
  calls->write = nullptr;
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(device.read("/to") == contents);
}

TEST_F(CopyFaultsTest, WithoutTheKernelsHelpAReadOrWriteThatFailsFailsTheCopy) {
  withoutTheKernelsHelp();
  const auto fails = [](std::size_t&) {
    errno = EIO;
    return -1;
  };
  calls->read = fails;
  const int unread = cfgSyncCfgFile("/from", "/to");
  calls->read = nullptr;
  calls->write = fails;
  const int unwritten = cfgSyncCfgFile("/from", "/to");
  calls->write = [](std::size_t&) {
    errno = EINTR;  // means nothing where no error is reported
    return 0;
  };
  const int nothingWritten = cfgSyncCfgFile("/from", "/to");
  calls->write = nullptr;
  EXPECT_EQ(unread, 256);
  EXPECT_EQ(unwritten, 256);
  EXPECT_EQ(nothingWritten, 256);
}

TEST_F(CopyFaultsTest, DestinationThatCannotBeClosedFailsTheCopyAndIsNotClosedAgain) {
  std::vector<int> closed;
  calls->close = [&](int fd) -> std::optional<int> {
    struct stat status {};
    struct stat destination {};
    if (fstat(fd, &status) != 0 || stat("/to", &destination) != 0) return std::nullopt;
    if (status.st_ino != destination.st_ino) return std::nullopt;
    closed.push_back(fd);
    errno = EIO;
    return -1;
  };
  const int result = cfgSyncCfgFile("/from", "/to");
  calls->close = nullptr;
  EXPECT_EQ(result, 256);
  ASSERT_EQ(closed.size(), 1u);
  EXPECT_EQ(close(closed[0]), 0);
}

TEST_F(CopyFaultsTest, AnEarlierErrorDoesNotKeepAFileInADirectoryFromBeingReplaced) {
  device.write("/cfg0/from", "older");
  errno = ENOENT;
  EXPECT_EQ(cfgSyncCfgFile("/from", "/cfg0"), 0);
  EXPECT_TRUE(device.read("/cfg0/from") == contents);
}

TEST_F(CopyFaultsTest, WithoutStandardInputItsDescriptorIsUsedAndClosedAgain) {
  close(STDIN_FILENO);
  EXPECT_EQ(cfgSyncCfgFile("/from", "/to"), 0);
  EXPECT_EQ(::open("/", O_RDONLY), STDIN_FILENO);
}

TEST_F(CopyFaultsTest, StandardInputsDescriptorServesForTheDestinationAndItsDirectory) {
  for (const auto& [destination, copied] : {std::pair{"/to", "/to"}, {"/cfg0", "/cfg0/from"}}) {
    calls->status = [](int, struct stat&) -> std::optional<int> {
      close(STDIN_FILENO);  // after the source was opened
      return std::nullopt;
    };
    const int result = cfgSyncCfgFile("/from", destination);
    calls->status = nullptr;
    EXPECT_EQ(result, 0) << destination;
    EXPECT_EQ(::open("/", O_RDONLY), STDIN_FILENO) << "was left open";
    ASSERT_TRUE(device.exists(copied)) << copied;
    EXPECT_TRUE(device.read(copied) == contents) << copied;
  }
}

TEST_F(CopyFaultsTest, SourceWhoseKindIsNotKnownIsNotCopied) {
  calls->status = [](int, struct stat&) {
    errno = EIO;
    return -1;
  };
  const int result = cfgSyncCfgFile("/from", "/to");
  calls->status = nullptr;
  EXPECT_EQ(result, 256);
  EXPECT_EQ(device.read("/to"), "older");
}

TEST_F(CopyFaultsTest, SourceNamedWithoutADirectoryGoesIntoADirectoryUnderItsName) {
  EXPECT_EQ(cfgSyncCfgFile("from", "/cfg0"), 0);
  EXPECT_TRUE(device.read("/cfg0/from") == contents);
}

TEST_F(CopyFaultsTest, FileWithTheSameNumberOnAnotherDeviceIsAnotherFile) {
  struct stat destination {};
  ASSERT_EQ(stat("/to", &destination), 0);
  calls->status = [&](int, struct stat& status) {
    status = destination;
    ++status.st_dev;
    return 0;
  };
  const int result = cfgSyncCfgFile("/from", "/to");
  calls->status = nullptr;
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(device.read("/to") == contents);
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
