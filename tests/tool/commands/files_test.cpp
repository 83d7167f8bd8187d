#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "tool/tool_test.h"

namespace camcfg::tests {
namespace {

constexpr char kGood[] = "<A>\n    <B Cur=\"1\"/>\n</A>\n";
constexpr char kOther[] = "<A>\n    <B Cur=\"2\"/>\n</A>\n";
constexpr char kDamaged[] = "<A>\n    <B Cu";

class VerifyTest : public ToolTest {
 protected:
  // One file in the state that a test begins with; null: missing.
  void write(const char* main, const char* backup, const char* factory,
             const std::string& name = "x.xml") const {
    if (main != nullptr) device.write("/cfg0/" + name, main);
    if (backup != nullptr) device.write("/cfg1/" + name, backup);
    if (factory != nullptr) device.write("/app/resource/defcfg/" + name, factory);
  }

  std::string main() const { return device.read("/cfg0/x.xml"); }
  std::string backup() const { return device.read("/cfg1/x.xml"); }

  // What is in place of a main copy keeps it from being restored, and no other file.
  void expectOnlyTheOtherIsRestored(const std::string& what) const {
    write(kDamaged, kGood, kGood, "y.xml");
    EXPECT_EQ(run({"verify"}),
              (ToolRun{3,
                       "FILE   MAIN             BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                       "x.xml  not-a-file       good    good     yes       -          -\n"
                       "y.xml  damaged -> good  good    good     yes       backup     -\n",
                       "camcfg: verify: /cfg0/x.xml was not replaced from /cfg1/x.xml: cannot "
                       "write /cfg0/x.xml: it is " +
                           what + "; move it away\n"}));
  }
};

TEST_F(VerifyTest, SoundFilesAreLeftAlone) {
  write(kGood, kGood, kOther);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{0,
                     "FILE   MAIN  BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  good    good     yes       -          -\n",
                     ""}));
  EXPECT_EQ(main(), kGood);
}

TEST_F(VerifyTest, DamagedMainCopyComesBackFromTheBackup) {
  write(kDamaged, kGood, kOther);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{0,
                     "FILE   MAIN             BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  damaged -> good  good    good     yes       backup     -\n",
                     ""}));
  EXPECT_EQ(main(), kGood);
}

TEST_F(VerifyTest, BothCopiesDamagedComeBackFromTheDefault) {
  write(kDamaged, "", kOther);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{0,
                     "FILE   MAIN             BACKUP           DEFAULT  AT START  MAIN FROM  "
                     "BACKUP FROM\n"
                     "x.xml  damaged -> good  damaged -> good  good     yes       default    "
                     "default\n",
                     ""}));
  EXPECT_EQ(main(), kOther);
  EXPECT_EQ(backup(), kOther);
}

TEST_F(VerifyTest, NewDeviceGetsItsMainCopiesButNoBackups) {
  write(nullptr, nullptr, kGood);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{0,
                     "FILE   MAIN             BACKUP   DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  missing -> good  missing  good     yes       default    -\n",
                     "camcfg: verify: note: without a backup in sync with the main copy: 1; "
                     "'--resync' brings them up to date\n"}));
  EXPECT_FALSE(device.exists("/cfg1/x.xml"));
}

TEST_F(VerifyTest, ResyncMakesMissingBackups) {
  write(nullptr, nullptr, kGood);
  EXPECT_EQ(
      run({"verify", "--resync"}),
      (ToolRun{0,
               "FILE   MAIN             BACKUP           DEFAULT  AT START  MAIN FROM  "
               "BACKUP FROM\n"
               "x.xml  missing -> good  missing -> good  good     yes       default    main\n",
               ""}));
  EXPECT_EQ(backup(), kGood);
}

