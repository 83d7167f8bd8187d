#include "base/host.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "base/outcome.h"
#include "camcfg/testkit/device_root.h"

namespace camcfg::tool {
namespace {

namespace fs = std::filesystem;

/// The temporary files are in a directory of this test's own.
class HostTemporaryTest : public testing::Test {
 protected:
  HostTemporaryTest() {
    host_.makeDirectory("/tmp");
    setenv("TMPDIR", (host_.hostPath() + "/tmp").c_str(), 1);
    rememberTemporaries();
  }
  ~HostTemporaryTest() override {
    unsetenv("TMPDIR");
    rememberTemporaries();
  }

  testkit::DeviceRoot host_{testkit::DeviceRoot::StayOut};
};

TEST_F(HostTemporaryTest, GoesWithAllThatWasWrittenIntoIt) {
  {
    const HostTemporary temporary;
    temporary.write("cfg0", "a.xml", "<A/>");
    temporary.write("cfg0", "b.xml", "<B/>");
    ASSERT_EQ(host_.list("/tmp").size(), 1U);
    EXPECT_EQ(host_.read("/tmp/" + host_.list("/tmp").front() + "/cfg0/b.xml"), "<B/>");
  }
  EXPECT_TRUE(host_.list("/tmp").empty());
}

TEST_F(HostTemporaryTest, IsForThisUserOnly) {
  const HostTemporary temporary;
  temporary.write("cfg0", "a.xml", "<A/>");
  const fs::path path = host_.hostPath() + "/tmp/" + host_.list("/tmp").front();
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0700));
  EXPECT_EQ(fs::status(path / "cfg0" / "a.xml").permissions(), fs::perms(0600));
}

TEST_F(HostTemporaryTest, TwoAtATimeAreApart) {
  const HostTemporary one;
  const HostTemporary two;
  EXPECT_EQ(host_.list("/tmp").size(), 2U);
}

TEST_F(HostTemporaryTest, FileThatIsThereIsNotOverwritten) {
  const HostTemporary temporary;
  temporary.write("cfg0", "a.xml", "<A/>");
  EXPECT_THROW(temporary.write("cfg0", "a.xml", "<B/>"), Refusal);
}

/// What this process would have left an hour ago if it had been killed.
TEST_F(HostTemporaryTest, WhatAKilledProcessHasLeftIsRemoved) {
  const fs::path directory = host_.hostPath() + "/tmp";
  const auto hourAgo = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (const char* name : {"camcfg-scratch-1-0", "camcfg-mine", "camcfg-scratch-3-0"}) {
    host_.write("/tmp/" + std::string(name) + "/cfg0/a.xml", "<A/>");
    fs::last_write_time(directory / name, hourAgo);
  }
  host_.write("/tmp/camcfg-scratch-2-0/cfg0/a.xml", "<A/>");
  const Descriptor used(open((directory / "camcfg-scratch-3-0").c_str(), O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(flock(used.get(), LOCK_SH), 0);
  { const HostTemporary temporary; }
  EXPECT_THAT(host_.list("/tmp"), testing::UnorderedElementsAre("camcfg-mine", "camcfg-scratch-2-0",
                                                                "camcfg-scratch-3-0"));
}

TEST_F(HostTemporaryTest, BecomesTheRootOfAChildProcess) {
  const HostTemporary temporary;
  temporary.write("cfg0", "a.xml", "<A/>");
  const pid_t child = fork();
  if (child == 0) _exit(temporary.enter().empty() && fs::exists("/cfg0/a.xml") ? 0 : 1);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
}

TEST_F(HostTemporaryTest, OtherDirectoryIsTakenWhereTheChosenOneIsMissing) {
  setenv("TMPDIR", (host_.hostPath() + "/none").c_str(), 1);
  rememberTemporaries();
  EXPECT_NO_THROW(HostTemporary());
}

}  // namespace
}  // namespace camcfg::tool
