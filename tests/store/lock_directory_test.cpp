#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ostream>

#include "store/process_lock_test.h"
#include "support/interposed_calls.h"
#include "support/without_override.h"

namespace camcfg::tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;

template <int Error>
std::optional<int> lockFilesFailWith(const char* path) {
  if (std::strncmp(path, "/run/camcfg", 11) != 0) return std::nullopt;
  errno = Error;
  return -1;
}

int descriptorOf(const std::string& path) {
  struct stat wanted {};
  if (stat(path.c_str(), &wanted) != 0) return -1;
  for (int fd = 0; fd < 100; ++fd) {
    struct stat status {};
    if (fstat(fd, &status) == 0 && status.st_ino == wanted.st_ino && status.st_dev == wanted.st_dev)
      return fd;
  }
  return -1;
}

class LockDirectoryTest : public ProcessLockTest {
 protected:
  // A file of the program's own, under a descriptor that the library had.
  static inline int theirs = -1;

  void takeDescriptorOf(const std::string& lockFile) {
    const int fd = descriptorOf(lockFile);
    ASSERT_GE(fd, 0);
    device.write("/other", "theirs");
    chmod("/other", 0600);
    const int file = ::open("/other", O_RDWR);
    theirs = dup2(file, fd);
    close(file);
  }
  static int theirsIsOpen() { return lseek(theirs, 0, SEEK_END) == 6 ? 0 : 1; }
  static bool theirsIsUnlocked() {
    const int fd = ::open("/other", O_RDWR | O_CLOEXEC);
    struct flock range {};
    range.l_type = F_WRLCK;
    const bool isUnlocked = fcntl(fd, F_OFD_SETLK, &range) == 0;
    close(fd);
    return isUnlocked;
  }

  /// The lock file's path, of a file that is not there any more.
  std::string takeLockFileAway() {
    cfgLockFile(kPath);
    cfgUnlockFile(kPath);
    const std::string path = lockFileOf(kName);
    device.remove(path);
    return path;
  }

  /// The lock works inside the process, is not waited for, and one record says what is wrong.
  void expectLockedInsideOnly(const std::string& reason) {
    const auto start = Clock::now();
    log.clear();
    for (int round = 0; round < 3; ++round) {
      EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
      const Document document = openDocument(kPath, BU_FALSE);
      ASSERT_NE(document, nullptr);
      EXPECT_FALSE(isUnlocked(kPath));
      EXPECT_EQ(save(document, 1), 0);
      EXPECT_TRUE(isUnlocked(kPath));
    }
    EXPECT_LT(Clock::now() - start, 2s);
    ASSERT_THAT(log.records(), SizeIs(1));
    EXPECT_EQ(log.records().front().level, 4);
    EXPECT_EQ(log.records().front().function(), "cfgLockFile");
    EXPECT_THAT(log.texts().front(), AllOf(HasSubstr("Lock /cfg0/x.xml keeps no other program out"),
                                           HasSubstr("/run/camcfg"), HasSubstr(reason)));
  }
};

TEST_F(LockDirectoryTest, LinkIsNotFollowed) {
  device.write("/victim", "precious");
  ASSERT_EQ(symlink("/victim", takeLockFileAway().c_str()), 0);
  expectLockedInsideOnly(strerrordesc_np(ELOOP));
  EXPECT_EQ(device.read("/victim"), "precious");
}

TEST_F(LockDirectoryTest, LinkToNothingMakesNothing) {
  ASSERT_EQ(symlink("/victim", takeLockFileAway().c_str()), 0);
  expectLockedInsideOnly(strerrordesc_np(ELOOP));
  EXPECT_FALSE(device.exists("/victim"));
}

TEST_F(LockDirectoryTest, FileOfASecondNameIsNotTouched) {
  device.write("/victim", "precious");
  ASSERT_EQ(link("/victim", takeLockFileAway().c_str()), 0);
  expectLockedInsideOnly("no file of ours");
  EXPECT_EQ(device.read("/victim"), "precious");
}

TEST_F(LockDirectoryTest, PipeIsNotWaitedFor) {
  ASSERT_EQ(mkfifo(takeLockFileAway().c_str(), 0666), 0);
  expectLockedInsideOnly("no file of ours");
}

TEST_F(LockDirectoryTest, DirectoryInPlaceOfTheLockFileIsReported) {
  device.makeDirectory(takeLockFileAway());
  expectLockedInsideOnly(strerrordesc_np(EISDIR));
}

TEST_F(LockDirectoryTest, SocketIsReported) {
  const std::string path = takeLockFileAway();
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  expectLockedInsideOnly(strerrordesc_np(ENXIO));
  close(fd);
}

