#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <memory>

#include "support/device_test.h"
#include "support/without_override.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::FieldsAre;
using testing::IsEmpty;
using tinyxml2::XMLDocument;

constexpr char kSavedPath[] = "/cfg0/x.xml";

class DocumentSaveTest : public DeviceTest {
 protected:
  DocumentSaveTest() { document.Parse("<A><B Cur=\"1\"/></A>"); }
  int save(const std::string& path, int unlock) {
    return CFG_SaveFile(&document, text(path.c_str()), static_cast<tagBU_BOOL>(unlock));
  }
  mode_t permissionsOf(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 ? status.st_mode & 07777 : 0;
  }
  ino_t inodeOf(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 ? status.st_ino : 0;
  }

  XMLDocument document;
  const std::string saved = "<A>\n    <B Cur=\"1\"/>\n</A>\n";
};

TEST_F(DocumentSaveTest, EditedDocumentGoesToBothCopiesAndTheLockIsReleased) {
  device.write(kSavedPath, "<!-- kept --><A><B Cur=\"1\"/>text</A>");
  device.write("/cfg1/x.xml", "older and longer than what will be written, and no XML at all");
  const std::unique_ptr<XMLDocument> edited(CFG_GetDocByFileName(text(kSavedPath), BU_FALSE));
  ASSERT_NE(edited, nullptr);
  edited->FirstChildElement()->FirstChildElement()->SetAttribute("Cur", "<2>");
  int result = -1;
  EXPECT_EQ(captureOutput([&] { result = CFG_SaveFile(edited.get(), text(kSavedPath), BU_TRUE); }),
            "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(device.read(kSavedPath), "<!-- kept -->\n<A>\n    <B Cur=\"&lt;2&gt;\"/>text</A>\n");
  EXPECT_EQ(device.read("/cfg1/x.xml"), device.read(kSavedPath));
  EXPECT_TRUE(isUnlocked(kSavedPath));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentSaveTest, DocumentStaysTheCallersAndCanBeSavedAgain) {
  EXPECT_EQ(save(kSavedPath, 0), 0);
  document.FirstChildElement()->FirstChildElement()->SetAttribute("Cur", 2);
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(device.read(kSavedPath), "<A>\n    <B Cur=\"2\"/>\n</A>\n");
  EXPECT_EQ(device.read("/cfg1/x.xml"), device.read(kSavedPath));
}

TEST_F(DocumentSaveTest, NameWithoutASlashIsSavedBelowTheMainDirectoryAndUnlockedByThatName) {
  cfgLockFile("x.xml");
  cfgLockFile("/cfg0/x.xml");
  EXPECT_EQ(save("x.xml", 1), 0);
  EXPECT_EQ(device.read("/cfg0/x.xml"), saved);
  EXPECT_EQ(device.read("/cfg1/x.xml"), saved);
  EXPECT_TRUE(isUnlocked("x.xml"));
  EXPECT_FALSE(isUnlocked("/cfg0/x.xml"));
  EXPECT_THAT(log.records(), IsEmpty());
}

class UnlockFlag : public DocumentSaveTest, public testing::WithParamInterface<int> {};

