#include "store/verify_test.h"

#include <dirent.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// --- counting ---

class CountTest : public DeviceTest {
 protected:
  /// The count, or the message when there is none; a count that is not set must stay as it was.
  std::string count(const char* directory) {
    int found = 77;
    int result = -2;
    const std::string output =
        captureOutput([&] { result = cfgQueryFileNum(text(directory), &found); });
    EXPECT_THAT(log.records(), IsEmpty());
    if (result == 0) return std::to_string(found) + output;
    EXPECT_EQ(result, -1);
    EXPECT_EQ(found, 77);
    return output;
  }
};

TEST_F(CountTest, EmptyDirectoryHoldsNoFile) {
  EXPECT_EQ(count("/cfg0"), "0");
}

TEST_F(CountTest, EveryRegularFileCountsWhateverItsName) {
  for (const char* name : {"a.xml", "b.txt", "no_ending", ".hidden", "with space", "c.xml~"})
    device.write(std::string("/cfg0/") + name, "");
  EXPECT_EQ(count("/cfg0"), "6");
  EXPECT_EQ(count("/cfg0/"), "6");
}

TEST_F(CountTest, DirectoriesLinksAndOthersDoNotCount) {
  device.write("/cfg0/counted.xml", "<A/>");
  device.write("/cfg0/directory.xml/inside.xml", "<A/>");
  ASSERT_EQ(symlink("/cfg0/counted.xml", "/cfg0/link.xml"), 0);
  ASSERT_EQ(symlink("nowhere", "/cfg0/dangling.xml"), 0);
  ASSERT_EQ(mkfifo("/cfg0/fifo.xml", 0600), 0);
  EXPECT_EQ(count("/cfg0"), "1");
}

TEST_F(CountTest, DirectoryThatCannotBeOpenedIsReportedAndTheCountLeftAlone) {
  device.write("/cfg0/file", "");
  EXPECT_EQ(count("/nowhere"), "File /nowhere didn't exist\n");
  EXPECT_EQ(count("/cfg0/file"), "File /cfg0/file didn't exist\n");
  EXPECT_EQ(count(""), "File  didn't exist\n");
}

TEST_F(CountTest, NullArgumentsAreRefused) {
  int untouched = 77;
  int result = 0;
  EXPECT_EQ(captureOutput([&] { result = cfgQueryFileNum(nullptr, &untouched); }),
            "File (null) didn't exist\n");
  EXPECT_EQ(result, -1);
  EXPECT_EQ(untouched, 77);
  EXPECT_EQ(cfgQueryFileNum(text("/cfg0"), nullptr), -1);
}

// --- which names are checked ---

TEST_F(VerifyTest, WithoutAnyFileThereIsNothingToVerify) {
  expectVerified(-1, "", {counts(0, 0, 0), error("All File didn't exist\n")});
}

TEST_F(VerifyTest, WithoutAnyDirectoryThereIsNothingToVerify) {
  device.remove("/app");
  device.remove(kMain);
  device.remove(kBackup);
  expectVerified(-1,
                 "File /app/resource/defcfg didn't exist\n"
                 "File /cfg0 didn't exist\n"
                 "File /cfg1 didn't exist\n",
                 {counts(0, 0, 0), error("All File didn't exist\n")});
  EXPECT_THAT(device.list("/"), IsEmpty());
}

TEST_F(VerifyTest, WhatIsNoRegularFileIsNothingToVerify) {
  device.write("/elsewhere.xml", "<A/>");
  for (const char* directory : {kDefault, kMain, kBackup}) {
    device.makeDirectory(path(directory, "nested.xml"));
    ASSERT_EQ(symlink("/elsewhere.xml", path(directory, "link.xml").c_str()), 0);
  }
  expectVerified(-1, "", {counts(0, 0, 0), error("All File didn't exist\n")});
}

TEST_F(VerifyTest, IntactMainCopiesAreLoadedOnceAndLeftAlone) {
  writeGood(kMain);
  expectVerified(0, "file /cfg0/x.xml \n", {counts(0, 1, 0)});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kMain));
  EXPECT_THAT(device.list(kBackup), IsEmpty());

  writeGood(kDefault);
  writeGood(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n", {counts(1, 1, 1)});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kMain));
  EXPECT_EQ(device.read("/cfg1/x.xml"), good(kBackup));
}

