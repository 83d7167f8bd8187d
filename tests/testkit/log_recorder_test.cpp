#include "camcfg/testkit/log_recorder.h"

#include <gmock/gmock.h>

#include <thread>

extern "C" void UTIL_LOG_Print(int level, char* prefix, char* format, ...);

namespace camcfg::testkit {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using testing::SizeIs;

template <typename... Args>
void print(int level, const char* prefix, const char* format, Args... args) {
  UTIL_LOG_Print(level, const_cast<char*>(prefix), const_cast<char*>(format), args...);
}

TEST(LogRecorderTest, KeepsLevelPrefixAndFormattedTextInOrder) {
  LogRecorder log;
  print(3, "[f:1] ", "Load file %s fail\n", "x.xml");
  print(6, "[g:2] ", "%d,%d", 1, -2);
  print(4, "", "");
  EXPECT_THAT(log.records(), ElementsAre(FieldsAre(3, "[f:1] ", "Load file x.xml fail\n"),
                                         FieldsAre(6, "[g:2] ", "1,-2"), FieldsAre(4, "", "")));
  EXPECT_THAT(log.texts(), ElementsAre("Load file x.xml fail\n", "1,-2", ""));
}

TEST(LogRecorderTest, KeepsLongTextsWhole) {
  LogRecorder log;
  const std::string text(100000, 'x');
  print(3, "[f:1] ", "%s", text.c_str());
  EXPECT_THAT(log.texts(), ElementsAre(text));
}

TEST(LogRecorderTest, ForgetsWhenAskedTo) {
  LogRecorder log;
  print(3, "", "before");
  log.clear();
  EXPECT_THAT(log.records(), IsEmpty());
  print(3, "", "after");
  EXPECT_THAT(log.texts(), ElementsAre("after"));
}

TEST(LogRecorderTest, RecordsOnlyWhileItLives) {
  print(3, "", "before");
  {
    LogRecorder first;
    print(3, "", "meanwhile");
    EXPECT_THAT(first.texts(), ElementsAre("meanwhile"));
  }
  print(3, "", "after");
  LogRecorder second;
  EXPECT_THAT(second.records(), IsEmpty());
}

TEST(LogRecorderTest, PrefixNamesFunctionAndLine) {
  const LogRecord record{3, "[CFG_GetDocByFileName:324] ", ""};
  EXPECT_EQ(record.function(), "CFG_GetDocByFileName");
  EXPECT_EQ(record.line(), 324);
}

TEST(LogRecorderTest, OtherPrefixesNameNothing) {
  for (const char* prefix : {"", "[", "text", "[no line] ", "f:1] "})
    EXPECT_EQ((LogRecord{3, prefix, ""}.function()), "") << prefix;
  for (const char* prefix : {"", "[", "[f:", "[f] ", "[f:x] "})
    EXPECT_EQ((LogRecord{3, prefix, ""}.line()), 0) << prefix;
}

TEST(LogRecorderTest, ThreadsAreAllRecorded) {
  constexpr int kThreads = 8;
  constexpr int kRounds = 100;
  LogRecorder log;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([] {
      for (int round = 0; round < kRounds; ++round) print(4, "[f:1] ", "%s", "text");
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(log.records(), SizeIs(kThreads * kRounds));
  EXPECT_THAT(log.records(), Each(FieldsAre(4, "[f:1] ", "text")));
}

}  // namespace
}  // namespace camcfg::testkit
