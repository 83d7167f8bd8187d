#ifndef CAMCFG_TESTS_MEDIA_EVERY_SECTION_H
#define CAMCFG_TESTS_MEDIA_EVERY_SECTION_H

#include <functional>
#include <string>

#include "media/media_test.h"
#include "media/records.h"

namespace camcfg::tests {

struct ListLoad {
  Outcome outcome;
  std::size_t kept;  // records in the list afterwards
};

using Load = std::function<ListLoad(std::size_t)>;  // into a list of so many records
using Dump = std::function<Outcome(std::size_t)>;   // of a list of so many new records

/// What differs between the sections where they behave alike.
struct Section {
  const Family* family;
  const char* name;
  std::string entry;        // a complete entry
  std::string faultyEntry;  // lacks something that is required
  std::string fault;        // what is printed about it
  Load loadOver;
  Dump dumpNew;
  const char* warnsOf = "";  // the path that the warning of an unknown element names
  std::string loaded = "";   // what is printed about a complete entry
  const char* afterFault = "open, unlocked";
  bool emptiedBeforeOpening = false;
  bool saves = true;

  bool isService() const { return family == &kServices; }

  std::string loadSuccess() const {
    return isService() ? family->info(std::string("Load ") + name + " Config success.") : "";
  }

  std::string dumpSuccess() const {
    return isService() ? family->info(std::string("Update ") + name + " Config success.") : "";
  }

  // What is printed about an unknown element.
  std::string unknown(const std::string& element) const {
    if (isService())
      return family->warning("Un-support element <" + element + "> at " + warnsOf + ", ignored.");
    if (*warnsOf == '\0') return "";
    return family->warning("Un-Support node <" + element + "> by " + warnsOf + ", Skip.");
  }
};

inline void PrintTo(const Section& section, std::ostream* out) {
  *out << section.name;
}

template <typename Record>
std::list<Record> newRecords(std::size_t count, const std::list<Record>*) {
  return std::list<Record>(count);
}

inline RtspList newRecords(std::size_t count, const RtspList*) {
  return shared(std::list<tag_CFG_RTSP_SESSION_T>(count));
}

inline CacheList newRecords(std::size_t count, const CacheList*) {
  CacheList caches(count);
  for (auto& cache : caches) cache = std::make_shared<tag_CFG_STREAM_CACHE_T>();
  return caches;
}

inline SourceList newRecords(std::size_t count, const SourceList*) {
  SourceList sources(count);
  for (auto& source : sources) {
    source = std::make_shared<tag_CFG_STREAM_SOURCE_AI_T>();
    source->s32ChnId = 0;
  }
  return sources;
}

template <typename List>
Load loading(std::int32_t (*loader)(List&)) {
  return [loader](std::size_t before) {
    List records = newRecords(before, static_cast<List*>(nullptr));
    const Outcome outcome = observe([&] { return loader(records); });
    return ListLoad{outcome, records.size()};
  };
}

template <typename List>
Dump dumping(std::int32_t (*dumper)(const List&)) {
  return [dumper](std::size_t count) {
    return observe([&] { return dumper(newRecords(count, static_cast<List*>(nullptr))); });
  };
}

inline Section sources() {
  Section section{&kStreams,
                  "StreamSource",
                  "<VENC Id='1' Name='a' ChnId='2'/>",
                  "<AI Id='2' Name='mic'/>",
                  kStreams.required("AiId", "<Stream><StreamSource><AI>"),
                  loading(CFG_MPP_LoadStreamSourceConfig),
                  dumping(CFG_MPP_DumpStreamSourceConfig),
                  "<StreamSource>"};
  section.afterFault = "closed, unlocked";
  return section;
}

inline Section caches() {
  Section section{&kStreams,
                  "StreamCache",
                  "<Cache Id='1' Name='a' BufferSizeB='2'>"
                  "<AllowedStreamSource Id='3' Default='1'/></Cache>",
                  "<Cache Id='2' BufferSizeB='2'/>",
                  kStreams.required("Name", "<Stream><StreamCache><Cache>"),
                  loading(CFG_MPP_LoadStreamCacheConfig),
                  dumping(CFG_MPP_DumpStreamCacheConfig)};
  section.loaded = kStreams.info("StreamCache[1] size 2 x 1");
  section.afterFault = "closed, unlocked";
  return section;
}

// A cache without a size is the one fault of its section over which the document stays open.
inline Section cachesWithoutSize() {
  Section section = caches();
  section.faultyEntry = "<Cache Id='2' Name='a'/>";
  section.fault = kStreams.error(
      "Missing any of {BufferSizeB, BufferSizeKB, BufferSizeMB} for setup chanel buffer size.");
  section.afterFault = "open, unlocked";
  return section;
}

inline Section websocket() {
  Section section{&kServices,
                  "WEBSOCKET",
                  "<Channel Id='1' Name='a'/>",
                  "<Channel Id='2'/>",
                  kServices.required("Name", "<WEBSOCKET><Channel>"),
                  loading(CFG_LM_LoadWebsocketConfig),
                  dumping(CFG_LM_DumpWebsocketConfig),
                  "<WEBSOCKET>"};
  section.emptiedBeforeOpening = true;
  return section;
}

inline Section rtsp() {
  return {&kServices,
          "RTSP",
          "<MediaGroup Name='a'><Channel Id='1' Name='b'/></MediaGroup>",
          "<MediaGroup Name='c'><Channel Id='1' Name='d'/><Channel Id='2'/></MediaGroup>",
          kServices.required("Name", "<RTSP><MediaGroup><Channel>"),
          loading(CFG_LM_LoadRtspConfig),
          dumping(CFG_LM_DumpRtspConfig),
          "<RTSP>"};
}

inline Section rtmp() {
  Section section{&kServices,
                  "RTMP",
                  "<Target Id='1' url='a' username='b' password='c'/>",
                  "<Target Id='2' username='b' password='c'/>",
                  kServices.required("url", "<RTSP><MediaGroup>"),
                  loading(CFG_LM_LoadRtmpConfig),
                  dumping(CFG_LM_DumpRtmpConfig),
                  "<RTSP>"};
  section.saves = false;
  return section;
}

inline Section ndi() {
  return {&kServices,
          "NDI",
          "<Instance Id='1' DiscoveryServer='' GroupName='' MainStreamName=''/>",
          "<Instance Id='2'><Channel Id='1'/></Instance>",
          kServices.required("Type", "<NDI><Session><Channel>"),
          loading(CFG_LM_LoadNdiConfig),
          dumping(CFG_LM_DumpNdiConfig),
          "<NDI>"};
}

inline Section srt() {
  return {&kServices,
          "SRT",
          "<Instance Id='1' Mode='Listener' Port='9000'/>",
          "<Instance Id='2' Mode='Caller' Port='9000'/>",
          kServices.required("Hostname", "<SRT><Instance>"),
          loading(CFG_LM_LoadSrtConfig),
          dumping(CFG_LM_DumpSrtConfig),
          "<SRT>"};
}

}  // namespace camcfg::tests

#endif
