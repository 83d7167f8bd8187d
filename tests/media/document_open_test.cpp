#include <cctype>

#include "media/document_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tinyxml2::XMLElement;

class OpenTest : public MediaDocumentTest {};

INSTANTIATE_TEST_SUITE_P(, OpenTest, testing::Values(&kStreams, &kServices), nameOf);

TEST_P(OpenTest, NoDocumentIsOpenAtFirst) {
  EXPECT_EQ(family().handle, nullptr);
}

TEST_P(OpenTest, OpeningForReadingFindsTheSectionAndHoldsNoLock) {
  giveSections("<Section Mark='here'/>");
  const Opened opened = open("Section", BU_TRUE);
  ASSERT_NE(opened.section, nullptr);
  EXPECT_STREQ(opened.section->Name(), "Section");
  EXPECT_STREQ(opened.section->Attribute("Mark"), "here");
  EXPECT_EQ(opened.section->GetDocument(), family().handle);
  EXPECT_EQ(opened.printed, "");
  EXPECT_EQ(state(), "open, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(OpenTest, OpeningForWritingFindsTheSectionAndHoldsTheLock) {
  giveSections("<Section Mark='here'/>");
  const Opened opened = open("Section", BU_FALSE);
  ASSERT_NE(opened.section, nullptr);
  EXPECT_STREQ(opened.section->Attribute("Mark"), "here");
  EXPECT_EQ(opened.section->GetDocument(), family().handle);
  EXPECT_EQ(opened.printed, "");
  EXPECT_EQ(state(), "open, locked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(OpenTest, FlagOtherThanOneIsWriteMode) {
  giveSections("<Section/>");
  for (const int flag : {2, -1}) {
    EXPECT_NE(open("Section", static_cast<tagBU_BOOL>(flag)).section, nullptr);
    EXPECT_EQ(state(), "open, locked");
    family().closeWrite();
    expectRefused("None", static_cast<tagBU_BOOL>(flag), notFound("None"));
    EXPECT_EQ(state(), "closed, unlocked");
  }
}

TEST_P(OpenTest, TheDocumentIsLoadedWithEntitiesProcessed) {
  giveSections("<Section Mark='&lt;&#65;'/>");
  EXPECT_STREQ(open("Section", BU_TRUE).section->Attribute("Mark"), "<A");
}

TEST_P(OpenTest, TheFirstElementOfEachNameIsTaken) {
  device.write(kMainCopy, withTop("<!-- text --><Other><Section Mark='other'/></Other>"
                                  "<TOPs><Section Mark='longer'/></TOPs>"
                                  "<TOP><Deep><Section Mark='deeper'/></Deep>"
                                  "<Sections Mark='longer'/><section Mark='case'/>"
                                  "<Section Mark='first'/><Section Mark='second'/></TOP>"
                                  "<TOP><Section Mark='third'/></TOP>"));
  EXPECT_STREQ(open("Section", BU_TRUE).section->Attribute("Mark"), "first");
}

TEST_P(OpenTest, MissingFileFailsToOpenForReading) {
  expectRefused("Section", BU_TRUE, openFailed);
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n")));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_P(OpenTest, MissingFileFailsToOpenForWritingAndIsUnlockedOnceTooOften) {
  expectRefused("Section", BU_FALSE, openFailed + unlockedTwice);
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n"),
                          Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_P(OpenTest, FileThatIsNotWellFormedIsLikeAMissingOne) {
  for (const char* contents : {"", "text", "<TOP><Section></TOP>"}) {
    SCOPED_TRACE(contents);
    device.write(kMainCopy, withTop(contents));
    log.clear();
    expectRefused("Section", BU_TRUE, openFailed);
    expectRefused("Section", BU_FALSE, openFailed + unlockedTwice);
    EXPECT_THAT(log.texts(), ElementsAre("Load file /cfg0/mpp_cfg.xml fail\n",
                                         "Load file /cfg0/mpp_cfg.xml fail\n", kNotLocked));
    EXPECT_EQ(state(), "closed, unlocked");
  }
}

TEST_P(OpenTest, FileWithoutTheFamilysElementIsReportedAndUnlockedOnce) {
  std::string inAnotherCase = family().top;
  for (char& letter : inAnotherCase) letter = static_cast<char>(std::tolower(letter));
  for (const std::string& contents :
       {std::string("<Other/>"), "<" + inAnotherCase + "><Section/></" + inAnotherCase + ">",
        std::string("<TOPs><Section/></TOPs>"), std::string("<!-- no element -->"),
        std::string("<Root><TOP><Section/></TOP></Root>")}) {
    for (const tagBU_BOOL mode : kBothModes) {
      SCOPED_TRACE(contents + (mode == BU_TRUE ? " reading" : " writing"));
      device.write(kMainCopy, withTop(contents));
      expectRefused("Section", mode, notFound(family().top));
      EXPECT_EQ(state(), "closed, unlocked");
      EXPECT_EQ(device.read(kMainCopy), withTop(contents));
    }
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(OpenTest, FileWithoutTheSectionIsReportedAndUnlockedOnce) {
  for (const char* contents : {"<TOP/>", "<TOP><Other/></TOP>", "<TOP><SECTION/></TOP>",
                               "<TOP><Other><Section/></Other></TOP>",
                               "<TOP><Sections/></TOP><Section/>", "<TOP/><TOP><Section/></TOP>"}) {
    for (const tagBU_BOOL mode : kBothModes) {
      SCOPED_TRACE(std::string(contents) + (mode == BU_TRUE ? " reading" : " writing"));
      device.write(kMainCopy, withTop(contents));
      expectRefused("Section", mode, notFound("Section"));
      EXPECT_EQ(state(), "closed, unlocked");
      EXPECT_EQ(device.read(kMainCopy), withTop(contents));
    }
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(OpenTest, ASectionNameIsNeitherCutNorTakenForAFormat) {
  giveSections("<Section/>");
  const std::string longName = "%s%n%d 100% " + std::string(700, 'x') + "%s";
  for (const std::string& name : {longName, std::string("%s%n%d"), std::string()})
    expectRefused(name.c_str(), BU_TRUE, notFound(name));
}

TEST_P(OpenTest, NoSectionNameIsLikeAMissingSection) {
  giveSections("<Section/>");
  expectRefused(nullptr, BU_FALSE, notFound("(null)"));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_P(OpenTest, AfterAFailedOpeningTheNextOneSucceeds) {
  giveSections("<Section/>");
  expectRefused("None", BU_FALSE, notFound("None"));
  expectRefused("None", BU_TRUE, notFound("None"));
  EXPECT_NE(open("Section", BU_FALSE).section, nullptr);
  EXPECT_EQ(state(), "open, locked");
}

// Waits for the lock, as all tests do that expect the time-out's warning.
TEST_P(OpenTest, OpeningForWritingUnlocksEvenWhereTheLockWasNeverHad) {
  giveSections("<Section/>");
  ASSERT_EQ(cfgLockFile(kMainCopy.c_str()), 0);
  expectRefused("Section", BU_FALSE, lockWarning(kLockTimeout) + openFailed + unlockedTwice);
  EXPECT_THAT(log.records(), ElementsAre(Logged(4, "cfgLockFile", kLockTimeout),
                                         Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_EQ(state(), "closed, locked") << "the mutex stays with its holder";
}

TEST_P(OpenTest, OpeningDiscardsTheDocumentThatIsStillOpen) {
  giveSections("<Section/>");
  const std::string file = device.read(kMainCopy);
  for (const tagBU_BOOL mode : kBothModes) {
    int destroyed = 0;
    family().handle = new WatchedDocument(destroyed);
    const Opened opened = open("Section", mode);
    EXPECT_EQ(destroyed, 1);
    ASSERT_NE(opened.section, nullptr);
    EXPECT_EQ(opened.section->GetDocument(), family().handle);
    EXPECT_EQ(opened.printed, "");
    family().closeRead();
  }
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_P(OpenTest, AFailedOpeningDiscardsTheDocumentThatIsStillOpenToo) {
  int destroyed = 0;
  family().handle = new WatchedDocument(destroyed);
  expectRefused("Section", BU_TRUE, openFailed);
  EXPECT_EQ(destroyed, 1);
}

TEST_P(OpenTest, AMissingSectionDiscardsTheDocumentThatIsStillOpenToo) {
  giveSections("<Section/>");
  open("Section", BU_TRUE);
  expectRefused("None", BU_TRUE, notFound("None"));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_NE(open("Section", BU_TRUE).section, nullptr);
}

TEST_P(OpenTest, ChangesOfADiscardedDocumentAreNotSaved) {
  for (const tagBU_BOOL mode : kBothModes) {
    giveSections("<Section/>");
    open("Section", BU_TRUE).section->SetAttribute("Changed", 1);
    EXPECT_EQ(open("Section", mode).section->Attribute("Changed"), nullptr);
    EXPECT_EQ(state(), mode == BU_TRUE ? "open, unlocked" : "open, locked");
    EXPECT_FALSE(device.exists(kBackupCopy));
  }
  family().closeWrite();
  EXPECT_EQ(device.read(kMainCopy), oneSection());
}

TEST_P(OpenTest, DiscardingADocumentKeepsItsLockSoThatTheNextOpeningTimesOut) {
  giveSections("<Section/>");
  open("Section", BU_FALSE);
  expectRefused("Section", BU_TRUE, lockWarning(kLockTimeout) + openFailed);
  EXPECT_THAT(log.records(), ElementsAre(Logged(4, "cfgLockFile", kLockTimeout)));
  EXPECT_EQ(state(), "closed, locked");
}

TEST_P(OpenTest, ASecondOpeningForWritingDoesNotReleaseTheLockOfTheFirst) {
  giveSections("<Section/>");
  open("Section", BU_FALSE);
  expectRefused("Section", BU_FALSE, lockWarning(kLockTimeout) + openFailed + unlockedTwice);
  EXPECT_EQ(state(), "closed, locked");
}

TEST_P(OpenTest, TheOtherFamilysDocumentIsAnotherOne) {
  const Family& other = GetParam() == &kStreams ? kServices : kStreams;
  device.write(kMainCopy,
               withTop("<TOP><Section/></TOP><") + other.top + "><Section/></" + other.top + ">");
  const XMLElement* section = open("Section", BU_TRUE).section;
  ASSERT_NE(other.open("Section", BU_TRUE), nullptr);
  EXPECT_NE(other.handle, family().handle);
  other.closeRead();
  EXPECT_EQ(other.handle, nullptr);
  EXPECT_EQ(state(), "open, unlocked");
  EXPECT_STREQ(section->Name(), "Section");
}

}  // namespace
}  // namespace camcfg::tests
