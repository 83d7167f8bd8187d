#include "device/history.h"

#include <ctime>

#include "tool/device/journal_device.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;
using testing::ElementsAre;
using testing::IsEmpty;

class HistoryTest : public JournalTest {
 protected:
  static std::string port(int number) {
    return "<System>\n    <Rtsp Cur=\"" + std::to_string(number) + "\"/>\n</System>\n";
  }

  void completeMany(int count) const {
    for (int i = 0; i < count; ++i) complete(port(1000 + i));
  }

  static std::vector<int> numbers() {
    std::vector<int> found;
    for (const RecordedChange& change : history()) found.push_back(change.number);
    return found;
  }

  std::size_t contents() const { return device.list("/cfg1/.camcfg/contents").size(); }
};

TEST_F(HistoryTest, DeviceWithoutOneHasNoChanges) {
  EXPECT_THAT(history(), IsEmpty());
  EXPECT_EQ(changeOfNumber(1), std::nullopt);
  EXPECT_EQ(historyLimit(), 8);
  EXPECT_FALSE(forgetOldest());
  EXPECT_FALSE(device.exists(kState));
}

TEST_F(HistoryTest, CompleteChangeIsKeptWithAllThatIsToKnow) {
  const std::time_t before = std::time(nullptr);
  complete(kNewBusiness);
  ASSERT_THAT(numbers(), ElementsAre(1));
  const RecordedChange listed = history()[0];
  EXPECT_EQ(listed.command, "import settings.json");
  EXPECT_EQ(listed.caller, tool::caller().name);
  EXPECT_GE(listed.time, before);
  EXPECT_LE(listed.time, std::time(nullptr));
  ASSERT_EQ(listed.files.size(), 1U);
  EXPECT_EQ(listed.files[0].path, kBusiness);
  EXPECT_EQ(listed.files[0].before, "");
  const auto change = changeOfNumber(1);
  ASSERT_TRUE(change);
  EXPECT_EQ(change->files[0].before, kOldBusiness);
  EXPECT_EQ(change->files[0].after, kNewBusiness);
  EXPECT_EQ(changeOfNumber(2), std::nullopt);
  EXPECT_EQ(changeOfNumber(-1), std::nullopt);
}

TEST_F(HistoryTest, LastEightAreKeptAndNumbersGoOn) {
  completeMany(11);
  EXPECT_THAT(numbers(), ElementsAre(4, 5, 6, 7, 8, 9, 10, 11));
  EXPECT_EQ(changeOfNumber(4)->files[0].before, port(1002));
  EXPECT_EQ(contents(), 9U);
}

TEST_F(HistoryTest, EqualContentsAreKeptOnce) {
  for (int i = 0; i < 3; ++i) {
    complete(kNewBusiness);
    complete(kOldBusiness);
  }
  EXPECT_EQ(numbers().size(), 6U);
  EXPECT_EQ(contents(), 2U);
}

TEST_F(HistoryTest, LimitIsSetAndHolds) {
  completeMany(5);
  setHistoryLimit(2);
  EXPECT_EQ(historyLimit(), 2);
  EXPECT_THAT(numbers(), ElementsAre(4, 5));
  EXPECT_EQ(contents(), 3U);
  completeMany(1);
  EXPECT_THAT(numbers(), ElementsAre(5, 6));
  setHistoryLimit(100);
  completeMany(20);
  EXPECT_EQ(numbers().size(), 22U);
}

TEST_F(HistoryTest, LimitOfNoneKeepsNothingButTheNumber) {
  completeMany(3);
  setHistoryLimit(0);
  EXPECT_THAT(numbers(), IsEmpty());
  EXPECT_EQ(contents(), 0U);
  EXPECT_THAT(device.list("/cfg1/.camcfg/changes"), ElementsAre("3"));
  completeMany(1);
  EXPECT_EQ(contents(), 0U);
  setHistoryLimit(8);
  completeMany(1);
  EXPECT_THAT(numbers(), ElementsAre(5));
  EXPECT_THAT(device.list("/cfg1/.camcfg/changes"), ElementsAre("5"));
}

