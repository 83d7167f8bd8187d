#include <cstddef>
#include <string>
#include <type_traits>

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"
#include "media/media_test.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tinyxml2::XMLElement;

constexpr char kOpenFailed[] = "[Error][CFG][MppStream]: Config File open failed\n";
constexpr char kUnlockedTwice[] =
    "[Warn][Cfg] /cfg0/mpp_cfg.xml has not been locked before unlock!\n";
constexpr char kTimeout[] = "[Warn][Cfg] Lock /cfg0/mpp_cfg.xml timeout, a deadlock may exist!\n";

class StreamDocumentTest : public MediaTest {
 protected:
  StreamDocumentTest() : MediaTest("Stream", "StreamSource", "MppStream", g_STREAM_xmlDoc) {}

  // Opens a section, in the output's stead of a result: 1 for an element, 0 for none.
  Outcome open(const char* section, int readOnly) {
    return observe([&] {
      element = CFG_MPP_Open(section, static_cast<tagBU_BOOL>(readOnly));
      return element == nullptr ? 0 : 1;
    });
  }

  XMLElement* element = nullptr;
};

TEST_F(StreamDocumentTest, ReadModeHandsOutTheSectionOfAnOpenDocumentWithoutALock) {
  give("<VENC Id=\"3\"/>\n");
  EXPECT_EQ(open("StreamSource", 1), (Outcome{1, ""}));
  EXPECT_STREQ(element->Name(), "StreamSource");
  EXPECT_EQ(element->FirstChildElement()->IntAttribute("Id"), 3);
  EXPECT_EQ(element->GetDocument(), g_STREAM_xmlDoc);
  EXPECT_EQ(state(), "open, unlocked");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StreamDocumentTest, WriteModeHandsOutTheSectionWithTheLockHeld) {
  give("");
  EXPECT_EQ(open("StreamSource", 0), (Outcome{1, ""}));
  EXPECT_EQ(element->GetDocument(), g_STREAM_xmlDoc);
  EXPECT_EQ(state(), "open, locked");
}