TEST_F(VerifyTest, ResyncReplacesADamagedBackupAndNeverTouchesTheGoodMainCopy) {
  write(kGood, kDamaged, nullptr);
  struct stat before {};
  stat((device.hostPath() + "/cfg0/x.xml").c_str(), &before);
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{0,
                     "FILE   MAIN  BACKUP           DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  damaged -> good  missing  yes       -          main\n",
                     ""}));
  EXPECT_EQ(backup(), kGood);
  struct stat after {};
  stat((device.hostPath() + "/cfg0/x.xml").c_str(), &after);
  EXPECT_EQ(before.st_mtim.tv_sec, after.st_mtim.tv_sec);
  EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
}

TEST_F(VerifyTest, ResyncBringsABackupInSyncWithItsMainCopy) {
  write(kGood, kOther, kGood);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{0,
                     "FILE   MAIN  BACKUP       DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  out-of-step  good     yes       -          -\n",
                     "camcfg: verify: note: without a backup in sync with the main copy: 1; "
                     "'--resync' brings them up to date\n"}));
  EXPECT_EQ(backup(), kOther);
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{0,
                     "FILE   MAIN  BACKUP               DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  out-of-step -> good  good     yes       -          main\n",
                     ""}));
  EXPECT_EQ(backup(), kGood);
}

// As a save leaves it that is cut off between two sections: it parses, so start-up verification
// takes it for whole.
TEST_F(VerifyTest, MainCopyCutOffBetweenSectionsIsReported) {
  write("<A/>\n<B/>\n", "<A/>\n<B/>\n<C/>\n", nullptr);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{3,
                     "FILE   MAIN       BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  cut-short  good    missing  yes       -          -\n",
                     "camcfg: verify: /cfg0/x.xml ends before 'C', which its backup has; "
                     "'camcfg verify --resync' restores it from its backup\n"}));
  EXPECT_EQ(main(), "<A/>\n<B/>\n");
}

TEST_F(VerifyTest, ResyncRestoresAMainCopyCutOffBetweenSectionsAndKeepsWhatItWas) {
  write("<A Cur=\"2\"/>\n", "<A Cur=\"1\"/>\n<B/>\n", nullptr);
  const std::string kept = device.hostPath() + "/kept";
  EXPECT_EQ(run({"verify", "--resync", "--keep-damaged", kept}).status, 0);
  EXPECT_EQ(main(), "<A Cur=\"1\"/>\n<B/>\n");
  EXPECT_EQ(backup(), main());
  EXPECT_EQ(device.read("/kept/cfg0-x.xml"), "<A Cur=\"2\"/>\n");
}

TEST_F(VerifyTest, ResyncRestoresAMainCopyCutOffAfterItsFirstComment) {
  write("<!-- comment -->\n", "<!-- comment -->\n<A/>\n", nullptr);
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{0,
                     "FILE   MAIN               BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  cut-short -> good  good    missing  yes       backup     -\n",
                     ""}));
  EXPECT_EQ(main(), "<!-- comment -->\n<A/>\n");
}

TEST_F(VerifyTest, ResyncFollowsAMainCopyWithASectionMoreOrAnother) {
  for (const char* backupCopy : {"<A/>\n", "<A/>\n<C/>\n<B/>\n", "<X/>\n<A/>\n<B/>\n"}) {
    write("<A/>\n<B/>\n", backupCopy, nullptr);
    EXPECT_EQ(run({"verify", "--resync"}).status, 0) << backupCopy;
    EXPECT_EQ(main(), "<A/>\n<B/>\n") << backupCopy;
    EXPECT_EQ(backup(), main()) << backupCopy;
  }
}

TEST_F(VerifyTest, OtherLayoutOfTheSameContentsIsLevel) {
  write(kGood, "<A><B Cur='1'/></A>", kGood);
  EXPECT_THAT(run({"verify", "--resync"}).out, testing::HasSubstr("x.xml  good  good "));
  EXPECT_EQ(backup(), "<A><B Cur='1'/></A>");
}