TEST_F(VerifyTest, NamesOfTheDefaultDirectoryAreCheckedWheneverItHoldsAFile) {
  writeGood(kDefault);
  writeGood(kMain);
  writeBroken(kMain, "only_main.xml");
  writeGood(kBackup, "only_main.xml");
  writeGood(kBackup, "only_backup.xml");
  expectVerified(0, "file /cfg0/x.xml \n", {counts(1, 2, 2)});
  EXPECT_EQ(device.read("/cfg0/only_main.xml"), broken(kMain));
  EXPECT_FALSE(device.exists("/cfg0/only_backup.xml"));
}

TEST_F(VerifyTest, NamesOfTheMainDirectoryAreCheckedWhenThereIsNoDefault) {
  device.remove("/app");
  writeBroken(kMain);
  writeGood(kBackup);
  writeGood(kBackup, "only_backup.xml");
  expectVerified(0, "File /app/resource/defcfg didn't exist\nfile /cfg0/x.xml \n",
                 {counts(0, 1, 2), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kBackup));
  EXPECT_FALSE(device.exists("/cfg0/only_backup.xml"));
}

TEST_F(VerifyTest, NamesOfTheBackupDirectoryAreCheckedWhenThereIsNothingElse) {
  writeGood(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(0, 0, 1), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kBackup));
}

// --- what one broken main copy is restored from ---

TEST_F(VerifyTest, BrokenMainCopyIsRestoredFromItsBackupWithoutALookAtTheDefault) {
  writeBroken(kDefault);
  writeBroken(kMain);
  writeGood(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(1, 1, 1), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kBackup));
  EXPECT_EQ(device.read("/cfg1/x.xml"), good(kBackup));
  EXPECT_EQ(device.read(path(kDefault)), broken(kDefault));
}

TEST_F(VerifyTest, BackupComesBeforeAGoodDefault) {
  writeGood(kDefault);
  writeBroken(kMain);
  writeGood(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(1, 1, 1), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kBackup));
}

TEST_F(VerifyTest, MissingMainCopyCountsAsBroken) {
  writeGood(kDefault);
  writeGood(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(1, 0, 1), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kBackup));
}

