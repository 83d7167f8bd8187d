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

TEST_F(JournalTest, OneThatIsCutOffAnywhereIsDropped) {
  open();
  const std::string text = device.read(kJournal);
  device.remove(kJournal);
  for (std::size_t size = 0; size < 2 * text.size(); ++size) {
    // With zeros where its end was to be, and without.
    std::string cut = text.substr(0, size / 2);
    if (size % 2 != 0) cut.resize(text.size());
    device.write(kNewJournal, cut);
    ASSERT_FALSE(waitingChange()) << size;
    ASSERT_THAT(finish(), IsEmpty()) << size;
    ASSERT_TRUE(isIdle() && isOld()) << size;
  }
}

TEST_F(JournalTest, CutOffOneUnderItsNameIsDamaged) {
  open();
  const std::string text = device.read(kJournal);
  for (std::size_t size = 0; size < text.size(); size += 7) {
    device.remove(kAside);
    device.write(kJournal, text.substr(0, size));
    EXPECT_THAT(finish(), ElementsAre(HasSubstr("journal is damaged"))) << size;
    EXPECT_TRUE(isIdle() && isOld()) << size;
  }
}

TEST_F(JournalTest, FlippedBitIsNeverApplied) {
  open();
  const std::string text = device.read(kJournal);
  for (std::size_t at = 0; at < 2 * text.size(); ++at) {
    const bool isNamed = at < text.size();
    std::string flipped = text;
    flipped[at % text.size()] ^= static_cast<char>(1 << at % 7);
    device.remove(kJournal);
    device.write(isNamed ? kJournal : kNewJournal, flipped);
    ASSERT_FALSE(waitingChange()) << at;
    const Lines lines = finish();
    ASSERT_TRUE(isIdle() && isOld()) << at;
    // One that does not have its name yet may look as if it were cut off.
    ASSERT_EQ(lines.size(), isNamed ? 1U : lines.size()) << at;
  }
}

TEST_F(JournalTest, DamagedContentsAreNeverApplied) {
  open();
  const std::string text = device.read(kJournal);
  for (const std::string& name : device.list("/cfg1/.camcfg/contents")) {
    const std::string path = "/cfg1/.camcfg/contents/" + name;
    const std::string bytes = device.read(path);
    device.write(kJournal, text);
    device.write(path, bytes + " ");
    EXPECT_EQ(waitingChange(), std::nullopt);
    EXPECT_THAT(finish(), ElementsAre(HasSubstr("journal is damaged: contents are missing")));
    device.remove(path);
    device.write(kNewJournal, text);
    EXPECT_THAT(finish(), IsEmpty());
    EXPECT_TRUE(isOld() && isIdle());
    device.write(path, bytes);
  }
}

TEST_F(JournalTest, DamagedContentsAreWrittenAgain) {
  open();
  for (const std::string& name : device.list("/cfg1/.camcfg/contents"))
    device.write("/cfg1/.camcfg/contents/" + name, "");
  open();
  EXPECT_THAT(finish(), ElementsAre(kFinished));
}

TEST_F(JournalTest, WhatAnotherProgramSavedSinceStays) {
  open();
  saveContents({{kBusiness, kNewBusiness}});
  saveContents({{kPreset, kOthers}});
  EXPECT_EQ(waitingChange(), std::nullopt);
  EXPECT_THAT(finish(),
              ElementsAre("an interrupted change was not finished: import settings.json: "
                          "/cfg0/preset_cfg.xml holds something else by now; the previous "
                          "contents of /cfg0/business_param.xml were restored; the journal was "
                          "put aside as /cfg1/.camcfg/aside-1"));
  EXPECT_TRUE(hold(kOldBusiness, kOthers));
  EXPECT_TRUE(isIdle());
  EXPECT_THAT(finish(), IsEmpty());
}

TEST_F(JournalTest, WhatAnotherProgramSavedSinceStaysInATurnedChangeToo) {
  open();
  device.write(kBusiness, "<Sys");
  saveContents({{kPreset, kOthers}});
  turnJournal();
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("was not finished")));
  EXPECT_TRUE(hold(kOldBusiness, kOthers));
}

TEST_F(JournalTest, BackupOfAFileThatIsAsBeforeIsTakenBackToo) {
  open();
  device.write(kBusinessBackup, kNewBusiness);
  saveContents({{kPreset, kOthers}});
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("contents of /cfg0/business_param.xml were")));
  EXPECT_TRUE(hold(kOldBusiness, kOthers));
}

TEST_F(JournalTest, OneThatNoFileHasToDoWithIsOnlyPutAside) {
  open();
  giveBoth(kOthers, kOthers);
  EXPECT_THAT(finish(),
              ElementsAre("an interrupted change was not finished: import settings.json: "
                          "/cfg0/business_param.xml, /cfg0/preset_cfg.xml hold something else by "
                          "now; the journal was put aside as /cfg1/.camcfg/aside-1"));
  EXPECT_TRUE(hold(kOthers, kOthers));
}

TEST_F(JournalTest, OnlyAFewArePutAside) {
  for (int i = 0; i < 5; ++i) {
    device.write(kJournal, "x");
    EXPECT_THAT(finish(), ElementsAre(HasSubstr("aside-" + std::to_string(i + 1))));
  }
  EXPECT_THAT(device.list(kState), ElementsAre("aside-3", "aside-4", "aside-5"));
}

TEST_F(JournalTest, MainCopyThatIsALinkIsNotWrittenThrough) {
  open();
  device.remove(kBusiness);
  device.write("/other.xml", "<Oth");
  ASSERT_EQ(symlink("/other.xml", kBusiness), 0);
  EXPECT_THAT(finish(), ElementsAre(HasSubstr("was not finished")));
  EXPECT_EQ(device.read("/other.xml"), "<Oth");
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