TEST_F(VerifyTest, FileOutsideTheFactorySetIsReportedAndRestoredByResyncOnly) {
  write(kGood, kGood, kGood);
  write(kDamaged, kOther, nullptr, "own.xml");
  EXPECT_EQ(run({"verify"}),
            (ToolRun{3,
                     "FILE     MAIN     BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "own.xml  damaged  good    missing  no        -          -\n"
                     "x.xml    good     good    good     yes       -          -\n",
                     "camcfg: verify: /cfg0/own.xml is not well-formed XML; 'camcfg verify "
                     "--resync' restores it "
                     "from its backup\n"}));
  EXPECT_EQ(device.read("/cfg0/own.xml"), kDamaged);
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{0,
                     "FILE     MAIN             BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "own.xml  damaged -> good  good    missing  no        backup     -\n"
                     "x.xml    good             good    good     yes       -          -\n",
                     ""}));
  EXPECT_EQ(device.read("/cfg0/own.xml"), kOther);
}

TEST_F(VerifyTest, ResyncBacksUpAFileOutsideTheFactorySet) {
  write(kGood, kGood, kGood);
  write(kOther, nullptr, nullptr, "own.xml");
  EXPECT_THAT(run({"verify", "--resync"}).out,
              testing::HasSubstr("own.xml  good  missing -> good  missing  no        -          "
                                 "main\n"));
  EXPECT_EQ(device.read("/cfg1/own.xml"), kOther);
}

TEST_F(VerifyTest, FilesOfOtherKindsOutsideTheFactorySetAreNoneOfItsBusiness) {
  write(kGood, kGood, kGood);
  write("not XML", nullptr, nullptr, "random-seed");
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{0,
                     "FILE   MAIN  BACKUP  DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  good    good     yes       -          -\n",
                     ""}));
  EXPECT_FALSE(device.exists("/cfg1/random-seed"));
}

TEST_F(VerifyTest, FileWithoutAnyGoodCopyIsNamedWithStatusThree) {
  write(kDamaged, kDamaged, kDamaged);
  EXPECT_EQ(
      run({"verify", "--resync"}),
      (ToolRun{3,
               "FILE   MAIN     BACKUP   DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
               "x.xml  damaged  damaged  damaged  yes       -          -\n",
               "camcfg: verify: /cfg0/x.xml is not well-formed XML and no other copy of it is "
               "good\n"}));
  EXPECT_EQ(main(), kDamaged);
}

TEST_F(ToolTest, DeviceWithoutAnyFileIsUnusable) {
  EXPECT_EQ(
      run({"verify"}),
      (ToolRun{3, "",
               "camcfg: verify: there is no file in /cfg0, /cfg1 or /app/resource/defcfg\n"}));
}

TEST_F(VerifyTest, JsonHasTheStatesBeforeAndAfter) {
  write(kDamaged, nullptr, kGood);
  EXPECT_EQ(run({"verify", "--json"}), (ToolRun{0,
                                                "{\n"
                                                "  \"files\": [\n"
                                                "    {\n"
                                                "      \"name\": \"x.xml\",\n"
                                                "      \"checkedAtStart\": true,\n"
                                                "      \"found\": {\n"
                                                "        \"main\": \"damaged\",\n"
                                                "        \"backup\": \"missing\",\n"
                                                "        \"default\": \"good\"\n"
                                                "      },\n"
                                                "      \"now\": {\n"
                                                "        \"main\": \"good\",\n"
                                                "        \"backup\": \"missing\",\n"
                                                "        \"default\": \"good\"\n"
                                                "      },\n"
                                                "      \"restored\": {\n"
                                                "        \"main\": \"default\",\n"
                                                "        \"backup\": null\n"
                                                "      }\n"
                                                "    }\n"
                                                "  ],\n"
                                                "  \"kept\": []\n"
                                                "}\n",
                                                "camcfg: verify: note: without a backup in sync "
                                                "with the main copy: 1; '--resync' brings "
                                                "them up to date\n"}));
}

class KeepDamagedTest : public VerifyTest {
 protected:
  KeepDamagedTest() { evidence.makeDirectory("/here"); }

