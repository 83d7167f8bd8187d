#include <cctype>
#include <functional>

#include "media/livemedia_test.h"
#include "media/records.h"

namespace camcfg::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ListLoad {
  Outcome outcome;
  std::size_t kept;  // records in the list afterwards
};

/// What differs between the services where they behave alike.
struct Service {
  const char* section;
  const char* entry;        // a complete entry
  const char* faultyEntry;  // lacks something that is required
  std::string fault;        // what is printed about it
  const char* warnsOf;      // the path that the warning of an unknown element names
  std::function<ListLoad(std::size_t)> loadOver;  // loads into a list of so many records
  std::function<Outcome(std::size_t)> dumpNew;    // dumps a list of so many new records
  bool emptiedBeforeOpening = false;
  bool saves = true;
};

void PrintTo(const Service& service, std::ostream* out) {
  *out << service.section;
}

template <typename Record>
std::list<Record> newRecords(std::size_t count, const std::list<Record>*) {
  return std::list<Record>(count);
}

RtspList newRecords(std::size_t count, const RtspList*) {
  return shared(std::list<tag_CFG_RTSP_SESSION_T>(count));
}

template <typename List>
std::function<ListLoad(std::size_t)> loading(std::int32_t (*loader)(List&)) {
  return [loader](std::size_t before) {
    List records = newRecords(before, static_cast<List*>(nullptr));
    const Outcome outcome = observe([&] { return loader(records); });
    return ListLoad{outcome, records.size()};
  };
}

template <typename List>
std::function<Outcome(std::size_t)> dumping(std::int32_t (*dumper)(const List&)) {
  return [dumper](std::size_t count) {
    return observe([&] { return dumper(newRecords(count, static_cast<List*>(nullptr))); });
  };
}

const Service kWebsocket{"WEBSOCKET",
                         "<Channel Id='1' Name='a'/>",
                         "<Channel Id='2'/>",
                         required("Name", "<WEBSOCKET><Channel>"),
                         "<WEBSOCKET>",
                         loading(CFG_LM_LoadWebsocketConfig),
                         dumping(CFG_LM_DumpWebsocketConfig),
                         true};
const Service kRtsp{"RTSP",
                    "<MediaGroup Name='a'><Channel Id='1' Name='b'/></MediaGroup>",
                    "<MediaGroup Name='c'><Channel Id='1' Name='d'/><Channel Id='2'/></MediaGroup>",
                    required("Name", "<RTSP><MediaGroup><Channel>"),
                    "<RTSP>",
                    loading(CFG_LM_LoadRtspConfig),
                    dumping(CFG_LM_DumpRtspConfig)};
const Service kRtmp{"RTMP",
                    "<Target Id='1' url='a' username='b' password='c'/>",
                    "<Target Id='2' username='b' password='c'/>",
                    required("url", "<RTSP><MediaGroup>"),
                    "<RTSP>",
                    loading(CFG_LM_LoadRtmpConfig),
                    dumping(CFG_LM_DumpRtmpConfig),
                    false,
                    false};
const Service kNdi{"NDI",
                   "<Instance Id='1' DiscoveryServer='' GroupName='' MainStreamName=''/>",
                   "<Instance Id='2'><Channel Id='1'/></Instance>",
                   required("Type", "<NDI><Session><Channel>"),
                   "<NDI>",
                   loading(CFG_LM_LoadNdiConfig),
                   dumping(CFG_LM_DumpNdiConfig)};
const Service kSrt{"SRT",
                   "<Instance Id='1' Mode='Listener' Port='9000'/>",
                   "<Instance Id='2' Mode='Caller' Port='9000'/>",
                   required("Hostname", "<SRT><Instance>"),
                   "<SRT>",
                   loading(CFG_LM_LoadSrtConfig),
                   dumping(CFG_LM_DumpSrtConfig)};

class EveryLiveMediaServiceTest : public LiveMediaTest,
                                  public testing::WithParamInterface<Service> {
 protected:
  EveryLiveMediaServiceTest() : LiveMediaTest(GetParam().section) {}

  static std::string sectionOf(const std::string& entries) {
    return std::string("<") + GetParam().section + ">" + entries + "</" + GetParam().section + ">";
  }

  static std::string loadSuccess() {
    return info(std::string("Load ") + GetParam().section + " Config success.");
  }

  static std::string dumpSuccess() {
    return info(std::string("Update ") + GetParam().section + " Config success.");
  }

  void expectLoadFailsToOpen(const std::string& printed) {
    const ListLoad load = GetParam().loadOver(3);
    EXPECT_EQ(load.outcome, (Outcome{CFG_LM_ERR, printed}));
    EXPECT_EQ(load.kept, GetParam().emptiedBeforeOpening ? 0u : 3u);
    EXPECT_EQ(state(), "closed, unlocked");
  }

  void expectDumpFailsToOpen(const std::string& printed) {
    EXPECT_EQ(GetParam().dumpNew(1), (Outcome{CFG_LM_ERR, printed}));
    EXPECT_EQ(state(), "closed, unlocked");
    EXPECT_FALSE(device.exists(kBackupCopy));
  }

  void expectLoaded(std::size_t records, const std::string& warnings = "") {
    const ListLoad load = GetParam().loadOver(3);
    EXPECT_EQ(load.outcome, (Outcome{0, warnings + loadSuccess()}));
    EXPECT_EQ(load.kept, records);
    EXPECT_EQ(state(), "closed, unlocked");
  }
};