TEST_F(LockDirectoryTest, RubbishInTheLockFileChangesNothing) {
  const std::string path = takeLockFileAway();
  for (const std::size_t size : {1u, 2u, 100u, 1000u, 5000u}) {
    device.write(path, std::string(size, '?'));
    const Document document = openDocument(kPath, BU_FALSE);
    EXPECT_FALSE(othersMayRead(kName));
    EXPECT_EQ(save(document, 1), 0);
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LockDirectoryTest, LinkInPlaceOfTheDirectoryIsNotFollowed) {
  device.remove("/run/camcfg");
  device.makeDirectory("/elsewhere");
  ASSERT_EQ(symlink("/elsewhere", "/run/camcfg"), 0);
  expectLockedInsideOnly("no directory");
  EXPECT_THAT(device.list("/elsewhere"), IsEmpty());
}

TEST_F(LockDirectoryTest, FileInPlaceOfTheDirectoryIsReported) {
  device.remove("/run/camcfg");
  device.write("/run/camcfg", "");
  expectLockedInsideOnly("no directory");
}

TEST_F(LockDirectoryTest, DirectoryThatCannotBeWrittenIsReported) {
  chmod("/run/camcfg", 0555);
  const WithoutOverride withoutOverride;
  expectLockedInsideOnly(strerrordesc_np(EACCES));
}

TEST_F(LockDirectoryTest, DirectoryOfAnotherUserIsReported) {
  chmod("/run/camcfg", 0700);
  if (chown("/run/camcfg", 1234, 1234) != 0) chmod("/run/camcfg", 0);  // no other user to be had
  const WithoutOverride withoutOverride;
  expectLockedInsideOnly(strerrordesc_np(EACCES));
}

TEST_F(LockDirectoryTest, FullFileSystemIsReported) {
  InterposedCallsScope calls;
  calls->open = lockFilesFailWith<ENOSPC>;
  expectLockedInsideOnly(strerrordesc_np(ENOSPC));
}

TEST_F(LockDirectoryTest, ShortageOfDescriptorsFailsAsATimeOutDoes) {
  InterposedCallsScope calls;
  calls->open = lockFilesFailWith<EMFILE>;
  captureOutput([] { EXPECT_EQ(cfgLockFile(kPath), -1); });
  EXPECT_THAT(log.texts(), testing::ElementsAre("Lock /cfg0/x.xml timeout, a deadlock may exist!"));
  EXPECT_TRUE(isUnlocked(kPath));
}

TEST_F(LockDirectoryTest, ShortageOfDescriptorsEndsVerification) {
  InterposedCallsScope calls;
  calls->open = [](const char*) -> std::optional<int> {
    errno = EMFILE;
    return -1;
  };
  captureOutput([] { EXPECT_EQ(CFG_VerifyFileFormat(), -1); });
}

TEST_F(LockDirectoryTest, LockFileIsForOwnerAndGroupWhateverTheMask) {
  for (const mode_t mask : {0u, 022u, 077u}) {
    const mode_t before = umask(mask);
    takeLockFileAway();
    cfgLockFile(kPath);
    umask(before);
    struct stat status {};
    EXPECT_EQ(stat(lockFileOf(kName).c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0660u);
    EXPECT_EQ(status.st_size, 0);
    cfgUnlockFile(kPath);
  }
}

TEST_F(LockDirectoryTest, LockFileThatWasDeletedIsMadeAgain) {
  openDocument(kPath, BU_TRUE);
  takeLockFileAway();
  const Document document = openDocument(kPath, BU_FALSE);
  EXPECT_FALSE(othersMayRead(kName));
  EXPECT_EQ(save(document, 1), 0);
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(LockDirectoryTest, DescriptorThatTheProgramClosedIsNotUsedForAnotherFile) {
  const std::vector<std::pair<const char*, std::function<void()>>> works = {
      {"read", [] { EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1); }},
      {"write", [] { EXPECT_EQ(save(openDocument(kPath, BU_FALSE), 1), 0); }},
      {"fork",
       [] { EXPECT_EQ(OtherProgram([](OtherProgram&) { return theirsIsOpen(); }).wait(), 0); }},
  };
  for (const auto& [name, work] : works) {
    openDocument(kPath, BU_TRUE);
    takeDescriptorOf(lockFileOf(kName));
    for (int round = 0; round < 2; ++round) work();
    EXPECT_EQ(theirsIsOpen(), 0) << name;
    EXPECT_TRUE(theirsIsUnlocked()) << name;
    struct stat status {};
    EXPECT_EQ(fstat(theirs, &status), 0) << name;
    EXPECT_EQ(status.st_mode & 0777, 0600u) << name;
    close(theirs);
  }
}

TEST_F(LockDirectoryTest, DescriptorThatTheProgramClosedInAWritingSessionIsNotClosedOnceMore) {
  const Document document = openDocument(kPath, BU_FALSE);
  takeDescriptorOf(lockFileOf(kName));
  EXPECT_EQ(save(document, 2), 0);
  EXPECT_EQ(theirsIsOpen(), 0);
  close(theirs);
}

// The next lock file gets the descriptor that the first one had.
TEST_F(LockDirectoryTest, LockOfAnotherFileSurvivesAReadByADescriptorThatTheProgramClosed) {
  openDocument(kPath, BU_TRUE);
  close(descriptorOf(lockFileOf(kName)));
  device.write("/cfg0/y.xml", "<A/>");
  const Document document = openDocument("/cfg0/y.xml", BU_FALSE);
  EXPECT_EQ(valueOf(openDocument(kPath, BU_TRUE)), 1);
  EXPECT_FALSE(othersMayRead("y.xml"));
  CFG_UnlockFile(text("/cfg0/y.xml"));
}

TEST_F(LockDirectoryTest, LockFileThatGotASecondNameIsNotLeftLocked) {
  openDocument(kPath, BU_TRUE);
  const std::string path = lockFileOf(kName);
  ASSERT_EQ(link(path.c_str(), "/second"), 0);
  openDocument(kPath, BU_TRUE);
  openDocument(kPath, BU_TRUE);
  EXPECT_TRUE(othersMayWrite(kName));
}

TEST_F(LockDirectoryTest, LockFileIsNoStandardStreamOfAProgramThatClosedThem) {
  OtherProgram other([](OtherProgram&) {
    for (const int stream : {0, 1, 2}) close(stream);
    openDocument(kPath, BU_TRUE);
    return descriptorOf(lockFileOf(kName));
  });
  EXPECT_GT(other.wait(), 2);
}

}  // namespace
}  // namespace camcfg::tests