  // The tool is started in a directory outside the device.
  ToolRun runHere(const std::vector<std::string>& arguments) const {
    return run(arguments, [this] {
      if (chdir((evidence.hostPath() + "/here").c_str()) != 0) _exit(1);
    });
  }

  testkit::DeviceRoot evidence{testkit::DeviceRoot::StayOut};
};

TEST_F(KeepDamagedTest, SavesReplacedBytesInADirectoryOutsideTheDevice) {
  write(kDamaged, "<", kGood);
  EXPECT_EQ(runHere({"verify", "--keep-damaged", "kept"}),
            (ToolRun{0,
                     "FILE   MAIN             BACKUP           DEFAULT  AT START  MAIN FROM  "
                     "BACKUP FROM\n"
                     "x.xml  damaged -> good  damaged -> good  good     yes       default    "
                     "default\n"
                     "\n"
                     "DAMAGED COPY  KEPT AS\n"
                     "/cfg0/x.xml   kept/cfg0-x.xml\n"
                     "/cfg1/x.xml   kept/cfg1-x.xml\n",
                     ""}));
  EXPECT_EQ(evidence.list("/here/kept"), (std::vector<std::string>{"cfg0-x.xml", "cfg1-x.xml"}));
  EXPECT_EQ(evidence.read("/here/kept/cfg0-x.xml"), kDamaged);
  EXPECT_EQ(evidence.read("/here/kept/cfg1-x.xml"), "<");
}

TEST_F(KeepDamagedTest, SavesWhatResyncReplaces) {
  write(kGood, kDamaged, nullptr);
  EXPECT_EQ(runHere({"verify", "--resync", "--json", "--keep-damaged", "."}).status, 0);
  EXPECT_EQ(evidence.read("/here/cfg1-x.xml"), kDamaged);
}

TEST_F(KeepDamagedTest, SavesNothingThatIsNotReplaced) {
  write(kDamaged, kDamaged, nullptr);
  EXPECT_EQ(runHere({"verify", "--keep-damaged", "."}).status, 3);
  write(kGood, kOther, kGood);
  EXPECT_EQ(runHere({"verify", "--resync", "--keep-damaged", "."}).status, 0);
  EXPECT_EQ(evidence.list("/here"), std::vector<std::string>());
}

TEST_F(KeepDamagedTest, NeverOverwritesEarlierEvidence) {
  evidence.write("/here/cfg0-x.xml", "earlier");
  write(kDamaged, kGood, kGood);
  EXPECT_THAT(runHere({"verify", "--keep-damaged", "."}).out,
              testing::HasSubstr("/cfg0/x.xml   ./cfg0-x.xml.1\n"));
  EXPECT_EQ(evidence.read("/here/cfg0-x.xml"), "earlier");
  EXPECT_EQ(evidence.read("/here/cfg0-x.xml.1"), kDamaged);
}

TEST_F(KeepDamagedTest, ReplacesNothingWhereTheBytesCannotBeSaved) {
  write(kDamaged, kGood, kGood);
  evidence.write("/here/file", "");
  EXPECT_EQ(runHere({"verify", "--keep-damaged", "file"}),
            (ToolRun{1, "", "camcfg: verify: --keep-damaged file: Not a directory\n"}));
  EXPECT_EQ(
      runHere({"verify", "--keep-damaged", "no/such"}),
      (ToolRun{1, "", "camcfg: verify: --keep-damaged no/such: No such file or directory\n"}));
  EXPECT_EQ(main(), kDamaged);
}

TEST_F(VerifyTest, DirectoryInPlaceOfAMainCopyIsReportedAndDoesNotKeepOthersFromBeingRestored) {
  write(nullptr, kGood, kGood);
  device.makeDirectory("/cfg0/x.xml");
  expectOnlyTheOtherIsRestored("not a regular file");
}

