#include <camcfg/livemedia.h>
#include <camcfg/stream.h>
#include <fcntl.h>
#include <unistd.h>

#include "hostile/hostile_test.h"

namespace camcfg::tests {
namespace {

constexpr char kMediaFile[] = "/cfg0/mpp_cfg.xml";

// A section with a million elements, and how many of them, or in them, come back.
struct Crowd {
  const char* name;
  const char* before;
  const char* entry;
  const char* after;
  std::size_t (*load)();  // what was loaded; 0 if it failed
};

void PrintTo(const Crowd& crowd, std::ostream* out) {
  *out << crowd.name;
}

template <typename Record, int (*Load)(std::list<Record>&)>
std::size_t countOf() {
  std::list<Record> records;
  return Load(records) == 0 ? records.size() : 0;
}

std::size_t countOfRtspChannels() {
  std::list<std::shared_ptr<tag_CFG_RTSP_SESSION_T>> groups;
  return CFG_LM_LoadRtspConfig(groups) == 0 ? groups.front()->lstSubSession.size() : 0;
}

std::size_t countOfSrtChannels() {
  std::list<tag_CFG_SRT_INSTANCE_T> instances;
  if (CFG_LM_LoadSrtConfig(instances) != 0) return 0;
  return instances.front().lstStream.front().lstChannel.size();
}

using Source = std::shared_ptr<tag_CFG_STREAM_SOURCE_T>;
using Cache = std::shared_ptr<tag_CFG_STREAM_CACHE_T>;

constexpr Crowd kCrowds[] = {
    {"StreamSources", "<Stream><StreamSource>", "<AI Id=\"1\" Name=\"n\" AiId=\"2\"/>",
     "</StreamSource></Stream>", countOf<Source, CFG_MPP_LoadStreamSourceConfig>},
    {"StreamCaches", "<Stream><StreamCache>",
     "<Cache Id=\"1\" Name=\"n\" BufferSizeB=\"1\"><AllowedStreamSource/></Cache>",
     "</StreamCache></Stream>", countOf<Cache, CFG_MPP_LoadStreamCacheConfig>},
    {"WebsocketSessions", "<LiveMediaService><WEBSOCKET>", "<Channel Id=\"1\" Name=\"n\"/>",
     "</WEBSOCKET></LiveMediaService>",
     countOf<tag_CFG_WEBSOCKET_SESSION_T, CFG_LM_LoadWebsocketConfig>},
    {"RtspChannels", "<LiveMediaService><RTSP><MediaGroup Name=\"g\">",
     "<Channel Id=\"1\" Name=\"n\"/>", "</MediaGroup></RTSP></LiveMediaService>",
     countOfRtspChannels},
    {"RtmpTargets", "<LiveMediaService><RTMP>", "<Target Id=\"1\" url=\"u\"/>",
     "</RTMP></LiveMediaService>", countOf<tag_CFG_RTMP_SESSION_T, CFG_LM_LoadRtmpConfig>},
    {"NdiInstances", "<LiveMediaService><NDI>", "<Instance Id=\"1\"/>", "</NDI></LiveMediaService>",
     countOf<tag_CFG_NDI_SESSION_T, CFG_LM_LoadNdiConfig>},
    {"SrtChannels",
     "<LiveMediaService><SRT><Instance Id=\"1\" Mode=\"Listener\" Port=\"1\"><Stream Id=\"s\">",
     "<Channel Id=\"1\"/>", "</Stream></Instance></SRT></LiveMediaService>", countOfSrtChannels},
};

// Discards what the loaders print about a million elements.
void withoutOutput(const std::function<void()>& run, int nowhere) {
  std::fflush(stdout);
  const int output = dup(STDOUT_FILENO);
  dup2(nowhere, STDOUT_FILENO);
  run();
  std::fflush(stdout);
  dup2(output, STDOUT_FILENO);
  close(output);
}

class LoadersTest : public testing::WithParamInterface<Crowd>, public testing::Test {
 protected:
  int nowhere_ = open("/dev/null", O_WRONLY | O_CLOEXEC);
  testkit::DeviceRoot device_;
};

TEST_P(LoadersTest, LoadAMillion) {
  const Crowd& crowd = GetParam();
  device_.write(kMediaFile, crowd.before + repeated(crowd.entry, kMany) + crowd.after);
  std::size_t count = 0;
  const Cost cost = costOf([&] { withoutOutput([&] { count = crowd.load(); }, nowhere_); });
  EXPECT_EQ(count, std::size_t{kMany});
  EXPECT_TRUE(cost.isBounded()) << testing::PrintToString(cost);
}

INSTANTIATE_TEST_SUITE_P(AMillionElements, LoadersTest, testing::ValuesIn(kCrowds),
                         [](const auto& crowd) { return crowd.param.name; });

}  // namespace
}  // namespace camcfg::tests