TEST_F(StreamDocumentTest, FlagOtherThanOneIsWriteMode) {
  give("");
  EXPECT_EQ(open("StreamSource", 2), (Outcome{1, ""}));
  EXPECT_EQ(state(), "open, locked");
  CFG_MPP_CloseWrite();
  EXPECT_EQ(open("None", -1), (Outcome{0, line("Error", "<None> not found")}));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(StreamDocumentTest, FirstStreamAndFirstSectionOfTheNameAreTaken) {
  device.write(CFG_FILE_MPP,
               "<Streams><StreamSource Id=\"1\"/></Streams>\n"
               "<Stream><StreamSources Id=\"2\"/><streamsource Id=\"3\"/><StreamSource Id=\"4\"/>"
               "<StreamSource Id=\"5\"/></Stream>\n"
               "<Stream><StreamSource Id=\"6\"/></Stream>\n");
  EXPECT_EQ(open("StreamSource", 1), (Outcome{1, ""}));
  EXPECT_EQ(element->IntAttribute("Id"), 4);
}

class MissingElementTest : public StreamDocumentTest,
                           public testing::WithParamInterface<std::pair<std::string, std::string>> {
};

TEST_P(MissingElementTest, IsNamedAndLeavesNothingOpenAndNothingLocked) {
  const auto& [contents, name] = GetParam();
  device.write(CFG_FILE_MPP, contents);
  for (const int readOnly : {1, 0}) {
    EXPECT_EQ(open("StreamCache", readOnly),
              (Outcome{0, line("Error", "<" + name + "> not found")}));
    EXPECT_EQ(state(), "closed, unlocked");
  }
  EXPECT_EQ(device.read(CFG_FILE_MPP), contents);
  EXPECT_THAT(log.records(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    All, MissingElementTest,
    testing::Values(std::pair("<LiveMediaService/>", "Stream"),
                    std::pair("<stream><StreamCache/></stream>", "Stream"),
                    std::pair("<Streams><StreamCache/></Streams>", "Stream"),
                    std::pair("<Top><Stream><StreamCache/></Stream></Top>", "Stream"),
                    std::pair("<!-- no element -->", "Stream"),
                    std::pair("<Stream/>", "StreamCache"),
                    std::pair("<Stream><StreamSource/></Stream>", "StreamCache"),
                    std::pair("<Stream><STREAMCACHE/></Stream>", "StreamCache"),
                    std::pair("<Stream/><Stream><StreamCache/></Stream>", "StreamCache")));

TEST_F(StreamDocumentTest, MissingFileIsReportedInReadMode) {
  EXPECT_EQ(open("StreamSource", 1), (Outcome{0, kOpenFailed}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n")));
}

TEST_F(StreamDocumentTest, MissingFileIsUnlockedTwiceInWriteMode) {
  EXPECT_EQ(open("StreamSource", 0), (Outcome{0, std::string(kOpenFailed) + kUnlockedTwice}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_THAT(log.texts(), ElementsAre("Load file /cfg0/mpp_cfg.xml fail\n",
                                       "/cfg0/mpp_cfg.xml has not been locked before unlock!"));
}

TEST_F(StreamDocumentTest, FileThatIsNotWellFormedIsLikeAMissingOne) {
  for (const char* contents : {"", "<Stream><StreamSource></Stream>", "text"}) {
    device.write(CFG_FILE_MPP, contents);
    EXPECT_EQ(open("StreamSource", 1), (Outcome{0, kOpenFailed})) << contents;
    EXPECT_EQ(open("StreamSource", 0), (Outcome{0, std::string(kOpenFailed) + kUnlockedTwice}))
        << contents;
    EXPECT_EQ(state(), "closed, unlocked");
  }
}

TEST_F(StreamDocumentTest, ArgumentsAreNeitherCutNorTakenForFormats) {
  give("");
  const std::string longName(600, 'x');
  EXPECT_EQ(open(longName.c_str(), 1), (Outcome{0, line("Error", "<" + longName + "> not found")}));
  EXPECT_EQ(open("%s%n%d", 1), (Outcome{0, line("Error", "<%s%n%d> not found")}));
  EXPECT_EQ(open("", 1), (Outcome{0, line("Error", "<> not found")}));
}

TEST_F(StreamDocumentTest, NoSectionNameIsLikeAMissingSection) {
  give("<VENC/>\n");
  EXPECT_EQ(open(nullptr, 0), (Outcome{0, line("Error", "<(null)> not found")}));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(StreamDocumentTest, SecondOpenDropsTheFirstDocumentUnsaved) {
  give("");
  open("StreamSource", 1);
  element->SetAttribute("Edited", 1);
  EXPECT_EQ(open("StreamSource", 1), (Outcome{1, ""}));
  EXPECT_EQ(element->Attribute("Edited"), nullptr);
  EXPECT_EQ(state(), "open, unlocked");
  expectNotSaved("");
}

TEST_F(StreamDocumentTest, FailedSecondOpenHasDroppedTheFirstDocument) {
  give("");
  open("StreamSource", 1);
  EXPECT_EQ(open("None", 1), (Outcome{0, line("Error", "<None> not found")}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_EQ(open("StreamSource", 1), (Outcome{1, ""}));
}

// Waits for the lock that the first document still holds.
TEST_F(StreamDocumentTest, SecondOpenDoesNotReleaseTheLockOfTheFirst) {
  give("");
  open("StreamSource", 0);
  EXPECT_EQ(open("StreamSource", 0),
            (Outcome{0, std::string(kTimeout) + kOpenFailed + kUnlockedTwice}));
  EXPECT_EQ(state(), "closed, locked");
}

TEST_F(StreamDocumentTest, CloseReadDropsTheDocumentUnsaved) {
  give("");
  open("StreamSource", 1);
  element->SetAttribute("Edited", 1);
  EXPECT_EQ(observe(CFG_MPP_CloseRead), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  expectNotSaved("");
}

TEST_F(StreamDocumentTest, CloseReadLeavesTheLockOfWriteModeHeld) {
  give("");
  open("StreamSource", 0);
  element->SetAttribute("Edited", 1);
  EXPECT_EQ(observe(CFG_MPP_CloseRead), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, locked");
  expectNotSaved("");
  CFG_UnlockFile(text(CFG_FILE_MPP));
  EXPECT_EQ(state(), "closed, unlocked");
}

TEST_F(StreamDocumentTest, CloseWriteSavesBothCopiesAndReleasesTheLock) {
  give("");
  open("StreamSource", 0);
  element->InsertNewChildElement("Foo")->SetAttribute("Edited", 1);
  EXPECT_EQ(observe(CFG_MPP_CloseWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  expectSaved("<Foo Edited=\"1\"/>\n");
}

TEST_F(StreamDocumentTest, CloseWriteSaysNothingOfASaveThatFailed) {
  give("");
  open("StreamSource", 0);
  device.remove("/cfg0");
  EXPECT_EQ(observe(CFG_MPP_CloseWrite), (Outcome{0, ""}));
  EXPECT_EQ(state(), "closed, unlocked");
  EXPECT_FALSE(device.exists(CFG_FILE_MPP));
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StreamDocumentTest, ClosingNothingDoesNothing) {
  give("");
  EXPECT_EQ(observe(CFG_MPP_CloseWrite), (Outcome{0, ""}));
  EXPECT_EQ(observe(CFG_MPP_CloseRead), (Outcome{0, ""}));
  EXPECT_EQ(g_STREAM_xmlDoc, nullptr);
  expectNotSaved("");
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StreamDocumentTest, LiveMediaDocumentIsAnotherOne) {
  device.write(CFG_FILE_MPP,
               "<Stream><StreamSource/></Stream><LiveMediaService><NDI/></LiveMediaService>");
  open("StreamSource", 1);
  ASSERT_NE(CFG_LM_Open("NDI", BU_TRUE), nullptr);
  EXPECT_NE(g_LM_xmlDoc, g_STREAM_xmlDoc);
  CFG_LM_CloseRead();
  EXPECT_EQ(g_LM_xmlDoc, nullptr);
  EXPECT_EQ(state(), "open, unlocked");
  EXPECT_STREQ(element->Name(), "StreamSource");
}

TEST(StreamResultTest, FailureIsNegativeInThirtyTwoBits) {
  EXPECT_EQ(static_cast<std::uint32_t>(CFG_MPP_ERR), 0x80002205u);
  EXPECT_LT(CFG_MPP_ERR, 0);
}

template <typename Record>
void expectFresh(std::int32_t type) {
  const Record record{};
  EXPECT_EQ(record.s32Type, type);
  EXPECT_EQ(record.s32Id, -1);
  EXPECT_EQ(record.strName, "");
  EXPECT_EQ(record.s32Enabled, 0);
}

TEST(StreamRecordTest, NewSourceHasItsKindAndNothingElse) {
  expectFresh<tag_CFG_STREAM_SOURCE_T>(0);
  expectFresh<tag_CFG_STREAM_SOURCE_VENC_T>(1);
  expectFresh<tag_CFG_STREAM_SOURCE_AI_T>(2);
  expectFresh<tag_CFG_STREAM_SOURCE_AENC_T>(3);
}

TEST(StreamRecordTest, NewCacheIsZeroAndEmpty) {
  const tag_CFG_STREAM_CACHE_T cache;
  EXPECT_EQ(cache.s32Id, 0);
  EXPECT_EQ(cache.strName, "");
  EXPECT_EQ(cache.s32BufSize, 0);
  EXPECT_EQ(cache.s32BufUnit, 0);
  EXPECT_EQ(cache.s32EnabledSrc, 0);
  EXPECT_EQ(cache.s32AllowedMask, 0);
}

// Where a field begins, seen from the record's own beginning.
template <typename Record, typename Field>
std::size_t offset(const Record& record, const Field& field) {
  return static_cast<std::size_t>(reinterpret_cast<const char*>(&field) -
                                  reinterpret_cast<const char*>(&record));
}

TEST(StreamRecordTest, SourceFieldsFollowTheTableInOrder) {
  const tag_CFG_STREAM_SOURCE_T source{};
  const std::size_t text = sizeof(void*) + 8;
  EXPECT_EQ(offset(source, source.s32Type), sizeof(void*));
  EXPECT_EQ(offset(source, source.s32Id), sizeof(void*) + 4);
  EXPECT_EQ(offset(source, source.strName), text);
  EXPECT_EQ(offset(source, source.s32Enabled), text + sizeof(std::string));
  EXPECT_EQ(offset(source, source.s32ChnId), text + sizeof(std::string) + 4);
}

template <typename Kind>
constexpr bool isPlainKind() {
  return std::is_base_of<tag_CFG_STREAM_SOURCE_T, Kind>::value &&
         std::is_convertible<Kind*, tag_CFG_STREAM_SOURCE_T*>::value &&
         std::has_virtual_destructor<Kind>::value &&
         sizeof(Kind) == sizeof(tag_CFG_STREAM_SOURCE_T);
}

TEST(StreamRecordTest, KindsAddNoFieldsAndAreDestroyedThroughTheirBase) {
  EXPECT_TRUE(std::has_virtual_destructor<tag_CFG_STREAM_SOURCE_T>::value);
  EXPECT_TRUE(isPlainKind<tag_CFG_STREAM_SOURCE_VENC_T>());
  EXPECT_TRUE(isPlainKind<tag_CFG_STREAM_SOURCE_AI_T>());
  EXPECT_TRUE(isPlainKind<tag_CFG_STREAM_SOURCE_AENC_T>());
}

TEST(StreamRecordTest, CacheIsPlainAndItsFieldsAreInOrder) {
  EXPECT_FALSE(std::is_polymorphic<tag_CFG_STREAM_CACHE_T>::value);
  const tag_CFG_STREAM_CACHE_T cache;
  const std::size_t behindName = sizeof(void*) + sizeof(std::string);
  EXPECT_EQ(offset(cache, cache.s32Id), 0u);
  EXPECT_EQ(offset(cache, cache.strName), sizeof(void*));
  EXPECT_EQ(offset(cache, cache.s32BufSize), behindName);
  EXPECT_EQ(offset(cache, cache.s32BufUnit), behindName + 4);
  EXPECT_EQ(offset(cache, cache.s32EnabledSrc), behindName + 8);
  EXPECT_EQ(offset(cache, cache.s32AllowedMask), behindName + 12);
}

}  // namespace
}  // namespace camcfg::tests