TEST_F(VerifyTest, DirectoryInPlaceOfABackupIsReportedAndNothingIsPutIntoIt) {
  write(kGood, nullptr, kGood);
  device.makeDirectory("/cfg1/x.xml");
  EXPECT_EQ(run({"verify", "--resync"}),
            (ToolRun{1,
                     "FILE   MAIN  BACKUP      DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  good  not-a-file  good     yes       -          -\n",
                     "camcfg: verify: /cfg1/x.xml was not replaced from /cfg0/x.xml: cannot write "
                     "/cfg1/x.xml: it is not a regular file; move it away\n"}));
  EXPECT_TRUE(device.list("/cfg1/x.xml").empty());
}

TEST_F(VerifyTest, PipeInPlaceOfAMainCopyIsReportedAndDoesNotKeepOthersFromBeingRestored) {
  write(nullptr, kGood, kGood);
  ASSERT_EQ(mkfifo((device.hostPath() + "/cfg0/x.xml").c_str(), 0600), 0);
  expectOnlyTheOtherIsRestored("not a regular file");
}

TEST_F(VerifyTest, LinkToNothingIsReportedAndDoesNotKeepOthersFromBeingRestored) {
  write(nullptr, kGood, kGood);
  std::filesystem::create_symlink("/no/such", device.hostPath() + "/cfg0/x.xml");
  expectOnlyTheOtherIsRestored("a link to nothing");
}

TEST_F(VerifyTest, FileThatHoldsNoElementIsNamedSinceStartUpAcceptsIt) {
  write("<!-- nothing -->", nullptr, kGood);
  EXPECT_EQ(run({"verify"}),
            (ToolRun{3,
                     "FILE   MAIN        BACKUP   DEFAULT  AT START  MAIN FROM  BACKUP FROM\n"
                     "x.xml  no-element  missing  good     yes       -          -\n",
                     "camcfg: verify: /cfg0/x.xml holds no element; 'camcfg verify --resync' "
                     "restores it from the factory set\n"}));
  EXPECT_FALSE(device.exists("/cfg1/x.xml"));
}

TEST_F(VerifyTest, ResyncRestoresAFileThatHoldsNoElementFromTheFactorySet) {
  write("<!-- nothing -->", "<!-- nothing -->", kGood);
  const std::string kept = device.hostPath() + "/kept";
  EXPECT_EQ(run({"verify", "--resync", "--keep-damaged", kept}).status, 0);
  EXPECT_EQ(main(), kGood);
  EXPECT_EQ(backup(), kGood);
  EXPECT_EQ(device.read("/kept/cfg0-x.xml"), "<!-- nothing -->");
}

TEST_F(VerifyTest, ResyncMakesADirectoryWithThePermissionsOfTheOther) {
  for (const char* directory : {"/cfg1", "/cfg0"}) {
    write(kGood, kGood, kGood);
    for (const char* each : {"/cfg0", "/cfg1"})
      ASSERT_EQ(chmod((device.hostPath() + each).c_str(), 0751), 0);
    device.remove(directory);
    EXPECT_EQ(run({"verify", "--resync"}).err,
              std::string("camcfg: verify: note: ") + directory + " did not exist and was made\n");
    EXPECT_EQ(main(), kGood);
    EXPECT_EQ(backup(), kGood);
    struct stat status {};
    stat((device.hostPath() + directory).c_str(), &status);
    EXPECT_EQ(status.st_mode & 07777u, 0751u);
  }
}

TEST_F(VerifyTest, NameTooLongForTheLibrarysCopyIsReported) {
  const std::string name = std::string(60, 'n') + ".xml";
  write(kGood, nullptr, nullptr, name);
  const ToolRun result = run({"verify", "--resync"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "camcfg: verify: /cfg1/" + name + " was not replaced from /cfg0/" + name +
                            ": its name is too long for the library to copy it\n");
  EXPECT_TRUE(device.list("/cfg1").empty());
}

}  // namespace
}  // namespace camcfg::tests