TEST_F(HistoryTest, DamagedLimitIsTheUsualOne) {
  completeMany(1);
  for (const char* text : {"", "x", "-1", "7 ", "99999999999999999999"}) {
    device.write("/cfg1/.camcfg/keep", text);
    EXPECT_EQ(historyLimit(), 8) << text;
  }
  setHistoryLimit(-5);
  EXPECT_EQ(historyLimit(), 0);
}

TEST_F(HistoryTest, AtMostAMegabyteIsKept) {
  const auto big = [](char c) { return "<A v=\"" + std::string(250000, c) + "\"/>\n"; };
  for (char c = 'a'; c < 'i'; ++c) complete(big(c));
  EXPECT_THAT(numbers(), ElementsAre(6, 7, 8));
  EXPECT_EQ(contents(), 4U);
  complete("<A v=\"" + std::string(2000000, 'x') + "\"/>\n");
  EXPECT_THAT(numbers(), IsEmpty());
  complete(kOldBusiness);
  complete(kNewBusiness);
  EXPECT_THAT(numbers(), ElementsAre(11));
}

TEST_F(HistoryTest, OldestIsForgottenFirst) {
  completeMany(3);
  EXPECT_TRUE(forgetOldest());
  EXPECT_THAT(numbers(), ElementsAre(2, 3));
  EXPECT_TRUE(forgetOldest());
  EXPECT_TRUE(forgetOldest());
  EXPECT_FALSE(forgetOldest());
  EXPECT_EQ(contents(), 0U);
  completeMany(1);
  EXPECT_THAT(numbers(), ElementsAre(4));
}

TEST_F(HistoryTest, WhatWasPutAsideIsForgottenLast) {
  completeMany(1);
  device.write(kJournal, "x");
  EXPECT_EQ(finish().size(), 1U);
  EXPECT_TRUE(forgetOldest());
  EXPECT_TRUE(device.exists(kAside));
  EXPECT_TRUE(forgetOldest());
  EXPECT_FALSE(device.exists(kAside));
}

TEST_F(HistoryTest, ContentsOfTheJournalAreNeverDropped) {
  completeMany(2);
  openJournal({{kBusiness, device.read(kBusiness), kNewBusiness}});
  while (forgetOldest()) {
  }
  setHistoryLimit(0);
  EXPECT_TRUE(waitingChange());
  EXPECT_EQ(finish().size(), 1U);
  EXPECT_TRUE(holds({kBusiness, kNewBusiness}));
}

TEST_F(HistoryTest, ContentsOfAJournalPutAsideAreKept) {
  open();
  giveBoth(kOthers, kOthers);
  EXPECT_EQ(finish().size(), 1U);
  completeMany(1);
  EXPECT_EQ(contents(), 6U);
}

TEST_F(HistoryTest, DamagedChangeIsPassedOver) {
  completeMany(3);
  device.write("/cfg1/.camcfg/changes/2", "x");
  device.write("/cfg1/.camcfg/changes/03", device.read("/cfg1/.camcfg/changes/3"));
  device.write("/cfg1/.camcfg/changes/7", device.read("/cfg1/.camcfg/changes/3"));
  EXPECT_THAT(numbers(), ElementsAre(1, 3));
  EXPECT_EQ(changeOfNumber(2), std::nullopt);
  EXPECT_EQ(changeOfNumber(7), std::nullopt);
  completeMany(1);
  EXPECT_THAT(numbers(), ElementsAre(1, 3, 8));
}

TEST_F(HistoryTest, HistoryThatCannotBeKeptIsNoFault) {
  open();
  device.remove("/cfg1/.camcfg/changes");
  device.write("/cfg1/.camcfg/changes", "");
  closeJournal();
  EXPECT_TRUE(isIdle());
  EXPECT_THAT(history(), IsEmpty());
}

TEST_F(HistoryTest, NumbersStopBeforeTheyOverflow) {
  completeMany(1);
  device.write("/cfg1/.camcfg/changes/2147483647", "");
  completeMany(2);
  EXPECT_THAT(numbers(), ElementsAre(1, 2147483647));
}

}  // namespace
}  // namespace camcfg::tests
