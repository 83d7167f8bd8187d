#include <tuple>

#include "camcfg/livemedia.h"
#include "camcfg/stream.h"
#include "media/records.h"
#include "system/sample_set.h"

namespace camcfg::tests {
namespace {

using testing::Ge;
using testing::SizeIs;

using Elements = std::vector<tinyxml2::XMLElement*>;

// Every section of the media file, loaded by its own call and dumped again.
class SampleLoaders : public SampleDeviceAfterStartUp {
 protected:
  Elements entries(const char* top, const char* section) {
    return childrenOf(document.element(top)->FirstChildElement(section));
  }
  Elements services(const char* section) { return entries("LiveMediaService", section); }

  // Loads a section; anything printed but the news of success, a warning above all, fails the test.
  template <typename List>
  List loaded(int (*load)(List&), const std::string& expectedOutput) {
    List list;
    int result = -1;
    const std::string printed = captureOutput([&] { result = load(list); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(printed, expectedOutput);
    return list;
  }

  // Loads a section of the live media services.
  template <typename List>
  List loadedService(int (*load)(List&), const std::string& section) {
    return loaded(load, "[Info][CFG][LiveMedia]: Load " + section + " Config success.\n");
  }

  template <typename List>
  static void dump(int (*dumper)(const List&), const List& list) {
    int result = -1;
    captureOutput([&] { result = dumper(list); });
    EXPECT_EQ(result, 0);
  }

  void expectFile(const std::string& contents) const {
    EXPECT_EQ(device.read(CFG_FILE_MPP), contents);
    EXPECT_EQ(device.read("/cfg1/mpp_cfg.xml"), contents);
  }

  SampleDocument document{"/app/resource/defcfg/mpp_cfg.xml", files};
  const std::string& factory = files.at("/app/resource/defcfg/mpp_cfg.xml");
};

std::string textAt(const tinyxml2::XMLElement* element, const char* attribute) {
  return textOf(element, attribute).value_or("");
}

int intAt(const tinyxml2::XMLElement* element, const char* attribute, int absent = -1) {
  return intOf(element, attribute).value_or(absent);
}

int flagAt(const tinyxml2::XMLElement* element, const char* attribute) {
  return textAt(element, attribute) == "true" ? 1 : 0;
}

// The number of the channel of a type.
int channelOf(tinyxml2::XMLElement* element, const std::string& type) {
  for (const auto* channel : childrenOf(element))
    if (textAt(channel, "Type") == type) return intAt(channel, "Id");
  return -1;
}

using Source = std::tuple<int, int, std::string, int, int>;

Source sourceOf(const tinyxml2::XMLElement* element) {
  const std::string kind = element->Name();
  const int type = kind == "VENC" ? 1 : kind == "AI" ? 2 : 3;
  const char* channel = type == 1 ? "ChnId" : type == 2 ? "AiId" : "AencId";
  return {type, intAt(element, "Id"), textAt(element, "Name"), intAt(element, "Enabled", 1),
          intAt(element, channel)};
}

TEST_F(SampleLoaders, SourcesLoadAsWrittenAndKeepTheBytesOfTheFileWhenDumped) {
  const auto sources = loaded(CFG_MPP_LoadStreamSourceConfig, "");
  std::vector<Source> written;
  std::vector<Source> records;
  for (const auto* element : entries("Stream", "StreamSource"))
    written.push_back(sourceOf(element));
  for (const auto& source : sources)
    records.emplace_back(source->s32Type, source->s32Id, source->strName, source->s32Enabled,
                         source->s32ChnId);
  EXPECT_THAT(written, SizeIs(Ge(10U)));
  EXPECT_EQ(records, written);
  dump(CFG_MPP_DumpStreamSourceConfig, sources);
  expectFile(factory);
}

using Cache = std::tuple<int, std::string, int, int, int, int>;

Cache cacheOf(tinyxml2::XMLElement* element) {
  int carried = -1;
  int mask = 0;
  for (const auto* source : childrenOf(element)) {
    mask |= 1 << intAt(source, "Id");
    if (intAt(source, "Default") == 1) carried = intAt(source, "Id");
  }
  const std::vector<std::pair<const char*, int>> units = {
      {"BufferSizeB", 1}, {"BufferSizeKB", 1024}, {"BufferSizeMB", 1048576}};
  for (const auto& [name, unit] : units)
    if (const auto size = intOf(element, name))
      return {intAt(element, "Id"), textAt(element, "Name"), *size, unit, carried, mask};
  return {};
}

std::string sizeLine(const Cache& cache) {
  return "[Info][CFG][MppStream]: StreamCache[" + std::to_string(std::get<0>(cache)) + "] size " +
         std::to_string(std::get<2>(cache)) + " x " + std::to_string(std::get<3>(cache)) + "\n";
}

TEST_F(SampleLoaders, CachesLoadAsWrittenAndKeepTheBytesOfTheFileWhenDumped) {
  std::vector<Cache> written;
  std::string sizes;
  for (auto* element : entries("Stream", "StreamCache")) {
    written.push_back(cacheOf(element));
    sizes += sizeLine(written.back());
  }
  EXPECT_THAT(written, SizeIs(Ge(10U)));
  const auto caches = loaded(CFG_MPP_LoadStreamCacheConfig, sizes);
  std::vector<Cache> records;
  for (const auto& cache : caches)
    records.emplace_back(cache->s32Id, cache->strName, cache->s32BufSize, cache->s32BufUnit,
                         cache->s32EnabledSrc, cache->s32AllowedMask);
  EXPECT_EQ(records, written);
  dump(CFG_MPP_DumpStreamCacheConfig, caches);
  expectFile(factory);
}

TEST_F(SampleLoaders, WebsocketSessionsLoadAsWrittenAndKeepTheBytesOfTheFileWhenDumped) {
  WebsocketList written;
  for (const auto* element : services("WEBSOCKET"))
    written.push_back({textAt(element, "Name"), intAt(element, "Id")});
  EXPECT_THAT(written, SizeIs(Ge(2U)));
  EXPECT_EQ(loadedService(CFG_LM_LoadWebsocketConfig, "WEBSOCKET"), written);
  dump(CFG_LM_DumpWebsocketConfig, written);
  expectFile(factory);
}

TEST_F(SampleLoaders, RtspSessionsLoadAsWrittenAndKeepTheBytesOfTheFileWhenDumped) {
  std::list<tag_CFG_RTSP_SESSION_T> written;
  for (auto* group : services("RTSP")) {
    written.push_back({textAt(group, "Name"), {}});
    for (const auto* channel : childrenOf(group))
      written.back().lstSubSession.push_back({textAt(channel, "Name"), intAt(channel, "Id")});
  }
  EXPECT_THAT(written, SizeIs(Ge(8U)));
  EXPECT_EQ(contentsOf(loadedService(CFG_LM_LoadRtspConfig, "RTSP")), written);
  dump(CFG_LM_DumpRtspConfig, shared(written));
  expectFile(factory);
}

TEST_F(SampleLoaders, RtmpSessionsLoadAsWritten) {
  RtmpList written;
  for (auto* target : services("RTMP"))
    written.push_back({intAt(target, "Id"), flagAt(target, "Enable"), textAt(target, "url"),
                       textAt(target, "username"), textAt(target, "password"),
                       channelOf(target, "Video"), channelOf(target, "Audio")});
  EXPECT_THAT(written, SizeIs(Ge(2U)));
  EXPECT_EQ(loadedService(CFG_LM_LoadRtmpConfig, "RTMP"), written);
}

tag_CFG_NDI_SESSION_T ndiOf(tinyxml2::XMLElement* instance) {
  return {intAt(instance, "Id"),
          flagAt(instance, "Enable"),
          flagAt(instance, "DiscoveryServerEnable"),
          textAt(instance, "DiscoveryServer"),
          flagAt(instance, "MulticastEnable"),
          textAt(instance, "MulticastIp"),
          textAt(instance, "MulticastNetmask"),
          intAt(instance, "MulticastTTL"),
          textAt(instance, "GroupName"),
          textAt(instance, "MainStreamName"),
          channelOf(instance, "MainVideo"),
          channelOf(instance, "SubVideo"),
          channelOf(instance, "Audio")};
}

TEST_F(SampleLoaders, NdiSessionsLoadAsWrittenAndLoseTheDiscoverySwitchWhenDumped) {
  NdiList written;
  for (auto* instance : services("NDI")) written.push_back(ndiOf(instance));
  EXPECT_THAT(written, SizeIs(Ge(2U)));
  EXPECT_EQ(written.front().bDiscoveryServerEnable, 1);
  EXPECT_EQ(loadedService(CFG_LM_LoadNdiConfig, "NDI"), written);

  dump(CFG_LM_DumpNdiConfig, written);
  std::string dumped = factory;
  const std::string name = " DiscoveryServerEnable=\"";
  for (auto at = dumped.find(name); at != std::string::npos; at = dumped.find(name))
    dumped.replace(at, name.size(), " bDiscoveryServerEnable=\"");
  expectFile(dumped);
  for (auto& session : written) session.bDiscoveryServerEnable = 0;
  EXPECT_EQ(loadedService(CFG_LM_LoadNdiConfig, "NDI"), written);
}

tag_CFG_SRT_INSTANCE_T srtOf(tinyxml2::XMLElement* element) {
  tag_CFG_SRT_INSTANCE_T instance{
      intAt(element, "Id"),         textAt(element, "Mode") == "Listener" ? 1 : 0,
      textAt(element, "Hostname"),  intAt(element, "Port"),
      intAt(element, "AesMode", 0), textAt(element, "Password"),
      intAt(element, "Latency"),    {}};
  for (auto* stream : childrenOf(element)) {
    instance.lstStream.push_back({textAt(stream, "Id"), intAt(stream, "Default"), {}});
    for (const auto* channel : childrenOf(stream))
      instance.lstStream.back().lstChannel.push_back(intAt(channel, "Id"));
  }
  return instance;
}

TEST_F(SampleLoaders, SrtInstancesLoadAsWrittenAndKeepTheBytesOfTheFileWhenDumped) {
  SrtList written;
  for (auto* element : services("SRT")) written.push_back(srtOf(element));
  EXPECT_THAT(written, SizeIs(Ge(2U)));
  EXPECT_EQ(loadedService(CFG_LM_LoadSrtConfig, "SRT"), written);
  dump(CFG_LM_DumpSrtConfig, written);
  expectFile(factory);
}

}  // namespace
}  // namespace camcfg::tests
