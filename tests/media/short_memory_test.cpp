#include <functional>

#include "media/media_test.h"
#include "media/records.h"

namespace camcfg::tests {
namespace {

// Longer than what a std::string holds without an allocation.
const std::string kLong = "a name that does not fit into a std::string itself";

// Every section with entries in it. Nested so deep, the document needs memory to be saved as well.
std::string wholeFile() {
  const std::string channels = "<Channel Id='1' Type='Audio' Name='" + kLong + "'/>";
  return "<Stream><StreamSource><VENC Id='0' Name='" + kLong +
         "' ChnId='0'/><AI Id='1' AiId='0'/><AENC Id='2' AencId='0'/></StreamSource>"
         "<StreamCache><Cache Id='0' Name='" +
         kLong +
         "' BufferSizeKB='1'><AllowedStreamSource Id='0' Default='1'/></Cache></StreamCache>"
         "</Stream><LiveMediaService><WEBSOCKET>" +
         channels + channels + "</WEBSOCKET><RTSP><MediaGroup Name='" + kLong + "'>" + channels +
         "</MediaGroup></RTSP><RTMP><Target Id='1' url='" + kLong + "' username='" + kLong + "'>" +
         channels + "</Target></RTMP><NDI><Instance Id='1' GroupName='" + kLong + "'>" + channels +
         "</Instance></NDI><SRT><Instance Id='1' Mode='Caller' Port='1' Hostname='" + kLong +
         "'><Stream Id='" + kLong + "'>" + channels + "</Stream></Instance></SRT>" +
         "</LiveMediaService>" + deeplyNested();
}

enum class Mode { Reads, Writes, LeavesLocked };

struct Operation {
  const char* name;
  const Family* family;
  Mode mode;
  std::function<std::int32_t()> run;
};
void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

template <typename List>
Operation loadingWith(const char* name, const Family& family, std::int32_t (*loader)(List&)) {
  return {name, &family, Mode::Reads, [loader] {
            List list;
            return loader(list);
          }};
}

template <typename List>
Operation dumpingWith(const char* name, const Family& family, std::int32_t (*dumper)(const List&),
                      const List& list, Mode mode = Mode::Writes) {
  return {name, &family, mode, [dumper, list] { return dumper(list); }};
}

// Opens a section and gives it up again.
Operation opening(const char* name, const Family& family, const char* section, tagBU_BOOL flag) {
  return {name, &family, flag == BU_TRUE ? Mode::Reads : Mode::Writes, [&family, section, flag] {
            if (family.open(section, flag) == nullptr) return family.failure;
            family.closeRead();
            if (flag == BU_FALSE) CFG_UnlockFile(text(CFG_FILE_MPP));
            return 0;
          }};
}

SourceList someSources() {
  const auto source = std::make_shared<tag_CFG_STREAM_SOURCE_AI_T>();
  source->strName = kLong;
  source->s32ChnId = 0;
  return {source, source};
}

CacheList someCaches() {
  const auto cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
  cache->strName = kLong;
  cache->s32AllowedMask = 7;
  return {cache};
}

std::vector<Operation> everyOperation() {
  return {
      opening("OpenStreamsForReading", kStreams, "StreamCache", BU_TRUE),
      opening("OpenStreamsForWriting", kStreams, "StreamCache", BU_FALSE),
      opening("OpenServicesForReading", kServices, "SRT", BU_TRUE),
      opening("OpenServicesForWriting", kServices, "SRT", BU_FALSE),
      loadingWith("LoadSources", kStreams, CFG_MPP_LoadStreamSourceConfig),
      loadingWith("LoadCaches", kStreams, CFG_MPP_LoadStreamCacheConfig),
      loadingWith("LoadWebsocket", kServices, CFG_LM_LoadWebsocketConfig),
      loadingWith("LoadRtsp", kServices, CFG_LM_LoadRtspConfig),
      loadingWith("LoadRtmp", kServices, CFG_LM_LoadRtmpConfig),
      loadingWith("LoadNdi", kServices, CFG_LM_LoadNdiConfig),
      loadingWith("LoadSrt", kServices, CFG_LM_LoadSrtConfig),
      dumpingWith("DumpSources", kStreams, CFG_MPP_DumpStreamSourceConfig, someSources()),
      dumpingWith("DumpCaches", kStreams, CFG_MPP_DumpStreamCacheConfig, someCaches()),
      dumpingWith("DumpWebsocket", kServices, CFG_LM_DumpWebsocketConfig, {{kLong, 1}, {kLong, 2}}),
      dumpingWith("DumpRtsp", kServices, CFG_LM_DumpRtspConfig, shared({{kLong, {{kLong, 1}}}})),
      dumpingWith("DumpRtmp", kServices, CFG_LM_DumpRtmpConfig, {{1, 1, kLong, kLong, kLong, 1, 2}},
                  Mode::LeavesLocked),
      dumpingWith("DumpNdi", kServices, CFG_LM_DumpNdiConfig,
                  {{1, 1, 1, kLong, 1, kLong, kLong, 1, kLong, kLong, 1, 2, 3}}),
      dumpingWith("DumpSrt", kServices, CFG_LM_DumpSrtConfig,
                  {{1, 0, kLong, 1, 1, kLong, 20, {{kLong, 1, {1, 2}}}}}),
      {"EnableSource", &kStreams, Mode::Writes,
       [] { return CFG_MPP_UpdateStreamCacheEnabledStreamSource(0, 0); }},
      {"AllowSources", &kStreams, Mode::Writes,
       [cache = someCaches().front()] {
         return CFG_MPP_UpdateStreamCacheAllowedStreamSource(cache);
       }},
  };
}

class MediaShortMemoryTest : public MediaTest, public testing::WithParamInterface<Operation> {
 protected:
  MediaShortMemoryTest() : MediaTest(*GetParam().family, "Any") {}
};

TEST_P(MediaShortMemoryTest, FailsWithTheDocumentDroppedAndTheFileUnlocked) {
  const bool leavesLocked = GetParam().mode == Mode::LeavesLocked;
  device.write(kMainCopy, wholeFile());
  const std::string printed = captureOutput([&] {
    underEachShortage(GetParam().run, [&](bool struck, std::int32_t result) {
      EXPECT_EQ(result, struck ? family().failure : 0);
      ASSERT_EQ(state(), leavesLocked && !struck ? "closed, locked" : "closed, unlocked");
      if (leavesLocked && !struck) CFG_UnlockFile(text(CFG_FILE_MPP));
      device.write(kMainCopy, wholeFile());  // a save that failed has left a part of it
    });
  });
  EXPECT_FALSE(HasFailure()) << printed;
  // A reader has no lock to release.
  if (GetParam().mode == Mode::Reads) {
    EXPECT_THAT(printed, testing::Not(testing::HasSubstr("has not been locked")));
  }
}

INSTANTIATE_TEST_SUITE_P(, MediaShortMemoryTest, testing::ValuesIn(everyOperation()),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace camcfg::tests
