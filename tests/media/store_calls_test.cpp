// Watches the store from below: this program's own CFG_GetDocByFileName is called in place of the
// library's, which it calls in turn. Documents handed out report
// what they held when they are deleted.
#include <dlfcn.h>

#include <functional>
#include <memory>
#include <vector>

#include "media/media_test.h"
#include "media/records.h"

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

class MediaStoreTest : public MediaTest {
 protected:
  MediaStoreTest() : MediaTest(kServices, "RTMP") {
    openings.clear();
    destroyed.clear();
    afterOpening = nullptr;
  }

  void SetUp() override {
    device.write(kMainCopy,
                 "<Stream><StreamSource/><StreamCache/></Stream><LiveMediaService><WEBSOCKET/>"
                 "<RTSP/><RTMP/><NDI/><SRT/></LiveMediaService>");
  }
};

using Call = std::function<std::int32_t()>;

template <typename List>
Call loading(std::int32_t (*loader)(List&)) {
  return [loader] {
    List list;
    return loader(list);
  };
}

template <typename List>
Call dumping(std::int32_t (*dumper)(const List&)) {
  return [dumper] { return dumper({}); };
}

void expectEachToOpenTheFileOnce(const std::vector<Call>& calls, tagBU_BOOL mode) {
  for (const auto& call : calls) {
    openings.clear();
    destroyed.clear();
    EXPECT_EQ(observe(call).result, 0);
    EXPECT_THAT(openings, ElementsAre(Opening{kMainCopy, mode}));
    EXPECT_EQ(destroyed.size(), 1u);
  }
}

TEST_F(MediaStoreTest, EachLoaderOpensTheFileOnceForReadingAndDestroysItsDocument) {
  expectEachToOpenTheFileOnce(
      {loading(CFG_MPP_LoadStreamSourceConfig), loading(CFG_MPP_LoadStreamCacheConfig),
       loading(CFG_LM_LoadWebsocketConfig), loading(CFG_LM_LoadRtspConfig),
       loading(CFG_LM_LoadRtmpConfig), loading(CFG_LM_LoadNdiConfig),
       loading(CFG_LM_LoadSrtConfig)},
      BU_TRUE);
}

TEST_F(MediaStoreTest, EachDumperOpensTheFileOnceForWritingAndDestroysItsDocument) {
  expectEachToOpenTheFileOnce(
      {dumping(CFG_MPP_DumpStreamSourceConfig), dumping(CFG_MPP_DumpStreamCacheConfig),
       dumping(CFG_LM_DumpWebsocketConfig), dumping(CFG_LM_DumpRtspConfig),
       dumping(CFG_LM_DumpNdiConfig), dumping(CFG_LM_DumpSrtConfig),
       dumping(CFG_LM_DumpRtmpConfig)},
      BU_FALSE);
}

TEST_F(MediaStoreTest, AFailedOpeningDestroysItsDocument) {
  for (const Family* family : {&kStreams, &kServices})
    for (const tagBU_BOOL mode : {BU_TRUE, BU_FALSE}) {
      destroyed.clear();
      captureOutput([&] { family->open("Unknown", mode); });
      EXPECT_EQ(destroyed.size(), 1u);
    }
}

TEST_F(MediaStoreTest, AFaultKeepsTheDocumentUntilTheNextOpening) {
  giveSections("<SRT><Instance/></SRT>");
  EXPECT_EQ(observe(loading(CFG_LM_LoadSrtConfig)).result, CFG_LM_ERR);
  EXPECT_THAT(destroyed, IsEmpty());
  EXPECT_EQ(observe(loading(CFG_LM_LoadSrtConfig)).result, CFG_LM_ERR);
  EXPECT_EQ(destroyed.size(), 1u);
}

TEST_F(MediaStoreTest, TheModeOfAnOpeningIsHandedOnUnchanged) {
  for (const auto& [family, section] : {std::pair(&kStreams, "StreamCache"), {&kServices, "SRT"}})
    for (const int mode : {0, 1, 2}) {
      openings.clear();
      ASSERT_NE(family->open(section, static_cast<tagBU_BOOL>(mode)), nullptr);
      EXPECT_THAT(openings, ElementsAre(Opening{kMainCopy, mode}));
      family->closeRead();
      if (mode != 1) CFG_UnlockFile(text(CFG_FILE_MPP));
    }
}

TEST_F(MediaStoreTest, ADumpWhoseSaveFailsReportsSuccessNevertheless) {
  afterOpening = [this] { device.remove("/cfg0"); };
  const auto success = [](const std::string& section) {
    return kServices.info("Update " + section + " Config success.");
  };
  const std::pair<Call, std::string> kDumps[] = {
      {dumping(CFG_MPP_DumpStreamSourceConfig), ""},
      {dumping(CFG_MPP_DumpStreamCacheConfig), ""},
      {dumping(CFG_LM_DumpWebsocketConfig), success("WEBSOCKET")},
      {dumping(CFG_LM_DumpRtspConfig), success("RTSP")},
      {dumping(CFG_LM_DumpNdiConfig), success("NDI")},
      {dumping(CFG_LM_DumpSrtConfig), success("SRT")},
  };
  for (const auto& [dump, printed] : kDumps) {
    SetUp();
    EXPECT_EQ(observe(dump), (Outcome{0, printed}));
    EXPECT_EQ(state(), "closed, unlocked");
    EXPECT_EQ(kStreams.handle, nullptr);
    EXPECT_FALSE(device.exists(kMainCopy));
    EXPECT_FALSE(device.exists(kBackupCopy));
  }
}

TEST_F(MediaStoreTest, TheRtmpDumperRewritesItsSectionInTheDocumentThatItDiscards) {
  give("text<!-- comment --><Target Id='9' url='old'/><Foo/>");
  const RtmpList targets{{4, 1, "rtmp://a?b&c", "me", "<%s>", 10, 11},
                         {-1, 0, "", "", "", -1, 7},
                         {4, 2, "x", "u", "p", -8, -1}};
  EXPECT_EQ(observe([&] { return CFG_LM_DumpRtmpConfig(targets); }),
            (Outcome{0, kServices.info("Update RTMP Config success.")}));
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

TEST_F(MediaStoreTest, AnEmptyListOfTargetsEmptiesTheSectionInTheDocumentThatIsDiscarded) {
  give("text<!-- comment --><Target Id='9' url='old'/>");
  captureOutput([] { CFG_LM_DumpRtmpConfig({}); });
  EXPECT_THAT(destroyed, ElementsAre(fileWith("")));
}

}  // namespace
}  // namespace camcfg::tests
