#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tool/commands/every_command.h"

namespace camcfg::tests {
namespace {

using tool::cli::Command;

constexpr long kMostKiB = 8 * 1024;

class MemoryTest : public EveryCommandTest {
 protected:
  // The most that a run has resident at any time, with its child processes each by itself.
  // @param endless  it is ended once it has begun
  long peakOf(Words line, bool endless = false) const {
    line.insert(line.begin(), {"--root", device.hostPath()});
    const pid_t child = fork();
    if (child == 0) {
      const int nowhere = open("/dev/null", O_RDWR);
      for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
      if (endless) alarm(1);
      becomeCamcfg(line);
    }
    int status = 0;
    rusage used{};
    EXPECT_EQ(wait4(child, &status, 0, &used), child);
    EXPECT_TRUE(endless ? WIFSIGNALED(status) : WIFEXITED(status)) << lineOf(line);
    return used.ru_maxrss;
  }
};

TEST_F(MemoryTest, NoCommandTakesMoreThanItMay) {
  for (const Command* command : commands()) {
    renewFor(*command);
    EXPECT_LE(peakOf(lineFor(*command), command->name == std::string("watch")), kMostKiB)
        << command->name;
  }
}

TEST_F(MemoryTest, WhatIsTooMuchIsNoticed) {
  std::string section = "<Large>\n";
  for (int i = 0; i < 50'000; ++i)
    section += "    <P" + std::to_string(i) + " Cur=\"1\" Def=\"1\" Min=\"0\" Max=\"9\"/>\n";
  device.write(kBusiness, device.read(kBusiness) + section + "</Large>\n");
  EXPECT_GT(peakOf({"list"}), kMostKiB);
}

}  // namespace
}  // namespace camcfg::tests
