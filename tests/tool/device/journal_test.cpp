#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tool/device/journal_device.h"

namespace camcfg::tests {
namespace {

using namespace tool::device;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const char kFinished[] = "finished an interrupted change: import settings.json";
const char kTakenBack[] = "took back an interrupted change: import settings.json";

mode_t modeOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
  return status.st_mode & 0777;
}

std::string refusalOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const tool::Refusal& refusal) {
    return refusal.what();
  }
  return "";
}

TEST_F(JournalTest, DeviceWithoutOneIsLeftAlone) {
  EXPECT_FALSE(hasLeftJournal());
  EXPECT_THAT(finish(), IsEmpty());
  EXPECT_EQ(waitingChange(), std::nullopt);
  EXPECT_FALSE(device.exists(kState));
}

TEST_F(JournalTest, OnlyTheOwnerMayLookIntoIt) {
  open();
  EXPECT_EQ(modeOf(kState), 0700U);
  EXPECT_EQ(modeOf(kJournal), 0600U);
  EXPECT_EQ(modeOf("/cfg1/.camcfg/contents"), 0700U);
  for (const auto& entry : std::filesystem::directory_iterator("/cfg1/.camcfg/contents"))
    EXPECT_EQ(modeOf(entry.path()), 0600U);
}

TEST_F(JournalTest, ChangeInItWaits) {
  open();
  EXPECT_FALSE(device.exists(kNewJournal));
  const auto change = waitingChange();
  ASSERT_TRUE(change);
  EXPECT_EQ(change->number, 1);
  EXPECT_EQ(change->command, "import settings.json");
  ASSERT_EQ(change->files.size(), 2U);
  EXPECT_EQ(change->files[1].path, kPreset);
  EXPECT_EQ(change->files[1].before, kOldPreset);
  EXPECT_EQ(change->files[1].after, kNewPreset);
}

TEST_F(JournalTest, ChangeInItIsFinished) {
  open();
  EXPECT_THAT(finish(), ElementsAre(kFinished));
  EXPECT_TRUE(isNew());
  EXPECT_TRUE(isIdle());
  EXPECT_EQ(history().size(), 1U);
  EXPECT_THAT(finish(), IsEmpty());
}

TEST_F(JournalTest, FilesThatAreCutOffAreFinished) {
  const std::string cut[] = {"", "<Sys", std::string(40, '\0'), kOldBusiness, kNewBusiness};
  for (const std::string& business : cut) {
    putBack();
    open();
    device.write(kBusiness, business);
    EXPECT_THAT(finish(), ElementsAre(kFinished)) << business;
    EXPECT_TRUE(isNew()) << business;
  }
  putBack();
  open();
  device.remove(kBusiness);
  device.remove(kPresetBackup);
  EXPECT_THAT(finish(), ElementsAre(kFinished));
  EXPECT_TRUE(isNew());
}

TEST_F(JournalTest, BeginningThatStillParsesIsCutOff) {
  const std::string before = "<A/>\n<B/>\n";
  const std::string after = "<C/>\n<D/>\n";
  for (const char* cut : {"<A/>\n", "<C/>\n"}) {
    giveBoth(before, kOldPreset);
    openJournal({{kBusiness, before, after}});
    device.write(kBusiness, cut);
    EXPECT_THAT(finish(), ElementsAre(kFinished)) << cut;
    EXPECT_TRUE(holds({kBusiness, after}));
  }
}

TEST_F(JournalTest, ChangeThatIsCompleteIsOnlyClosed) {
  open();
  giveBoth(kNewBusiness, kNewPreset);
  EXPECT_EQ(waitingChange(), std::nullopt);
  EXPECT_THAT(finish(), IsEmpty());
  EXPECT_TRUE(isIdle());
  EXPECT_EQ(history().size(), 1U);
}

TEST_F(JournalTest, TurnedChangeIsTakenBackAndLeavesNoTrace) {
  open();
  saveContents({{kBusiness, kNewBusiness}});
  device.write(kPreset, "<Pre");
  turnJournal();
  EXPECT_TRUE(waitingChange());
  EXPECT_THAT(finish(), ElementsAre(kTakenBack));
  EXPECT_TRUE(isOld());
  EXPECT_TRUE(isIdle());
  EXPECT_THAT(history(), IsEmpty());
  EXPECT_THAT(device.list("/cfg1/.camcfg/contents"), IsEmpty());
}

