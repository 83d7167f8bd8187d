// Watches the store from below: this program's own CFG_GetDocByFileName is called in place of the
// library's, which it calls in turn. Documents handed out report what they held when they are deleted.
#include <dlfcn.h>

#include <functional>
#include <memory>
#include <vector>

#include "media/service_test.h"

namespace {

using tinyxml2::XMLDocument;

struct Opening {
  std::string path;
  int readOnly;

  bool operator==(const Opening& other) const {
    return path == other.path && readOnly == other.readOnly;
  }
};

void PrintTo(const Opening& opening, std::ostream* out) {
  *out << opening.path << " with " << opening.readOnly;
}

std::vector<Opening> openings;
std::vector<std::string> destroyed;
std::function<void()> afterOpening;

class WatchedDocument : public XMLDocument {
 public:
  explicit WatchedDocument(const XMLDocument& document)
      : XMLDocument(document.ProcessEntities(), tinyxml2::PRESERVE_WHITESPACE) {
    document.DeepCopy(this);
  }
  ~WatchedDocument() override {
    tinyxml2::XMLPrinter printer;
    Print(&printer);
    destroyed.emplace_back(printer.CStr());
  }
};

}  // namespace

XMLDocument* CFG_GetDocByFileName(char* pcPath, tagBU_BOOL enReadOnly) {
  static const auto original = reinterpret_cast<decltype(&CFG_GetDocByFileName)>(
      dlsym(RTLD_NEXT, "_Z20CFG_GetDocByFileNamePc10tagBU_BOOL"));
  openings.push_back({pcPath, enReadOnly});
  const std::unique_ptr<XMLDocument> document(original(pcPath, enReadOnly));
  if (afterOpening) afterOpening();
  return document == nullptr ? nullptr : new WatchedDocument(*document);
}

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LiveMediaStoreTest : public LiveMediaTest {
 protected:
  LiveMediaStoreTest() : LiveMediaTest("RTMP") {
    openings.clear();
    destroyed.clear();
    afterOpening = nullptr;
  }

  void SetUp() override { giveSections("<WEBSOCKET/><RTSP/><RTMP/><NDI/><SRT/>"); }
};

template <typename List>
std::function<std::int32_t()> loading(std::int32_t (*loader)(List&)) {
  return [loader] {
    List list;
    return loader(list);
  };
}

template <typename List>
std::function<std::int32_t()> dumping(std::int32_t (*dumper)(const List&)) {
  return [dumper] { return dumper({}); };
}

void expectEachToOpenTheFileOnce(const std::vector<std::function<std::int32_t()>>& calls,
                                 tagBU_BOOL mode) {
  for (const auto& call : calls) {
    openings.clear();
    destroyed.clear();
    EXPECT_EQ(observe(call).result, 0);
    EXPECT_THAT(openings, ElementsAre(Opening{kMainCopy, mode}));
    EXPECT_EQ(destroyed.size(), 1u);
  }
}

TEST_F(LiveMediaStoreTest, EachLoaderOpensTheFileOnceForReadingAndDestroysItsDocument) {
  expectEachToOpenTheFileOnce({loading(CFG_LM_LoadWebsocketConfig), loading(CFG_LM_LoadRtspConfig),
                               loading(CFG_LM_LoadRtmpConfig), loading(CFG_LM_LoadNdiConfig),
                               loading(CFG_LM_LoadSrtConfig)},
                              BU_TRUE);
}

TEST_F(LiveMediaStoreTest, EachDumperOpensTheFileOnceForWritingAndDestroysItsDocument) {
  expectEachToOpenTheFileOnce({dumping(CFG_LM_DumpWebsocketConfig), dumping(CFG_LM_DumpRtspConfig),
                               dumping(CFG_LM_DumpNdiConfig), dumping(CFG_LM_DumpSrtConfig),
                               dumping(CFG_LM_DumpRtmpConfig)},
                              BU_FALSE);
}