TEST_P(UnlockFlag, ReleasesTheLockWhenItIsOneAndKeepsItOtherwise) {
  cfgLockFile(kSavedPath);
  EXPECT_EQ(save(kSavedPath, GetParam()), 0);
  EXPECT_EQ(device.read("/cfg0/x.xml"), saved);
  EXPECT_EQ(device.read("/cfg1/x.xml"), saved);
  EXPECT_EQ(isUnlocked(kSavedPath), GetParam() == 1);
  EXPECT_THAT(log.records(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Values, UnlockFlag, testing::Values(1, 0, 2, -1, 0x101, INT_MIN, INT_MAX));

TEST_F(DocumentSaveTest, UnlockOfAFileThatWasNotLockedWarns) {
  int result = -1;
  EXPECT_EQ(captureOutput([&] { result = save(kSavedPath, 1); }),
            "[Warn][Cfg] /cfg0/x.xml has not been locked before unlock!\n");
  EXPECT_EQ(result, 0);
  EXPECT_THAT(log.records(),
              ElementsAre(FieldsAre(4, "[cfgUnlockFile:115] ",
                                    "/cfg0/x.xml has not been locked before unlock!")));
  EXPECT_EQ(device.read("/cfg1/x.xml"), saved);
}

TEST_F(DocumentSaveTest, WithoutUnlockNothingIsSaidAboutAFileThatWasNotLocked) {
  EXPECT_EQ(captureOutput([&] { save(kSavedPath, 0); }), "");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentSaveTest, NullPathSavesAndReleasesNothing) {
  cfgLockFile(kSavedPath);
  EXPECT_EQ(CFG_SaveFile(&document, nullptr, BU_TRUE), -1);
  EXPECT_EQ(CFG_SaveFile(nullptr, nullptr, BU_TRUE), -1);
  EXPECT_FALSE(isUnlocked(kSavedPath));
  EXPECT_THAT(device.list("/cfg0"), IsEmpty());
  EXPECT_THAT(device.list("/cfg1"), IsEmpty());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentSaveTest, NullDocumentSavesNothingAndReleasesTheLockIfAsked) {
  cfgLockFile(kSavedPath);
  EXPECT_EQ(CFG_SaveFile(nullptr, text(kSavedPath), BU_FALSE), -1);
  EXPECT_FALSE(isUnlocked(kSavedPath));
  EXPECT_EQ(CFG_SaveFile(nullptr, text(kSavedPath), BU_TRUE), -1);
  EXPECT_TRUE(isUnlocked(kSavedPath));
  EXPECT_THAT(device.list("/cfg0"), IsEmpty());
  EXPECT_THAT(device.list("/cfg1"), IsEmpty());
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentSaveTest, PipeInPlaceOfTheMainCopyIsNotWaitedForAndTheBackupStays) {
  ASSERT_EQ(mkfifo(kSavedPath, 0666), 0);
  device.write("/cfg1/x.xml", "<Old/>\n");
  cfgLockFile(kSavedPath);
  EXPECT_EQ(CFG_SaveFile(&document, text(kSavedPath), BU_TRUE), 0);
  EXPECT_TRUE(isUnlocked(kSavedPath));
  EXPECT_EQ(device.read("/cfg1/x.xml"), "<Old/>\n");
}

struct Shape {
  std::string path;
  std::string main;
  std::string backup;
};

TEST_F(DocumentSaveTest, BackupPathIsTheMainPathWithItsFirstFiveCharactersReplaced) {
  const Shape shapes[] = {
      {"/cfg0/x.xml", "/cfg0/x.xml", "/cfg1/x.xml"},
      {"/cfg0//x.xml", "/cfg0/x.xml", "/cfg1/x.xml"},
      {"sub/x.xml", "/cfg0/sub/x.xml", "/cfg1/sub/x.xml"},
      {"cfg0/x.xml", "/cfg0/cfg0/x.xml", "/cfg1/cfg0/x.xml"},
      {"/app/resource/defcfg/x.xml", "/app/resource/defcfg/x.xml", "/cfg1resource/defcfg/x.xml"},
      {"/data/x.xml", "/data/x.xml", "/cfg1/x.xml"},
      {"/a/x.xml", "/a/x.xml", "/cfg1xml"},
      {"/abcdef", "/abcdef", "/cfg1ef"},
      // The whole backup path is the backup directory, which the copy then goes into.
      {"/abcd", "/abcd", "/cfg1/abcd"},
      {"/x", "/x", "/cfg1/x"},
  };
  for (const char* directory : {"/cfg0/sub", "/cfg1/sub", "/cfg0/cfg0", "/cfg1/cfg0",
                                "/cfg1resource/defcfg", "/data", "/a"})
    device.makeDirectory(directory);
  for (const Shape& shape : shapes) {
    SCOPED_TRACE(shape.path);
    EXPECT_EQ(save(shape.path, 0), 0);
    EXPECT_EQ(device.read(shape.main), saved);
    ASSERT_TRUE(device.exists(shape.backup));
    EXPECT_EQ(device.read(shape.backup), saved);
    device.remove(shape.main);
    device.remove(shape.backup);
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

class LongPath : public DocumentSaveTest {
 protected:
  /// Saves to a path and expects this one file below "/cfg0" and these below "/cfg1".
  void expectSaved(const std::string& path, const std::string& main,
                   const std::vector<std::string>& backups) {
    SCOPED_TRACE(path.size());
    cfgLockFile(path.c_str());
    EXPECT_EQ(save(path, 1), 0);
    EXPECT_TRUE(isUnlocked(path));
    EXPECT_THAT(device.list("/cfg0"), ElementsAre(main));
    EXPECT_EQ(device.list("/cfg1"), backups);
    EXPECT_EQ(device.read("/cfg0/" + main), saved);
    for (const std::string& backup : backups) EXPECT_EQ(device.read("/cfg1/" + backup), saved);
    for (const char* directory : {"/cfg0", "/cfg1"}) {
      device.remove(directory);
      device.makeDirectory(directory);
    }
    EXPECT_THAT(log.records(), IsEmpty());
  }
  static std::string name(std::size_t length) { return std::string(length, 'n'); }
};

TEST_F(LongPath, IsBackedUpAsFarAsTheCopyCommandOf127CharactersHoldsBothPaths) {
  expectSaved("/cfg0/" + name(55), name(55), {name(55)});
  expectSaved("/cfg0/" + name(56), name(56), {name(55)});
  expectSaved("/cfg0/" + name(110), name(110), {name(1)});
  // What is left of the backup path is "/cfg1/", then "/cfg1": a directory to copy into.
  expectSaved("/cfg0/" + name(111), name(111), {name(111)});
  expectSaved("/cfg0/" + name(112), name(112), {name(112)});
  expectSaved("/cfg0/" + name(113), name(113), {});
  EXPECT_EQ(device.read("/cfg"), saved);
  expectSaved("/cfg0/" + name(116), name(116), {});
  EXPECT_EQ(device.read("/" + name(116)), saved);
  device.remove("/cfg");
  device.remove("/" + name(116));
  expectSaved("/cfg0/" + name(117), name(117), {});
  expectSaved("/cfg0/" + name(121), name(121), {});
  EXPECT_THAT(device.list("/"), ElementsAre("app", "cfg0", "cfg1"));
}

TEST_F(LongPath, IsCutTo127CharactersButUnlockedByItsWholeText) {
  expectSaved("/cfg0/" + name(122), name(121), {});
  expectSaved("/cfg0/" + name(194), name(121), {});
}

TEST_F(LongPath, GivenAsANameIsCutTo127CharactersWithItsDirectory) {
  expectSaved(name(55), name(55), {name(55)});
  expectSaved(name(121), name(121), {});
  expectSaved(name(122), name(121), {});
  expectSaved(name(200), name(121), {});
}

// --- saves and copies that fail ---

TEST_F(DocumentSaveTest, FailedSaveIsNotReportedAndTheLockIsReleased) {
  device.makeDirectory(kSavedPath);
  device.write("/cfg1/x.xml", "backup");
  cfgLockFile(kSavedPath);
  int result = -1;
  EXPECT_EQ(captureOutput([&] { result = save(kSavedPath, 1); }), "");
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(isUnlocked(kSavedPath));
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_EQ(device.read("/cfg1/x.xml"), "backup");
}

TEST_F(DocumentSaveTest, MissingMainDirectoryIsNotReported) {
  device.remove("/cfg0");
  device.write("/cfg1/x.xml", "backup");
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(save("", 0), 0);
  EXPECT_FALSE(device.exists("/cfg0"));
  EXPECT_EQ(device.read("/cfg1/x.xml"), "backup");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(DocumentSaveTest, MainCopyThatCannotBeWrittenIsBackedUpAsItIs) {
  device.write(kSavedPath, "main");
  device.write("/cfg1/x.xml", "backup");
  chmod(kSavedPath, 0444);
  {
    const WithoutOverride withoutOverride;
    EXPECT_EQ(save(kSavedPath, 0), 0);
  }
  EXPECT_EQ(device.read(kSavedPath), "main");
  EXPECT_EQ(device.read("/cfg1/x.xml"), "main");
}

TEST_F(DocumentSaveTest, FailedCopyIsNotReportedAndTheLockIsReleased) {
  const auto expectOnlyMainSaved = [&] {
    cfgLockFile(kSavedPath);
    EXPECT_EQ(save(kSavedPath, 1), 0);
    EXPECT_EQ(device.read(kSavedPath), saved);
    EXPECT_TRUE(isUnlocked(kSavedPath));
    EXPECT_THAT(log.records(), IsEmpty());
    device.remove(kSavedPath);
  };
  device.remove("/cfg1");
  expectOnlyMainSaved();
  EXPECT_FALSE(device.exists("/cfg1"));

  device.write("/cfg1", "a file in place of the directory");
  expectOnlyMainSaved();
  EXPECT_EQ(device.read("/cfg1"), "a file in place of the directory");

  device.remove("/cfg1");
  device.makeDirectory("/cfg1/x.xml/x.xml");
  expectOnlyMainSaved();
}

TEST_F(DocumentSaveTest, DirectoryInPlaceOfTheBackupTakesTheCopy) {
  device.makeDirectory("/cfg1/x.xml");
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(device.read("/cfg1/x.xml/x.xml"), saved);
}

TEST_F(DocumentSaveTest, FullDeviceIsNotReported) {
  document.Parse(("<A>" + std::string(10000, 'x') + "</A>").c_str());
  signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{5000, before.rlim_max};
  cfgLockFile(kSavedPath);
  setrlimit(RLIMIT_FSIZE, &small);
  const int result = save(kSavedPath, 1);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result, 0);
  EXPECT_TRUE(isUnlocked(kSavedPath));
  EXPECT_EQ(device.read(kSavedPath).size(), 5000u);
}

// --- the files themselves ---

TEST_F(DocumentSaveTest, FilesAreRewrittenInPlaceAndNothingElseIsLeft) {
  device.write(kSavedPath, "older");
  device.write("/cfg1/x.xml", "older");
  const ino_t main = inodeOf(kSavedPath);
  const ino_t backup = inodeOf("/cfg1/x.xml");
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(inodeOf(kSavedPath), main);
  EXPECT_EQ(inodeOf("/cfg1/x.xml"), backup);
  EXPECT_THAT(device.list("/cfg0"), ElementsAre("x.xml"));
  EXPECT_THAT(device.list("/cfg1"), ElementsAre("x.xml"));
}

TEST_F(DocumentSaveTest, ExistingFilesKeepTheirPermissions) {
  device.write(kSavedPath, "older");
  device.write("/cfg1/x.xml", "older");
  chmod(kSavedPath, 0600);
  chmod("/cfg1/x.xml", 0640);
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(permissionsOf(kSavedPath), 0600u);
  EXPECT_EQ(permissionsOf("/cfg1/x.xml"), 0640u);
}

TEST_F(DocumentSaveTest, NewFilesGetTheirPermissionsFromTheUmaskAndTheMainCopy) {
  umask(027);
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(permissionsOf(kSavedPath), 0640u);
  EXPECT_EQ(permissionsOf("/cfg1/x.xml"), 0640u);

  device.remove("/cfg1/x.xml");
  chmod(kSavedPath, 0600);
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(permissionsOf("/cfg1/x.xml"), 0600u);
}

TEST_F(DocumentSaveTest, LinksAreWrittenThrough) {
  device.write("/data/x.xml", "older");
  ASSERT_EQ(symlink("/data/x.xml", kSavedPath), 0);
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(device.read("/data/x.xml"), saved);
  EXPECT_EQ(device.read("/cfg1/x.xml"), saved);
}

TEST_F(DocumentSaveTest, EmptyDocumentMakesEmptyFiles) {
  device.write(kSavedPath, "older");
  device.write("/cfg1/x.xml", "older");
  document.Clear();
  EXPECT_EQ(save(kSavedPath, 0), 0);
  EXPECT_EQ(device.read(kSavedPath), "");
  EXPECT_EQ(device.read("/cfg1/x.xml"), "");
}

TEST_F(DocumentSaveTest, LargeDocumentReachesBothCopiesWhole) {
  for (int i = 0; i < 5000; ++i)
    document.RootElement()->InsertNewChildElement("Entry")->SetAttribute("Id", i);
  EXPECT_EQ(save(kSavedPath, 0), 0);
  tinyxml2::XMLPrinter expected;
  document.Print(&expected);
  EXPECT_EQ(device.read(kSavedPath), expected.CStr());
  EXPECT_EQ(device.read("/cfg1/x.xml"), expected.CStr());
}

TEST_F(DocumentSaveTest, NamesWithSpacesAndShellCharactersAreSavedAndBackedUp) {
  for (const std::string name : {"a b.xml", "$(touch ran).xml", "`touch ran`.xml", "x;touch ran",
                                 "'q\"uote'.xml", "*.xml", "-r.xml", "> ran"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(save("/cfg0/" + name, 0), 0);
    EXPECT_THAT(device.list("/cfg0"), ElementsAre(name));
    EXPECT_THAT(device.list("/cfg1"), ElementsAre(name));
    EXPECT_EQ(device.read("/cfg1/" + name), saved);
    device.remove("/cfg0/" + name);
    device.remove("/cfg1/" + name);
  }
  EXPECT_THAT(device.list("/"), ElementsAre("app", "cfg0", "cfg1"));
}

}  // namespace
}  // namespace camcfg::tests