TEST_F(JournalTest, TurnedChangeThatIsTakenBackIsClosed) {
  open();
  turnJournal();
  closeJournal();
  EXPECT_TRUE(isIdle());
  EXPECT_THAT(history(), IsEmpty());
}

TEST_F(JournalTest, NulThatAFileHeldIsNotWrittenBack) {
  const std::string before = std::string(kOldBusiness) + '\0';
  device.write(kBusiness, before);
  openJournal({{kBusiness, before, kNewBusiness}});
  saveContents({{kBusiness, kNewBusiness}});
  turnJournal();
  EXPECT_THAT(finish(), ElementsAre(kTakenBack));
  EXPECT_TRUE(holds({kBusiness, kOldBusiness}));
}

TEST_F(JournalTest, AnotherOneTakesItsPlace) {
  open();
  openJournal({{kBusiness, kOldBusiness, kOthers}});
  EXPECT_EQ(waitingChange()->files.size(), 1U);
  EXPECT_THAT(finish(), ElementsAre(kFinished));
  EXPECT_TRUE(hold(kOthers, kOldPreset));
}

TEST_F(JournalTest, WhatAnEarlierAttemptSavedBelongsToTheChange) {
  for (const bool isTurned : {false, true})
    for (const std::string& left : {std::string(kNewBusiness), std::string(kNewBusiness, 20)}) {
      putBack();
      open();
      openJournal({{kBusiness, kOldBusiness, "<Second/>"}, {kPreset, kOldPreset, kNewPreset}});
      openJournal({{kBusiness, kOldBusiness, kOthers}, {kPreset, kOldPreset, kNewPreset}});
      device.write(kBusiness, left);
      if (isTurned) turnJournal();
      EXPECT_THAT(finish(), ElementsAre(isTurned ? kTakenBack : kFinished));
      EXPECT_TRUE(isTurned ? isOld() : hold(kOthers, kNewPreset));
    }
}

TEST_F(JournalTest, CompleteOneThatHasNotItsNameYetCounts) {
  open();
  std::filesystem::rename(kJournal, kNewJournal);
  EXPECT_TRUE(waitingChange());
  EXPECT_THAT(finish(), ElementsAre(kFinished));
  EXPECT_TRUE(isNew());
}

TEST_F(JournalTest, WhatCannotBePromisedIsRefused) {
  for (const char* path : {"/cfg0/../x.xml", "/cfg1/x.xml", "/x.xml", "x.xml", "/cfg0/a/b.xml",
                           "/cfg0/x.txt", "/cfg0/\xff.xml", ""})
    EXPECT_THAT(refusalOf([&] {
                  openJournal({{path, "", "<A/>"}});
                }),
                HasSubstr("no main copy that can be saved"));
  EXPECT_THAT(refusalOf([&] {
                openJournal({{"/cfg0/" + std::string(100, 'x') + ".xml", "", ""}});
              }),
              HasSubstr("no main copy that can be saved"));
  EXPECT_EQ(refusalOf([] {
              openJournal({{kBusiness, "", std::string(1, '\0')}});
            }),
            "/cfg1/.camcfg/journal cannot be written: /cfg0/business_param.xml is to hold a NUL "
            "byte");
  EXPECT_FALSE(device.exists(kState));
}

TEST_F(JournalTest, UnusableDirectoryIsRefusedAndReported) {
  device.makeDirectory("/elsewhere");
  ASSERT_EQ(symlink("/elsewhere", kState), 0);
  const std::string why = "/cfg1/.camcfg is not a directory; move it away";
  EXPECT_EQ(refusalOf(open), why);
  EXPECT_THAT(finish(), ElementsAre(why));
  EXPECT_EQ(waitingChange(), std::nullopt);
  EXPECT_THAT(device.list("/elsewhere"), IsEmpty());
  device.remove(kState);
  device.write(kState, "");
  EXPECT_EQ(refusalOf(open), why);
}

TEST_F(JournalTest, DirectoryOfSomebodyElseIsNotUsed) {
  open();
  if (chown(kState, 4711, 4711) != 0) GTEST_SKIP() << "only root can give files away";
  const std::string why = "/cfg1/.camcfg belongs to another user; move it away";
  EXPECT_EQ(refusalOf(open), why);
  EXPECT_THAT(finish(), ElementsAre(why));
  EXPECT_TRUE(isOld());
}

TEST_F(JournalTest, MissingBackupDirectoryIsRefused) {
  device.remove("/cfg1");
  EXPECT_EQ(refusalOf(open), "/cfg1/.camcfg cannot be used: No such file or directory");
}

}  // namespace
}  // namespace camcfg::tests
