#include <cstdint>
#include <type_traits>

#include "media/livemedia_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tinyxml2::XMLElement;

static_assert(static_cast<std::uint32_t>(CFG_LM_ERR) == 0x80002305u);
static_assert(CFG_LM_ERR < 0 && sizeof CFG_LM_ERR == 4);
static_assert(std::is_same<decltype(CFG_LM_CloseRead()), std::int32_t>());
static_assert(std::is_same<decltype(CFG_LM_CloseWrite()), std::int32_t>());
static_assert(std::is_same<decltype(g_LM_xmlDoc), tinyxml2::XMLDocument*>());

// Represents a session that somebody left open; counts those destroyed.
class WatchedDocument : public tinyxml2::XMLDocument {
 public:
  explicit WatchedDocument(int& destroyed) : destroyed_(destroyed) { Parse("<Watched/>"); }
  ~WatchedDocument() override { ++destroyed_; }

 private:
  int& destroyed_;
};

class LiveMediaDocumentTest : public LiveMediaTest {
 protected:
  LiveMediaDocumentTest() : LiveMediaTest("SRT") {}

  struct Opened {
    XMLElement* section;
    std::string printed;
  };

  static Opened open(const char* section, tagBU_BOOL readOnly) {
    Opened opened{};
    opened.printed = captureOutput([&] { opened.section = CFG_LM_Open(section, readOnly); });
    return opened;
  }

  static Opened openFails(const char* section, tagBU_BOOL readOnly) {
    const Opened opened = open(section, readOnly);
    EXPECT_EQ(opened.section, nullptr);
    EXPECT_EQ(g_LM_xmlDoc, nullptr);
    return opened;
  }
};

const tagBU_BOOL kBothModes[] = {BU_TRUE, BU_FALSE};

TEST_F(LiveMediaDocumentTest, NoDocumentIsOpenAtFirst) {
  EXPECT_EQ(g_LM_xmlDoc, nullptr);
}