TEST_P(EveryLiveMediaServiceTest, MissingFileFailsTheLoad) {
  expectLoadFailsToOpen(error("Config File open failed"));
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n")));
}

TEST_P(EveryLiveMediaServiceTest, MissingFileFailsTheDumpAndIsUnlockedOnceTooOften) {
  expectDumpFailsToOpen(error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_THAT(log.records(),
              ElementsAre(Logged(3, "CFG_GetDocByFileName", "Load file /cfg0/mpp_cfg.xml fail\n"),
                          Logged(4, "cfgUnlockFile", kNotLocked)));
  EXPECT_FALSE(device.exists(kMainCopy));
}

TEST_P(EveryLiveMediaServiceTest, BrokenFileFailsTheLoadAndTheDump) {
  const std::string broken = "<LiveMediaService>" + sectionOf(GetParam().entry);
  device.write(kMainCopy, broken);
  expectLoadFailsToOpen(error("Config File open failed"));
  expectDumpFailsToOpen(error("Config File open failed") + lockWarning(kNotLocked));
  EXPECT_EQ(device.read(kMainCopy), broken);
}

TEST_P(EveryLiveMediaServiceTest, FileWithoutLiveMediaServiceFailsTheLoadAndTheDump) {
  const std::string file = "<Stream>" + sectionOf(GetParam().entry) + "</Stream>";
  device.write(kMainCopy, file);
  expectLoadFailsToOpen(error("<LiveMediaService> not found"));
  expectDumpFailsToOpen(error("<LiveMediaService> not found"));
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EveryLiveMediaServiceTest, FileWithoutTheSectionFailsTheLoadAndTheDump) {
  const std::string file = "<LiveMediaService><Other>" + sectionOf(GetParam().entry) +
                           "</Other></LiveMediaService>" + sectionOf(GetParam().entry);
  device.write(kMainCopy, file);
  const std::string notFound = error(std::string("<") + GetParam().section + "> not found");
  expectLoadFailsToOpen(notFound);
  expectDumpFailsToOpen(notFound);
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EveryLiveMediaServiceTest, SectionNameInAnotherCaseIsNotFound) {
  std::string name = GetParam().section;
  name.back() = static_cast<char>(std::tolower(name.back()));
  giveSections("<" + name + ">" + GetParam().entry + "</" + name + ">");
  const std::string notFound = error(std::string("<") + GetParam().section + "> not found");
  expectLoadFailsToOpen(notFound);
  expectDumpFailsToOpen(notFound);
}

TEST_P(EveryLiveMediaServiceTest, SectionWithoutElementsLoadsAsAnEmptyList) {
  for (const char* contents : {"", " \n ", "text", "<!-- comment -->", "<![CDATA[<Channel/>]]>"}) {
    SCOPED_TRACE(contents);
    give(contents);
    expectLoaded(0);
  }
  giveSections(std::string("<") + GetParam().section + " Port='80'/>");
  expectLoaded(0);
}

TEST_P(EveryLiveMediaServiceTest, LoadedEntriesReplaceWhatTheListHeld) {
  give(GetParam().entry);
  expectLoaded(1);
  give(std::string(GetParam().entry) + GetParam().entry);
  expectLoaded(2);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EveryLiveMediaServiceTest, LoadingWritesNothing) {
  give(GetParam().entry);
  const std::string file = device.read(kMainCopy);
  GetParam().loadOver(0);
  EXPECT_EQ(device.read(kMainCopy), file);
  EXPECT_FALSE(device.exists(kBackupCopy));
}

TEST_P(EveryLiveMediaServiceTest, CommentsAndTextBetweenTheEntriesArePassedOverInSilence) {
  give(std::string("a<!-- b -->") + GetParam().entry + "c<![CDATA[d]]>" + GetParam().entry +
       "<!-- e --> f");
  expectLoaded(2);
}

TEST_P(EveryLiveMediaServiceTest, UnknownElementIsSkippedWithAWarning) {
  const std::string entryName =
      std::string(GetParam().entry, 1, std::string(GetParam().entry).find(' ') - 1);
  const std::string longer = entryName + "s";
  const std::string shorter = entryName.substr(0, entryName.size() - 1);
  const std::string huge(1000, 'x');
  give("<Foo/>" + std::string(GetParam().entry) + "<" + longer + " Id='1'>" + GetParam().entry +
       "</" + longer + "><" + shorter + "/><" + huge + "/>" + GetParam().entry);
  const char* path = GetParam().warnsOf;
  expectLoaded(2, unsupported("Foo", path) + unsupported(longer, path) +
                      unsupported(shorter, path) + unsupported(huge, path));
}

TEST_P(EveryLiveMediaServiceTest, AFaultStopsTheLoadAndKeepsTheRecordsBeforeIt) {
  give(std::string(GetParam().entry) + GetParam().entry + "<Foo/>" + GetParam().faultyEntry +
       GetParam().entry + GetParam().faultyEntry + "<Bar/>");
  const ListLoad load = GetParam().loadOver(3);
  EXPECT_EQ(load.outcome,
            (Outcome{CFG_LM_ERR, unsupported("Foo", GetParam().warnsOf) + GetParam().fault}));
  EXPECT_EQ(load.kept, 2u);
}

TEST_P(EveryLiveMediaServiceTest, AFaultLeavesTheDocumentOpenAndNoLockHeld) {
  give(GetParam().faultyEntry);
  EXPECT_EQ(GetParam().loadOver(3).kept, 0u);
  ASSERT_EQ(state(), "open, unlocked");
  EXPECT_NE(g_LM_xmlDoc->FirstChildElement("LiveMediaService"), nullptr);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EveryLiveMediaServiceTest, AfterAFaultTheNextLoadReadsTheFileAgain) {
  give(GetParam().faultyEntry);
  GetParam().loadOver(0);
  give(GetParam().entry);
  expectLoaded(1);
}

TEST_P(EveryLiveMediaServiceTest, AfterAFaultADumpReadsTheFileAgain) {
  give(GetParam().faultyEntry);
  GetParam().loadOver(0);
  giveSections("<Later/>" + sectionOf(GetParam().faultyEntry));
  const std::string file = device.read(kMainCopy);
  EXPECT_EQ(GetParam().dumpNew(0), (Outcome{0, dumpSuccess()}));
  const std::string rewritten = std::string("<LiveMediaService>\n    <Later/>\n    <") +
                                GetParam().section + "/>\n</LiveMediaService>\n";
  EXPECT_EQ(device.read(kMainCopy), GetParam().saves ? rewritten : file);
}

TEST_P(EveryLiveMediaServiceTest, DumpingReportsSuccessAndEndsTheSession) {
  give(GetParam().entry);
  EXPECT_EQ(GetParam().dumpNew(1), (Outcome{0, dumpSuccess()}));
  EXPECT_EQ(state(), GetParam().saves ? "closed, unlocked" : "closed, locked");
  EXPECT_EQ(device.exists(kBackupCopy), GetParam().saves);
  EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(EveryLiveMediaServiceTest, DumpingRewritesTheWholeSectionAndNothingElse) {
  const std::string section = GetParam().section;
  const std::string before =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!-- kept -->\n"
      "<Stream>\n"
      "    <Source Id=\"1\">kept</Source>\n"
      "</Stream>\n"
      "\n"
      "<LiveMediaService Kept=\"yes\">\n"
      "    <!-- kept as well -->\n"
      "    <Other>\n"
      "        <Channel Id=\"1\" Name=\"a\"/>\n"
      "    </Other>\n"
      "    <" +
      section + " Kept=\"too\"";
  const std::string after = "    <" + section +
                            ">\n"
                            "        <!-- a second section of the name -->\n"
                            "    </" +
                            section +
                            ">\n"
                            "</LiveMediaService>\n"
                            "\n"
                            "<LiveMediaService/>\n";
  const std::string file = before + ">dropped<!-- dropped --><Foo>dropped</Foo>" +
                           GetParam().entry + "<![CDATA[dropped]]></" + section + ">\n" + after;
  device.write(kMainCopy, file);
  device.write(kBackupCopy, "an older backup, longer than the file that follows it" + file + file);
  EXPECT_EQ(GetParam().dumpNew(0).result, 0);
  if (GetParam().saves) {
    EXPECT_EQ(device.read(kMainCopy), before + "/>\n" + after);
    EXPECT_EQ(device.read(kBackupCopy), before + "/>\n" + after);
  } else {
    EXPECT_EQ(device.read(kMainCopy), file);
  }
}

INSTANTIATE_TEST_SUITE_P(LiveMedia, EveryLiveMediaServiceTest,
                         testing::Values(kWebsocket, kRtsp, kRtmp, kNdi, kSrt),
                         [](const auto& service) { return std::string(service.param.section); });

}  // namespace
}  // namespace camcfg::tests
