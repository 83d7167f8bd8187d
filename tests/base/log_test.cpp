#include "base/log.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <functional>
#include <sstream>
#include <thread>

#include "support/device_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;

constexpr Place kPlace{"CFG_SaveFile", 42};

class LogTest : public testing::Test {
 protected:
  testkit::LogRecorder recorder;
};

TEST_F(LogTest, PlatformsLoggerGetsLevelPrefixAndArguments) {
  log(Level::Error, kPlace, "Load file %s fail\n", "x.xml");
  log(Level::Warning, kPlace, "no argument");
  log(Level::Info, kPlace, "%d of %d", 1, 2);
  logError({"other", 7}, "100%%\n");
  EXPECT_THAT(recorder.records(),
              ElementsAre(FieldsAre(3, "[CFG_SaveFile:42] ", "Load file x.xml fail\n"),
                          FieldsAre(4, "[CFG_SaveFile:42] ", "no argument"),
                          FieldsAre(6, "[CFG_SaveFile:42] ", "1 of 2"),
                          FieldsAre(3, "[other:7] ", "100%\n")));
}

TEST_F(LogTest, PrefixIsCutTo255Characters) {
  const std::string function(300, 'f');
  log(Level::Info, {function.c_str(), 1}, "text");
  EXPECT_THAT(recorder.records(), ElementsAre(FieldsAre(6, "[" + std::string(254, 'f'), "text")));
}

TEST_F(LogTest, PlatformsLoggerIsTheOnlyPlaceARecordGoesTo) {
  EXPECT_EQ(captureOutput([] { logError(kPlace, "text\n"); }), "");
}

// All that is written on standard error meanwhile.
std::string captureErrors(const std::function<void()>& run) {
  const int before = dup(STDERR_FILENO);
  const int file = memfd_create("errors", 0);
  // Without this, threads that write to such a file at once write to the same place.
  fcntl(file, F_SETFL, O_APPEND);
  dup2(file, STDERR_FILENO);
  run();
  dup2(before, STDERR_FILENO);
  std::string text(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
  EXPECT_EQ(pread(file, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
  close(file);
  close(before);
  return text;
}

TEST(LogToStandardErrorTest, RecordIsALineThatBeginsWithItsLevel) {
  EXPECT_EQ(captureErrors([] {
              logToStandardError(Level::Error, "[f:1] ", "Load file %s fail\n", "x.xml");
              logToStandardError(Level::Warning, "[f:2] ", "without %s", "a line break");
              logToStandardError(Level::Info, "[f:3] ", "");
            }),
            "<3>[f:1] Load file x.xml fail\n"
            "<4>[f:2] without a line break\n"
            "<6>[f:3] \n");
}

TEST(LogToStandardErrorTest, WhatComesBeforeAnEmptyTextIsNotLookedAt) {
  static constexpr char kLineBreak[] = "\n";
  EXPECT_EQ(captureErrors([] { logToStandardError(Level::Info, "[f:3] ", kLineBreak + 1); }),
            "<6>[f:3] \n");
}

TEST(LogToStandardErrorTest, RecordOfFiveHundredAndElevenBytesBeforeItsArgumentsIsWhole) {
  const std::string format = std::string(501, 'x') + "\n";
  EXPECT_EQ(captureErrors([&] { logToStandardError(Level::Error, "[f:1] ", format.c_str()); }),
            "<3>[f:1] " + format);
}

TEST(LogToStandardErrorTest, StandardOutputStaysClean) {
  EXPECT_EQ(captureOutput([] {
              captureErrors([] { logToStandardError(Level::Error, "[f:1] ", "text\n"); });
            }),
            "");
}

TEST(LogToStandardErrorTest, ThreadsWriteWholeLines) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 50;
  const std::string errors = captureErrors([] {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
      threads.emplace_back([] {
        for (int round = 0; round < kRounds; ++round)
          logToStandardError(Level::Warning, "[thread:1] ", "%s and %s", "one", "two");
      });
    for (std::thread& thread : threads) thread.join();
  });
  std::istringstream lines(errors);
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count)
    EXPECT_EQ(line, "<4>[thread:1] one and two");
  EXPECT_EQ(count, kThreads * kRounds);
}

}  // namespace
}  // namespace camcfg::tests