TEST_F(LiveMediaStoreTest, AFailedOpeningDestroysItsDocument) {
  for (const tagBU_BOOL mode : {BU_TRUE, BU_FALSE}) {
    destroyed.clear();
    captureOutput([&] { CFG_LM_Open("Unknown", mode); });
    EXPECT_EQ(destroyed.size(), 1u);
  }
}

TEST_F(LiveMediaStoreTest, AFaultKeepsTheDocumentUntilTheNextOpening) {
  giveSections("<SRT><Instance/></SRT>");
  EXPECT_EQ(observe(loading(CFG_LM_LoadSrtConfig)).result, CFG_LM_ERR);
  EXPECT_THAT(destroyed, IsEmpty());
  EXPECT_EQ(observe(loading(CFG_LM_LoadSrtConfig)).result, CFG_LM_ERR);
  EXPECT_EQ(destroyed.size(), 1u);
}

TEST_F(LiveMediaStoreTest, TheModeOfAnOpeningIsHandedOnUnchanged) {
  for (const int mode : {0, 1, 2}) {
    openings.clear();
    ASSERT_NE(CFG_LM_Open("SRT", static_cast<tagBU_BOOL>(mode)), nullptr);
    EXPECT_THAT(openings, ElementsAre(Opening{kMainCopy, mode}));
    CFG_LM_CloseRead();
    if (mode != 1) CFG_UnlockFile(text(CFG_FILE_MPP));
  }
}

TEST_F(LiveMediaStoreTest, ADumpWhoseSaveFailsReportsSuccessNevertheless) {
  afterOpening = [this] { device.remove("/cfg0"); };
  const std::pair<const char*, std::function<std::int32_t()>> kDumpers[] = {
      {"WEBSOCKET", dumping(CFG_LM_DumpWebsocketConfig)},
      {"RTSP", dumping(CFG_LM_DumpRtspConfig)},
      {"NDI", dumping(CFG_LM_DumpNdiConfig)},
      {"SRT", dumping(CFG_LM_DumpSrtConfig)},
  };
  for (const auto& [section, dump] : kDumpers) {
    SetUp();
    EXPECT_EQ(observe(dump),
              (Outcome{0, info(std::string("Update ") + section + " Config success.")}));
    EXPECT_EQ(state(), "closed, unlocked");
    EXPECT_FALSE(device.exists(kMainCopy));
    EXPECT_FALSE(device.exists(kBackupCopy));
  }
}

TEST_F(LiveMediaStoreTest, TheRtmpDumperRewritesItsSectionInTheDocumentThatItDiscards) {
  give("text<!-- comment --><Target Id='9' url='old'/><Foo/>");
  const RtmpList targets{{4, 1, "rtmp://a?b&c", "me", "<%s>", 10, 11},
                         {-1, 0, "", "", "", -1, 7},
                         {4, 2, "x", "u", "p", -8, -1}};
  EXPECT_EQ(observe([&] { return CFG_LM_DumpRtmpConfig(targets); }),
            (Outcome{0, info("Update RTMP Config success.")}));
  EXPECT_THAT(destroyed, ElementsAre(fileWith(
                             R"(<Target Id="4" Enable="true" url="rtmp://a?b&amp;c" username="me" )"
                             R"(password="&lt;%s&gt;">
    <Channel Id="10" Type="Video"/>
    <Channel Id="11" Type="Audio"/>
</Target>
<Target Id="-1" Enable="false" url="" username="" password="">
    <Channel Id="7" Type="Audio"/>
</Target>
<Target Id="4" Enable="true" url="x" username="u" password="p">
    <Channel Id="-8" Type="Video"/>
</Target>)")));
}

TEST_F(LiveMediaStoreTest, AnEmptyListOfTargetsEmptiesTheSectionInTheDocumentThatIsDiscarded) {
  give("text<!-- comment --><Target Id='9' url='old'/>");
  captureOutput([] { CFG_LM_DumpRtmpConfig({}); });
  EXPECT_THAT(destroyed, ElementsAre(fileWith("")));
}

}  // namespace
}  // namespace camcfg::tests