TEST_F(VerifyTest, DefaultReplacesBothCopiesWhenBothAreBroken) {
  writeGood(kDefault);
  writeBroken(kMain);
  writeBroken(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(1, 1, 1), loadFailed("/cfg0/x.xml"), loadFailed("/cfg1/x.xml"),
                  synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
  EXPECT_EQ(device.read("/cfg1/x.xml"), good(kDefault));
}

TEST_F(VerifyTest, DefaultBecomesTheBackupThatIsMissingAmongOthers) {
  writeGood(kDefault);
  writeBroken(kMain);
  writeGood(kBackup, "other.xml");
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(1, 1, 1), loadFailed("/cfg0/x.xml"), loadFailed("/cfg1/x.xml"),
                  synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
  EXPECT_EQ(device.read("/cfg1/x.xml"), good(kDefault));
}

TEST_F(VerifyTest, EmptyBackupDirectoryIsNotFilledFromTheDefault) {
  writeGood(kDefault);
  writeBroken(kMain);
  expectVerified(
      0, "file /cfg0/x.xml \n",
      {counts(1, 1, 0), loadFailed("/cfg0/x.xml"), synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
  EXPECT_THAT(device.list(kBackup), IsEmpty());
}

TEST_F(VerifyTest, WithoutABackupDirectoryOnlyTheMainCopyIsRestored) {
  writeGood(kDefault);
  writeBroken(kMain);
  device.remove(kBackup);
  expectVerified(
      0, "File /cfg1 didn't exist\nfile /cfg0/x.xml \n",
      {counts(1, 1, 0), loadFailed("/cfg0/x.xml"), synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
  EXPECT_FALSE(device.exists(kBackup));
}

TEST_F(VerifyTest, NewDeviceGetsItsMainCopiesFromTheDefaults) {
  writeGood(kDefault);
  expectVerified(
      0, "file /cfg0/x.xml \n",
      {counts(1, 0, 0), loadFailed("/cfg0/x.xml"), synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
}

TEST_F(VerifyTest, MainCopyStaysBrokenWhenNothingBetterExists) {
  writeBroken(kMain);
  expectVerified(0, "file /cfg0/x.xml \n", {counts(0, 1, 0), loadFailed("/cfg0/x.xml")});
  writeBroken(kBackup);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(0, 1, 1), loadFailed("/cfg0/x.xml"), loadFailed("/cfg1/x.xml")});
  writeBroken(kDefault);
  expectVerified(0, "file /cfg0/x.xml \n",
                 {counts(1, 1, 1), loadFailed("/cfg0/x.xml"), loadFailed("/cfg1/x.xml"),
                  loadFailed("/app/resource/defcfg/x.xml")});
  device.remove(kBackup);
  expectVerified(
      0, "File /cfg1 didn't exist\nfile /cfg0/x.xml \n",
      {counts(1, 1, 0), loadFailed("/cfg0/x.xml"), loadFailed("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml"), broken(kMain));
}

TEST_F(VerifyTest, CopyThatFailsIsReportedAsMadeNevertheless) {
  writeGood(kDefault);
  writeGood(kBackup);
  device.remove(kMain);
  expectVerified(0, "File /cfg0 didn't exist\nfile /cfg0/x.xml \n",
                 {counts(1, 0, 1), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
  EXPECT_FALSE(device.exists(kMain));
}

TEST_F(VerifyTest, SeveralFilesAreRepairedEachOnItsOwn) {
  const std::vector<std::string> names{"a.xml", "b.xml", "c.xml", "d.xml", "e.xml"};
  for (const std::string& name : names) writeGood(kDefault, name);
  writeGood(kMain, "a.xml");
  writeBroken(kMain, "b.xml");
  writeBroken(kMain, "d.xml");
  writeGood(kMain, "e.xml");
  writeGood(kBackup, "b.xml");
  writeBroken(kBackup, "d.xml");
  writeBroken(kBackup, "e.xml");

  std::string output;
  std::vector<Record> records{counts(5, 4, 3)};
  DIR* directory = opendir(kDefault);
  while (const dirent* entry = readdir(directory)) {
    const std::string name = entry->d_name;
    if (name[0] == '.') continue;
    output += "file /cfg0/" + name + " \n";
    if (name == "a.xml" || name == "e.xml") continue;
    records.push_back(loadFailed("/cfg0/" + name));
    if (name != "b.xml") records.push_back(loadFailed("/cfg1/" + name));
    records.push_back(synced((name == "b.xml" ? "/cfg1/" : "/app/resource/defcfg/") + name));
  }
  closedir(directory);
  expectVerified(0, output, records);

  EXPECT_EQ(device.read("/cfg0/a.xml"), good(kMain));
  EXPECT_EQ(device.read("/cfg0/b.xml"), good(kBackup));
  EXPECT_EQ(device.read("/cfg0/c.xml"), good(kDefault));
  EXPECT_EQ(device.read("/cfg0/d.xml"), good(kDefault));
  EXPECT_EQ(device.read("/cfg0/e.xml"), good(kMain));
  EXPECT_EQ(device.list(kBackup), (std::vector<std::string>{"b.xml", "c.xml", "d.xml", "e.xml"}));
  EXPECT_EQ(device.read("/cfg1/d.xml"), good(kDefault));
  EXPECT_EQ(device.read("/cfg1/e.xml"), broken(kBackup));
}

// --- what counts as broken ---

TEST_F(VerifyTest, EmptyAndForeignFilesAreBroken) {
  writeGood(kBackup);
  for (const char* contents : {"", "  \n", "no XML", "<A><B></A>"}) {
    device.write("/cfg0/x.xml", contents);
    expectVerified(0, "file /cfg0/x.xml \n",
                   {counts(0, 1, 1), loadFailed("/cfg0/x.xml"), synced("/cfg1/x.xml")});
    EXPECT_EQ(device.read("/cfg0/x.xml"), good(kBackup)) << contents;
  }
}

TEST_F(VerifyTest, WellFormedFileIsIntactWhateverItHolds) {
  writeGood(kDefault);
  for (const char* contents : {"<!-- nothing -->", "<Another Document=\"\"/>", "<A/><B/>"}) {
    device.write("/cfg0/x.xml", contents);
    expectVerified(0, "file /cfg0/x.xml \n", {counts(1, 1, 0)});
    EXPECT_EQ(device.read("/cfg0/x.xml"), contents);
  }
}

TEST_F(VerifyTest, DirectoryInPlaceOfTheMainCopyIsBrokenAndTakesTheRestoredFile) {
  writeGood(kDefault);
  device.makeDirectory("/cfg0/x.xml");
  expectVerified(
      0, "file /cfg0/x.xml \n",
      {counts(1, 0, 0), loadFailed("/cfg0/x.xml"), synced("/app/resource/defcfg/x.xml")});
  EXPECT_EQ(device.read("/cfg0/x.xml/x.xml"), good(kDefault));
}

TEST_F(VerifyTest, MainCopyMayBeALink) {
  writeGood(kDefault);
  device.write("/data/x.xml", good("/data"));
  ASSERT_EQ(symlink("/data/x.xml", "/cfg0/x.xml"), 0);
  expectVerified(0, "file /cfg0/x.xml \n", {counts(1, 0, 0)});
}

// --- names ---

TEST_F(VerifyTest, NamesWithSpacesAndShellCharactersAreRestoredAndNothingIsRun) {
  for (const std::string name : {"a b.xml", "$(touch ran)", "x;touch ran", "'\"`", "-r", "%n%s"}) {
    SCOPED_TRACE(name);
    writeGood(kDefault, name);
    writeBroken(kBackup, name);
    expectVerified(0, "file /cfg0/" + name + " \n",
                   {counts(1, 0, 1), loadFailed("/cfg0/" + name), loadFailed("/cfg1/" + name),
                    synced("/app/resource/defcfg/" + name)});
    EXPECT_EQ(device.read("/cfg0/" + name), good(kDefault));
    EXPECT_EQ(device.read("/cfg1/" + name), good(kDefault));
    for (const char* directory : {kDefault, kMain, kBackup}) device.remove(path(directory, name));
  }
  EXPECT_THAT(device.list("/"), ElementsAre("app", "cfg0", "cfg1"));
}

TEST_F(VerifyTest, LongNameIsRestoredAsFarAsTheCopyCommandHoldsIt) {
  const std::string whole(55, 'n');
  writeGood(kBackup, whole);
  expectVerified(0, "file /cfg0/" + whole + " \n",
                 {counts(0, 0, 1), loadFailed("/cfg0/" + whole), synced("/cfg1/" + whole)});
  EXPECT_THAT(device.list(kMain), ElementsAre(whole));

  device.remove(path(kMain, whole));
  device.remove(path(kBackup, whole));
  const std::string cut = whole + "n";
  writeGood(kBackup, cut);
  expectVerified(0, "file /cfg0/" + cut + " \n",
                 {counts(0, 0, 1), loadFailed("/cfg0/" + cut), synced("/cfg1/" + cut)});
  EXPECT_THAT(device.list(kMain), ElementsAre(whole));
}

TEST_F(VerifyTest, PathsOfVeryLongNamesAreCutTo127Characters) {
  const std::string name(255, 'n');
  writeGood(kDefault, name);
  writeGood(kBackup, name);
  const std::string main = "/cfg0/" + std::string(121, 'n');
  const std::string backup = "/cfg1/" + std::string(121, 'n');
  const std::string defaults = "/app/resource/defcfg/" + std::string(106, 'n');
  expectVerified(0, "file " + main + " \n",
                 {counts(1, 0, 1), loadFailed(main), loadFailed(backup), loadFailed(defaults)});
  EXPECT_THAT(device.list(kMain), IsEmpty());
}

// --- locks ---

TEST_F(VerifyTest, NoFileLockIsTakenOrWaitedFor) {
  writeGood(kDefault);
  writeBroken(kMain);
  cfgLockFile("/cfg0/x.xml");
  const std::size_t records = g_mapFileLock.size();
  EXPECT_EQ(CFG_VerifyFileFormat(), 0);
  EXPECT_EQ(device.read("/cfg0/x.xml"), good(kDefault));
  EXPECT_EQ(g_mapFileLock.size(), records);
  EXPECT_FALSE(isUnlocked("/cfg0/x.xml"));
}

}  // namespace
}  // namespace camcfg::tests
