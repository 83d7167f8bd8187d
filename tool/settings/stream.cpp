#include <camcfg/stream.h>

#include <memory>

#include "settings/media.h"
#include "settings/record.h"
#include "settings/row.h"

namespace camcfg::tool::settings {
namespace {

using Source = tag_CFG_STREAM_SOURCE_T;
using Cache = tag_CFG_STREAM_CACHE_T;

constexpr Need kRequired = Need::Required;
constexpr Need kCarried = Need::Carried;
constexpr Need kOptional = Need::Optional;
constexpr char kStream[] = "Stream";
constexpr std::int64_t kLibraryCounts = std::int64_t{1} << 31;  // bytes, in signed 32-bit numbers
constexpr int kMaskBits = 32;

template <typename Kind>
std::shared_ptr<Source> sourceOfKind(const Source& source) {
  const auto record = std::make_shared<Kind>();
  static_cast<Source&>(*record) = source;
  return record;
}

std::shared_ptr<Source> sharedSource(const Source& source) {
  switch (source.s32Type) {
    case CFG_STREAM_SOURCE_VENC:
      return sourceOfKind<tag_CFG_STREAM_SOURCE_VENC_T>(source);
    case CFG_STREAM_SOURCE_AI:
      return sourceOfKind<tag_CFG_STREAM_SOURCE_AI_T>(source);
    default:
      return sourceOfKind<tag_CFG_STREAM_SOURCE_AENC_T>(source);
  }
}

const Settings& cacheSize() {
  static const Settings settings = {
      Row("value", nullptr, Kind::Integer, kRequired, fieldOf<&Cache::s32BufSize>(),
          "How many of the unit")
          .within(0, kLibraryCounts - 1),
      Row("unit", nullptr, Kind::Word, kRequired, fieldOf<&Cache::s32BufUnit>(), "What is counted")
          .of({{"B", 1}, {"KB", 1 << 10}, {"MB", 1 << 20}})};
  return settings;
}

Json writeSize(const void* record) {
  return toJson(cacheSize(), record);
}

void readSize(const Node& node, void* record) {
  const Cache& cache = *static_cast<const Cache*>(record);
  const std::size_t faults = node.faults();
  fromJson(node, cacheSize(), record);
  const std::int64_t unit = cache.s32BufUnit;
  if (node.faults() == faults && cache.s32BufSize * unit >= kLibraryCounts)
    node.refuse("it is 2 GiB or more, which the library cannot count");
}

// All bits there are, though only those of ids that fit can be saved.
Json writeAllowed(const void* record) {
  const auto mask = static_cast<std::uint32_t>(static_cast<const Cache*>(record)->s32AllowedMask);
  Json ids = Json::array();
  for (int id = 0; id < kMaskBits; ++id)
    if ((mask >> id & 1U) != 0) ids.push_back(id);
  return ids;
}

void readAllowed(const Node& node, void* record) {
  Cache& cache = *static_cast<Cache*>(record);
  cache.s32AllowedMask = 0;
  const auto readId = [](const Node& id) { return id.number({0, kGreatestSourceId}); };
  for (const int id : readIds(node, readId)) cache.s32AllowedMask |= 1 << id;
  if (node.value() == Json::array()) node.refuse("a cache must allow one source at least");
}

// "Enable" is written by updates in place, and lost when all caches are saved.
const Table& allowedSource() {
  static const Table table = innerTable(
      "source that a cache allows", "AllowedStreamSource", nullptr,
      {Row("id", "Id", Kind::Id, kCarried, {}, "The source"),
       Row("default", "Default", Kind::Flag, kOptional, {}, "It is the one that is loaded"),
       Row("enable", "Enable", Kind::Flag, kOptional, {}, "It was selected in place").notSaved()});
  return table;
}

void checkCache(const Node& cache) {
  const Json& source = cache.value().at("default");
  for (const Json& allowed : cache.value().at("allowed"))
    if (allowed == source) return;
  cache.member("default").refuse("source " + source.dump() + " is not among the allowed ones");
}

}  // namespace

const Table& streamSources() {
  using Library = CallsOf<std::shared_ptr<Source>, CFG_MPP_LoadStreamSourceConfig,
                          CFG_MPP_DumpStreamSourceConfig, sharedSource>;
  static const Table table = {
      "stream.sources",
      "source",
      "stream source",
      "id",
      "name",
      kStream,
      "StreamSource",
      {"VENC", "AI", "AENC"},
      {Row("id", "Id", Kind::Integer, kRequired, fieldOf<&Source::s32Id>(), "Number of the source")
           .within(0, kGreatestSourceId)
           .listed("ID", "{id}"),
       Row("kind", nullptr, Kind::Word, kRequired, fieldOf<&Source::s32Type>(),
           "Video encoder, audio input or audio encoder")
           .of({{"VENC", CFG_STREAM_SOURCE_VENC},
                {"AI", CFG_STREAM_SOURCE_AI},
                {"AENC", CFG_STREAM_SOURCE_AENC}})
           .listed("KIND", "{kind}"),
       Row("name", "Name", Kind::Text, kCarried, fieldOf<&Source::strName>(), "What it is called")
           .listed("NAME", "{name}"),
       Row("channel", nullptr, Kind::Id, kRequired, fieldOf<&Source::s32ChnId>(),
           "Channel of the hardware")
           .from({{"ChnId", "VENC"}, {"AiId", "AI"}, {"AencId", "AENC"}})
           .listed("CHANNEL", "{channel}"),
       Row("enabled", "Enabled", Kind::Flag, kOptional, fieldOf<&Source::s32Enabled>(),
           "Whether it delivers data")
           .listed("ENABLED", "{enabled}")},
      Library::calls(CFG_MPP_CloseRead)};
  return table;
}

const Table& streamCaches() {
  using Library =
      CallsOf<std::shared_ptr<Cache>, CFG_MPP_LoadStreamCacheConfig, CFG_MPP_DumpStreamCacheConfig>;
  static const Table table = {
      "stream.caches",
      "cache",
      "stream cache",
      "id",
      "name",
      kStream,
      "StreamCache",
      {"Cache"},
      {Row("id", "Id", Kind::Id, kRequired, fieldOf<&Cache::s32Id>(),
           "Number of the cache, the channel of services"),
       Row("name", "Name", Kind::Text, kRequired, fieldOf<&Cache::strName>(), "What it is called"),
       Row("size", nullptr, Kind::Integer, kOptional, {}, "Size of the buffer")
           .from({{"BufferSizeB"}, {"BufferSizeKB"}, {"BufferSizeMB"}})
           .by(writeSize, readSize),
       Row("allowed", nullptr, Kind::Ids, kOptional, {}, "Sources that it may carry")
           .of(allowedSource())
           .by(writeAllowed, readAllowed),
       Row("default", nullptr, Kind::Integer, kOptional, fieldOf<&Cache::s32EnabledSrc>(),
           "Source that it carries")
           .within(0, kGreatestSourceId)
           .refersTo(streamSources())},
      Library::calls(CFG_MPP_CloseRead),
      checkCache};
  return table;
}

}  // namespace camcfg::tool::settings
