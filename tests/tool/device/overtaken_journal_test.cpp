#include <unistd.h>

#include "tool/device/journal_device.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class OvertakenJournalTest : public JournalTest {};

TEST_F(OvertakenJournalTest, WhatAnotherProgramSavedSinceStays) {
  open();
  saveContents({{kBusiness, kNewBusiness}});
  saveContents({{kPreset, kOthers}});
  EXPECT_EQ(waitingChange(), std::nullopt);
  EXPECT_TRUE(hasLeftJournal());
  EXPECT_THAT(finish(),
              ElementsAre("an interrupted change was not finished: import settings.json: "
                          "/cfg0/preset_cfg.xml holds something else by now; the previous "
                          "contents of /cfg0/business_param.xml were restored; the journal was "
                          "put aside as /cfg1/.camcfg/aside-1"));
  EXPECT_TRUE(hold(kOldBusiness, kOthers));
  EXPECT_TRUE(isIdle());
  EXPECT_FALSE(hasLeftJournal());
  EXPECT_THAT(finish(), IsEmpty());
}

TEST_F(OvertakenJournalTest, WhatAnotherProgramSavedSinceStaysInATurnedChangeToo) {
  open();
  device.write(kBusiness, "<Sys");
  saveContents({{kPreset, kOthers}});
  turnJournal();
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("was not finished")));
  EXPECT_TRUE(hold(kOldBusiness, kOthers));
}

TEST_F(OvertakenJournalTest, BackupOfAFileThatIsAsBeforeIsTakenBackToo) {
  open();
  device.write(kBusinessBackup, kNewBusiness);
  saveContents({{kPreset, kOthers}});
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("contents of /cfg0/business_param.xml were")));
  EXPECT_TRUE(hold(kOldBusiness, kOthers));
}

// A power cut may lose the emptying of a file and keep a part of what was written after it.
TEST_F(OvertakenJournalTest, FileOfOldAndNewBytesIsTornEvenIfItLoads) {
  const std::string woven = with(kOldPreset, "One", "Twe");
  open();
  device.write(kPreset, woven);
  EXPECT_THAT(finish(), ElementsAre("finished an interrupted change: import settings.json"));
  EXPECT_TRUE(isNew());
}

TEST_F(OvertakenJournalTest, ProgramThatSavedSuchBytesSavedBothCopies) {
  const std::string woven = with(kOldPreset, "One", "Twe");
  open();
  saveContents({{kPreset, woven}});
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("/cfg0/preset_cfg.xml holds something else")));
  EXPECT_TRUE(hold(kOldBusiness, woven));
}

TEST_F(OvertakenJournalTest, OneThatNoFileHasToDoWithIsOnlyPutAside) {
  open();
  giveBoth(kOthers, kOthers);
  EXPECT_THAT(finish(),
              ElementsAre("an interrupted change was not finished: import settings.json: "
                          "/cfg0/business_param.xml, /cfg0/preset_cfg.xml hold something else by "
                          "now; the journal was put aside as /cfg1/.camcfg/aside-1"));
  EXPECT_TRUE(hold(kOthers, kOthers));
}

TEST_F(OvertakenJournalTest, OnlyAFewArePutAside) {
  for (int i = 0; i < 5; ++i) {
    device.write(kJournal, "x");
    EXPECT_THAT(finish(), ElementsAre(HasSubstr("aside-" + std::to_string(i + 1))));
  }
  EXPECT_THAT(device.list(kState), ElementsAre("aside-3", "aside-4", "aside-5"));
}

TEST_F(OvertakenJournalTest, MainCopyThatIsALinkIsNotWrittenThrough) {
  open();
  device.remove(kBusiness);
  device.write("/other.xml", "<Oth");
  ASSERT_EQ(symlink("/other.xml", kBusiness), 0);
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("was not finished")));
  EXPECT_EQ(device.read("/other.xml"), "<Oth");
}

}  // namespace
}  // namespace camcfg::tests
