#include <chrono>
#include <iterator>
#include <sstream>
#include <thread>

#include "params/all_calls.h"
#include "support/expected_leaks.h"

namespace camcfg::tests {
namespace {

using testing::Each;
using testing::FieldsAre;
using testing::MatchesRegex;
using testing::UnorderedElementsAreArray;
using namespace std::chrono_literals;

std::string timeout(const std::string& path) {
  return "Lock " + path + " timeout, a deadlock may exist!";
}

std::vector<std::string> linesOf(const std::string& output) {
  std::istringstream stream(output);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

class LockedFileTest : public DeviceTest {
 protected:
  LockedFileTest() {
    writeAllFiles(device);
    for (const char* path : {CFG_FILE_BUSINESS, kLanguageFile}) cfgLockFile(path);
  }
};

// Waits 10 seconds.
TEST_F(LockedFileTest, ThreadsInEveryCallFailAfterTenSecondsAndSayWhy) {
  const std::string before = device.read(CFG_FILE_BUSINESS);
  std::vector<const Call*> calls;
  std::vector<testing::Matcher<std::string>> lines;
  std::vector<testing::Matcher<testkit::LogRecord>> records;
  for (const Call& call : kAllCalls) {
    if (call.transactions > 1) continue;  // these wait once for each
    calls.push_back(&call);
    lines.push_back("[Warn][Cfg] " + timeout(call.path));
    if (call.notOpened != nullptr) lines.push_back(MatchesRegex(call.notOpened));
    records.push_back(FieldsAre(4, "[cfgLockFile:88] ", timeout(call.path)));
  }

  std::vector<int> wrongResults(calls.size());
  const std::string output = captureOutput([&] {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < calls.size(); ++i)
      threads.emplace_back([&, i] {
        const ExpectedLeaks abandoned;
        wrongResults[i] = calls[i]->make() - calls[i]->failure;
      });
    for (std::thread& thread : threads) thread.join();
  });

  EXPECT_THAT(wrongResults, Each(0));
  EXPECT_THAT(linesOf(output), UnorderedElementsAreArray(lines));
  EXPECT_THAT(log.records(), UnorderedElementsAreArray(records));
  EXPECT_EQ(device.read(CFG_FILE_BUSINESS), before);
  EXPECT_FALSE(device.exists("/cfg1/business_param.xml"));
}

TEST_F(LockedFileTest, ThreadsAtTheLanguageFileDoNotWaitForTheParameters) {
  cfgUnlockFile(kLanguageFile);
  int result = -2;
  std::thread([&] { result = CFG_LANG_GetString(text("thai"), text("Ok"), outText<0>()); }).join();
  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.records(), testing::IsEmpty());  // it would report a lock that it waited for
}

TEST_F(LockedFileTest, ThreadsThatWaitGoOnWhenTheFileIsReleased) {
  int result = -2;
  std::thread setter([&] { result = CFG_COM_SetIntParam(text("System"), text("Rtsp"), 7); });
  std::this_thread::sleep_for(200ms);
  cfgUnlockFile(CFG_FILE_BUSINESS);
  setter.join();
  EXPECT_EQ(result, 0);
  EXPECT_EQ(CFG_SYSTEM_GetRtspPort(), 7);
  EXPECT_THAT(log.records(), testing::IsEmpty());
}

}  // namespace
}  // namespace camcfg::tests