TEST_F(LiveMediaDocumentTest, OpeningForReadingFindsTheSectionAndHoldsNoLock) {
  giveSections("<RTSP Mark='here'/>");
  const Opened opened = open("RTSP", BU_TRUE);
  ASSERT_NE(opened.section, nullptr);
  EXPECT_STREQ(opened.section->Attribute("Mark"), "here");
  EXPECT_EQ(opened.section->GetDocument(), g_LM_xmlDoc);
  EXPECT_EQ(opened.printed, "");
  EXPECT_EQ(state(), "open, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LiveMediaDocumentTest, OpeningForWritingFindsTheSectionAndHoldsTheLock) {
  giveSections("<RTSP Mark='here'/>");
  const Opened opened = open("RTSP", BU_FALSE);
  ASSERT_NE(opened.section, nullptr);
  EXPECT_STREQ(opened.section->Attribute("Mark"), "here");
  EXPECT_EQ(opened.section->GetDocument(), g_LM_xmlDoc);
  EXPECT_EQ(opened.printed, "");
  EXPECT_EQ(state(), "open, locked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LiveMediaDocumentTest, TheDocumentIsLoadedWithEntitiesProcessed) {
  giveSections("<RTSP Mark='&lt;&#65;'/>");
  EXPECT_STREQ(open("RTSP", BU_TRUE).section->Attribute("Mark"), "<A");
}

TEST_F(LiveMediaDocumentTest, TheFirstElementOfEachNameIsTaken) {
  device.write(kMainCopy,
               "<!-- text --><Stream><NDI Mark='stream'/></Stream>"
               "<LiveMediaService><RTSP><NDI Mark='deeper'/></RTSP><NDI Mark='first'/>"
               "<NDI Mark='second'/></LiveMediaService>"
               "<LiveMediaService><NDI Mark='third'/></LiveMediaService>");
  EXPECT_STREQ(open("NDI", BU_TRUE).section->Attribute("Mark"), "first");
}

TEST_F(LiveMediaDocumentTest, ASectionOfAnyNameCanBeOpened) {
  giveSections("<Anything/>");
  EXPECT_NE(open("Anything", BU_TRUE).section, nullptr);
}

TEST_F(LiveMediaDocumentTest, MissingFileFailsToOpenForReading) {
  EXPECT_EQ(openFails("SRT", BU_TRUE).printed, error("Config File open failed"));
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n")));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(LiveMediaDocumentTest, MissingFileFailsToOpenForWritingAndIsUnlockedOnceTooOften) {
  EXPECT_EQ(openFails("SRT", BU_FALSE).printed,
            error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n"),
                          Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(LiveMediaDocumentTest, BrokenFileFailsLikeAMissingOne) {
  device.write(kMainCopy, "<LiveMediaService><SRT></LiveMediaService>");
  EXPECT_EQ(openFails("SRT", BU_TRUE).printed, error("Config File open failed"));
  EXPECT_EQ(openFails("SRT", BU_FALSE).printed,
            error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_THAT(log.texts(), ElementsAre("Load file /cfg0/mpp_cfg.xml fail\n",
                                       "Load file /cfg0/mpp_cfg.xml fail\n", kNotLocked));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(LiveMediaDocumentTest, EmptyFileFailsLikeAMissingOne) {
  device.write(kMainCopy, "");
  EXPECT_EQ(openFails("SRT", BU_TRUE).printed, error("Config File open failed"));
}

TEST_F(LiveMediaDocumentTest, FileWithoutLiveMediaServiceIsReportedAndUnlockedOnce) {
  for (const char* file : {"<Stream/>", "<livemediaservice><SRT/></livemediaservice>",
                           "<LiveMediaServices><SRT/></LiveMediaServices>", "<!-- empty -->",
                           "<Root><LiveMediaService><SRT/></LiveMediaService></Root>"}) {
    for (const tagBU_BOOL mode : kBothModes) {
      SCOPED_TRACE(std::string(file) + (mode == BU_TRUE ? " reading" : " writing"));
      device.write(kMainCopy, file);
      EXPECT_EQ(openFails("SRT", mode).printed, error("<LiveMediaService> not found"));
      EXPECT_EQ(state(), "closed, unlocked");
    }
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LiveMediaDocumentTest, FileWithoutTheSectionIsReportedAndUnlockedOnce) {
  for (const char* file : {"<LiveMediaService/>", "<LiveMediaService><Srt/></LiveMediaService>",
                           "<LiveMediaService><RTSP><SRT/></RTSP></LiveMediaService>",
                           "<LiveMediaService><SRTs/></LiveMediaService><SRT/>",
                           "<LiveMediaService/><LiveMediaService><SRT/></LiveMediaService>"}) {
    for (const tagBU_BOOL mode : kBothModes) {
      SCOPED_TRACE(std::string(file) + (mode == BU_TRUE ? " reading" : " writing"));
      device.write(kMainCopy, file);
      EXPECT_EQ(openFails("SRT", mode).printed, error("<SRT> not found"));
      EXPECT_EQ(state(), "closed, unlocked");
    }
  }
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LiveMediaDocumentTest, ASectionNameIsPrintedWholeWhateverItContains) {
  giveSections("<SRT/>");
  const std::string name = "%s%n%d 100% " + std::string(700, 'x') + "%s";
  EXPECT_EQ(openFails(name.c_str(), BU_TRUE).printed, error("<" + name + "> not found"));
}

TEST_F(LiveMediaDocumentTest, AfterAFailedOpeningTheNextOneSucceeds) {
  giveSections("<RTSP/>");
  openFails("SRT", BU_FALSE);
  openFails("SRT", BU_TRUE);
  EXPECT_NE(open("RTSP", BU_FALSE).section, nullptr);
  EXPECT_EQ(state(), "open, locked");
}

TEST_F(LiveMediaDocumentTest, OpeningForWritingUnlocksEvenWhereTheLockWasNeverHad) {
  giveSections("<SRT/>");
  ASSERT_EQ(cfgLockFile(kMainCopy.c_str()), 0);
  EXPECT_EQ(openFails("SRT", BU_FALSE).printed,
            lockWarning(kLockTimeout) + error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_THAT(log.records(), ElementsAre(Logged(4, "cfgLockFile", kLockTimeout),
                                         Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_EQ(state(), "closed, locked") << "the mutex stays with its holder";
}

TEST_F(LiveMediaDocumentTest, OpeningDiscardsTheDocumentThatIsStillOpen) {
  giveSections("<SRT/>");
  for (const tagBU_BOOL mode : kBothModes) {
    int destroyed = 0;
    g_LM_xmlDoc = new WatchedDocument(destroyed);
    const Opened opened = open("SRT", mode);
    EXPECT_EQ(destroyed, 1);
    ASSERT_NE(opened.section, nullptr);
    EXPECT_EQ(opened.section->GetDocument(), g_LM_xmlDoc);
    EXPECT_EQ(opened.printed, "");
    CFG_LM_CloseRead();
  }
  EXPECT_EQ(device.read(kMainCopy), "<LiveMediaService><SRT/></LiveMediaService>");
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_F(LiveMediaDocumentTest, AFailedOpeningDiscardsTheDocumentThatIsStillOpenToo) {
  int destroyed = 0;
  g_LM_xmlDoc = new WatchedDocument(destroyed);
  openFails("SRT", BU_TRUE);
  EXPECT_EQ(destroyed, 1);
}

TEST_F(LiveMediaDocumentTest, ChangesOfADiscardedSessionAreNotSaved) {
  giveSections("<SRT/>");
  open("SRT", BU_TRUE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(open("SRT", BU_FALSE).section->Attribute("Changed"), nullptr);
  CFG_LM_CloseWrite();
  EXPECT_EQ(device.read(kMainCopy), "<LiveMediaService>\n    <SRT/>\n</LiveMediaService>\n");
}

TEST_F(LiveMediaDocumentTest, DiscardingAWriteSessionKeepsItsLockSoThatTheNextOpeningTimesOut) {
  giveSections("<SRT/>");
  open("SRT", BU_FALSE);
  EXPECT_EQ(openFails("SRT", BU_TRUE).printed,
            lockWarning(kLockTimeout) + error("Config File open failed"));
  EXPECT_THAT(log.records(), ElementsAre(Logged(4, "cfgLockFile", kLockTimeout)));
  EXPECT_EQ(state(), "closed, locked");
}

TEST_F(LiveMediaDocumentTest, ClosingWithNoDocumentOpenDoesNothing) {
  giveSections("<SRT/>");
  EXPECT_EQ(observe(CFG_LM_CloseRead), (Outcome{0, ""}));
  EXPECT_EQ(observe(CFG_LM_CloseWrite), (Outcome{0, ""}));
  EXPECT_THAT(log.records(), IsEmpty());
  EXPECT_EQ(device.read(kMainCopy), "<LiveMediaService><SRT/></LiveMediaService>");
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_F(LiveMediaDocumentTest, ClosingAReadSessionDestroysTheDocumentUnsaved) {
  giveSections("<SRT/>");
  int destroyed = 0;
  g_LM_xmlDoc = new WatchedDocument(destroyed);
  EXPECT_EQ(observe(CFG_LM_CloseRead), (Outcome{0, ""}));
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_EQ(device.read(kMainCopy), "<LiveMediaService><SRT/></LiveMediaService>");
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_F(LiveMediaDocumentTest, ClosingAWriteSessionAsAReadSessionLeavesTheLockHeld) {
  giveSections("<SRT/>");
  open("SRT", BU_FALSE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(CFG_LM_CloseRead(), 0);
  EXPECT_EQ(state(), "closed, locked");
  EXPECT_EQ(device.read(kMainCopy), "<LiveMediaService><SRT/></LiveMediaService>");
  CFG_UnlockFile(text(CFG_FILE_MPP));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LiveMediaDocumentTest, ClosingAWriteSessionSavesBothCopiesAndUnlocks) {
  giveSections("<SRT/>");
  open("SRT", BU_FALSE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(observe(CFG_LM_CloseWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  const std::string saved = "<LiveMediaService>\n    <SRT Changed=\"1\"/>\n</LiveMediaService>\n";
  EXPECT_EQ(device.read(kMainCopy), saved);
  EXPECT_EQ(device.read(kBackupCopy), saved);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LiveMediaDocumentTest, ClosingForWritingDestroysTheDocument) {
  int destroyed = 0;
  g_LM_xmlDoc = new WatchedDocument(destroyed);
  captureOutput(CFG_LM_CloseWrite);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(g_LM_xmlDoc, nullptr);
  EXPECT_EQ(device.read(kMainCopy), "<Watched/>\n");
}

TEST_F(LiveMediaDocumentTest, ClosingAReadSessionAsAWriteSessionSavesAndWarnsOfTheLock) {
  giveSections("<SRT/>");
  open("SRT", BU_TRUE).section->SetAttribute("Changed", 1);
  EXPECT_EQ(observe(CFG_LM_CloseWrite), (Outcome{0, lockWarning(kNotLocked)}));
  EXPECT_THAT(log.records(), ElementsAre(Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_EQ(device.read(kBackupCopy),
            "<LiveMediaService>\n    <SRT Changed=\"1\"/>\n</LiveMediaService>\n");
}

TEST_F(LiveMediaDocumentTest, ClosingAWriteSessionIgnoresAFailedSave) {
  giveSections("<SRT/>");
  open("SRT", BU_FALSE);
  device.remove("/cfg0");
  EXPECT_EQ(observe(CFG_LM_CloseWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_FALSE(device.exists(kBackupCopy));
}

}  // namespace
}  // namespace camcfg::tests
