#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "support/device_test.h"
#include "support/without_override.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kFailed = 256;

int copy(const std::string& source, const std::string& destination) {
  return cfgSyncCfgFile(source.c_str(), destination.c_str());
}

class CopyTest : public DeviceTest {
 protected:
  CopyTest() { device.write("/from.xml", contents); }
  void TearDown() override { EXPECT_THAT(log.records(), IsEmpty()); }

  mode_t permissionsOf(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 ? status.st_mode & 07777 : 0;
  }

  const std::string contents = "<A>\n    <B/>\n</A>\n";
};

TEST_F(CopyTest, NewFileIsMadeSilently) {
  int result = -1;
  EXPECT_EQ(captureOutput([&] { result = copy("/from.xml", "/to.xml"); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(device.read("/to.xml"), contents);
  EXPECT_EQ(device.read("/from.xml"), contents);
}

TEST_F(CopyTest, LongerFileIsReplacedWhole) {
  device.write("/to.xml", std::string(100000, 'x'));
  EXPECT_EQ(copy("/from.xml", "/to.xml"), 0);
  EXPECT_EQ(device.read("/to.xml"), contents);
}

TEST_F(CopyTest, FileThatSomebodyHasALeaseOnIsReplacedWhenThatIsGivenUp) {
  device.write("/to.xml", "old");
  std::signal(SIGIO, SIG_IGN);
  const int leased = open("/to.xml", O_RDONLY | O_CLOEXEC);
  if (fcntl(leased, F_SETLEASE, F_RDLCK) != 0) GTEST_SKIP() << "no leases here";
  std::thread holder([leased] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    close(leased);
  });
  EXPECT_EQ(copy("/from.xml", "/to.xml"), 0);
  holder.join();
  EXPECT_EQ(device.read("/to.xml"), contents);
}

TEST_F(CopyTest, FilesOfAnySizeAreCopiedByteByByte) {
  for (const std::size_t size : {0u, 1u, 16383u, 16384u, 16385u, 65536u, 300000u, 5000000u}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 251);
    device.write("/from.xml", bytes);
    EXPECT_EQ(copy("/from.xml", "/to.xml"), 0) << size;
    EXPECT_TRUE(device.read("/to.xml") == bytes) << size;
  }
}

TEST_F(CopyTest, RelativePathsBeginAtTheWorkingDirectory) {
  device.makeDirectory("/data");
  ASSERT_EQ(chdir("/data"), 0);
  EXPECT_EQ(copy("../from.xml", "to.xml"), 0);
  EXPECT_EQ(device.read("/data/to.xml"), contents);
}

TEST_F(CopyTest, DirectoryTakesTheFileUnderItsOwnName) {
  device.write("/deep/inside/from.xml", contents);
  EXPECT_EQ(copy("/from.xml", "/cfg0"), 0);
  EXPECT_EQ(copy("/deep/inside/from.xml", "/cfg1/"), 0);
  EXPECT_THAT(device.list("/cfg0"), ElementsAre("from.xml"));
  EXPECT_EQ(device.read("/cfg0/from.xml"), contents);
  EXPECT_EQ(device.read("/cfg1/from.xml"), contents);
}

TEST_F(CopyTest, NamesFullOfShellCharactersAreCopiedAndNothingIsRun) {
  for (const std::string name :
       {"/a b", "/$(touch ran)", "/`touch ran`", "/x;touch ran;", "/x&&touch ran", "/x|touch ran",
        "/x>ran", "/'single", "/\"double", "/back\\slash", "/*", "/?", "/~", "/new\nline",
        "/# comment", "/%s%n"}) {
    SCOPED_TRACE(name);
    device.write(name, name);
    EXPECT_EQ(copy(name, "/to.xml"), 0);
    EXPECT_EQ(device.read("/to.xml"), name);
    EXPECT_EQ(copy("/from.xml", name), 0);
    EXPECT_EQ(device.read(name), contents);
    device.remove(name);
  }
  EXPECT_THAT(device.list("/"), ElementsAre("app", "cfg0", "cfg1", "from.xml", "to.xml"));
}

TEST_F(CopyTest, NameThatLooksLikeAnOptionIsAName) {
  device.write("/-r", contents);
  EXPECT_EQ(copy("-r", "--help"), 0);
  EXPECT_EQ(device.read("/--help"), contents);
}

TEST_F(CopyTest, LinkIsReadThroughAndWrittenThrough) {
  device.write("/target", "older");
  ASSERT_EQ(symlink("/from.xml", "/source"), 0);
  ASSERT_EQ(symlink("/target", "/destination"), 0);
  EXPECT_EQ(copy("/source", "/destination"), 0);
  EXPECT_EQ(device.read("/target"), contents);
  EXPECT_EQ(copy("/source", "/cfg0"), 0);
  EXPECT_EQ(device.read("/cfg0/source"), contents);
}

TEST_F(CopyTest, NewFileHasTheSourcesPermissionsLessTheUmask) {
  umask(022);
  chmod("/from.xml", 0666);
  EXPECT_EQ(copy("/from.xml", "/first"), 0);
  EXPECT_EQ(permissionsOf("/first"), 0644u);
  chmod("/from.xml", 0400);
  EXPECT_EQ(copy("/from.xml", "/second"), 0);
  EXPECT_EQ(permissionsOf("/second"), 0400u);
}

TEST_F(CopyTest, ExistingFileKeepsItsPermissionsAndItsPlace) {
  device.write("/to.xml", "older");
  ASSERT_EQ(link("/to.xml", "/other_name"), 0);
  chmod("/to.xml", 0600);
  EXPECT_EQ(copy("/from.xml", "/to.xml"), 0);
  EXPECT_EQ(permissionsOf("/to.xml"), 0600u);
  EXPECT_EQ(device.read("/other_name"), contents);
}

// --- what fails ---

TEST_F(CopyTest, MissingOrUnreadableSourceFailsAndLeavesTheDestination) {
  device.write("/to.xml", "older");
  device.write("/secret", contents);
  chmod("/secret", 0);
  ASSERT_EQ(symlink("nowhere", "/dangling"), 0);
  const WithoutOverride withoutOverride;
  for (const char* source : {"/none.xml", "/nowhere/x.xml", "/from.xml/x.xml", "/secret",
                             "/dangling", "/from.xml/", ""}) {
    SCOPED_TRACE(source);
    EXPECT_EQ(copy(source, "/to.xml"), kFailed);
    EXPECT_EQ(copy(source, "/new.xml"), kFailed);
  }
  EXPECT_EQ(device.read("/to.xml"), "older");
  EXPECT_FALSE(device.exists("/new.xml"));
}

TEST_F(CopyTest, DirectoryIsNotCopied) {
  device.write("/cfg0/x.xml", "inside");
  EXPECT_EQ(copy("/cfg0", "/to.xml"), kFailed);
  EXPECT_EQ(copy("/cfg0", "/cfg1"), kFailed);
  EXPECT_FALSE(device.exists("/to.xml"));
  EXPECT_THAT(device.list("/cfg1"), IsEmpty());
}

TEST_F(CopyTest, PipeIsNeitherWaitedForNorCopied) {
  device.write("/to.xml", "old");
  ASSERT_EQ(mkfifo("/pipe", 0666), 0);
  EXPECT_EQ(copy("/pipe", "/to.xml"), kFailed);
  EXPECT_EQ(copy("/to.xml", "/pipe"), kFailed);
  EXPECT_EQ(device.read("/to.xml"), "old");
}

TEST_F(CopyTest, DestinationThatCannotBeMadeFails) {
  device.write("/read_only", "older");
  chmod("/read_only", 0444);
  device.makeDirectory("/cfg0/from.xml");
  const WithoutOverride withoutOverride;
  for (const char* destination :
       {"/nowhere/to.xml", "/read_only", "/read_only/to.xml", "/new.xml/", "/cfg0"}) {
    SCOPED_TRACE(destination);
    EXPECT_EQ(copy("/from.xml", destination), kFailed);
  }
  EXPECT_EQ(device.read("/read_only"), "older");
  EXPECT_FALSE(device.exists("/new.xml"));
}

TEST_F(CopyTest, EmptyDestinationFails) {
  EXPECT_EQ(copy("/from.xml", ""), kFailed);
  EXPECT_EQ(copy("", ""), kFailed);
  EXPECT_EQ(device.read("/from.xml"), contents);
}

TEST_F(CopyTest, NullPathsFail) {
  EXPECT_EQ(cfgSyncCfgFile(nullptr, "/to.xml"), kFailed);
  EXPECT_EQ(cfgSyncCfgFile("/from.xml", nullptr), kFailed);
  EXPECT_FALSE(device.exists("/to.xml"));
}

TEST_F(CopyTest, FileIsNotCopiedOntoItself) {
  ASSERT_EQ(link("/from.xml", "/hard"), 0);
  ASSERT_EQ(symlink("/from.xml", "/soft"), 0);
  for (const char* itself : {"/from.xml", "//from.xml", "/cfg0/../from.xml", "/hard", "/soft", "/"})
    EXPECT_EQ(copy("/from.xml", itself), kFailed) << itself;
  EXPECT_EQ(device.read("/from.xml"), contents);
}

TEST_F(CopyTest, DanglingLinkIsNotWrittenThrough) {
  ASSERT_EQ(symlink("/made.xml", "/dangling"), 0);
  EXPECT_EQ(copy("/from.xml", "/dangling"), kFailed);
  EXPECT_FALSE(device.exists("/made.xml"));
  ASSERT_EQ(symlink("/made.xml", "/cfg0/from.xml"), 0);
  EXPECT_EQ(copy("/from.xml", "/cfg0"), kFailed);
  EXPECT_FALSE(device.exists("/made.xml"));
}

TEST_F(CopyTest, FullDeviceFails) {
  device.write("/from.xml", std::string(100000, 'x'));
  signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{50000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  const int result = copy("/from.xml", "/to.xml");
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result, kFailed);
}

TEST_F(CopyTest, NoDescriptorIsLeftOpen) {
  const auto nextDescriptor = [] {
    const int fd = open("/", O_RDONLY);
    close(fd);
    return fd;
  };
  const int before = nextDescriptor();
  copy("/from.xml", "/to.xml");
  copy("/from.xml", "/cfg0");
  copy("/from.xml", "/from.xml");
  copy("/from.xml", "/nowhere/to.xml");
  copy("/none.xml", "/to.xml");
  copy("/cfg0", "/to.xml");
  EXPECT_EQ(nextDescriptor(), before);
}

// --- the limit of 127 characters on "cp SOURCE DESTINATION" ---

// Copies between two paths that leave a command of `command` characters.
class CommandLimit : public CopyTest {
 protected:
  int copyWithCommandOf(std::size_t command) {
    return copy("/from.xml", "/" + std::string(command - kFixed, 'n'));
  }
  void expectOnlyCopy(std::size_t length) {
    EXPECT_THAT(device.list("/"),
                ElementsAre("app", "cfg0", "cfg1", "from.xml", std::string(length, 'n')));
  }
  static constexpr std::size_t kFixed = sizeof "cp /from.xml /" - 1;
};

TEST_F(CommandLimit, CommandOf127CharactersIsWhole) {
  EXPECT_EQ(copyWithCommandOf(127), 0);
  expectOnlyCopy(127 - kFixed);
}

TEST_F(CommandLimit, OneMoreCharacterIsCutOffTheDestination) {
  EXPECT_EQ(copyWithCommandOf(128), 0);
  expectOnlyCopy(127 - kFixed);
}

TEST_F(CommandLimit, ManyMoreAreCutOffAsWell) {
  EXPECT_EQ(copyWithCommandOf(1000), 0);
  expectOnlyCopy(127 - kFixed);
}

TEST_F(CommandLimit, LongSourceLeavesTheDestinationWhatRemains) {
  const auto copyFrom = [&](std::size_t length) {
    const std::string source = "/cfg0/" + std::string(length - 6, 's');
    device.write(source, contents);
    return copy(source, "/to");
  };
  EXPECT_EQ(copyFrom(120), 0);
  EXPECT_EQ(device.read("/to"), contents);
  EXPECT_EQ(copyFrom(121), 0);
  EXPECT_EQ(device.read("/t"), contents);
  EXPECT_EQ(copyFrom(122), 0);
  EXPECT_EQ(device.read("/" + std::string(116, 's')), contents) << "only \"/\" is left";
  for (const std::size_t length : {123u, 124u, 125u, 127u, 128u, 200u})
    EXPECT_EQ(copyFrom(length), kFailed) << length;
  EXPECT_THAT(device.list("/"),
              ElementsAre("app", "cfg0", "cfg1", "from.xml", std::string(116, 's'), "t", "to"));
}

}  // namespace
}  // namespace camcfg::tests
