#include <camcfg/stream.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <memory>

#include "base/concat.h"
#include "base/plain_text.h"
#include "settings/media.h"
#include "settings/table.h"

namespace camcfg::tool::settings {
namespace {

using Source = tag_CFG_STREAM_SOURCE_T;
using Cache = tag_CFG_STREAM_CACHE_T;

constexpr char kStream[] = "Stream";
constexpr std::int64_t kLibraryCounts = std::int64_t{1} << 31;  // bytes, in signed 32-bit numbers
constexpr int kMaskBits = 32;
constexpr char kSizeForm[] = "bytes, or KB, MB, GB as in 2MB";

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
  std::vector<Word> units;
  for (const SizeUnit& unit : kCacheSizeUnits) units.push_back({unit.name, unit.bytes});
  static const Settings settings = {
      integer<&Cache::s32BufSize>("value", nullptr, kRequired, "How many of the unit")
          .within(0, kLibraryCounts - 1),
      word<&Cache::s32BufUnit>("unit", nullptr, kRequired, "What is counted").of(units)};
  return settings;
}

std::vector<Attribute> sizeAttributes() {
  std::vector<Attribute> attributes;
  for (const SizeUnit& unit : kCacheSizeUnits) attributes.push_back({unit.attribute});
  return attributes;
}

Json writeSize(const void* record) {
  return toJson(cacheSize(), record);
}

void readSize(const Node& node, void* record) {
  // A document has an object; only a command line has a text.
  if (node.value().is_string())
    return node.refuse(
        concat(quoted(shortened(node.value().text())), " is no size; give ", kSizeForm));
  const Cache& cache = *static_cast<const Cache*>(record);
  const std::size_t faults = node.faults();
  fromJson(node, cacheSize(), record);
  const std::int64_t unit = cache.s32BufUnit;
  if (node.faults() == faults && !node.holds({"value", "unit"}) &&
      cache.s32BufSize * unit >= kLibraryCounts)
    node.refuse("it is 2 GiB or more, which the library cannot count");
}

// How often a unit of a command line, "MiB", "MB" or "M", holds a byte; 0 for an unknown one.
std::int64_t bytesOfUnit(const std::string& word) {
  std::int64_t bytes = 1;
  for (const char* letter : {"", "K", "M", "G"}) {
    for (const char* ending : {"B", "iB", ""})
      if (isSameWord(word, std::string(letter) + ending)) return bytes;
    bytes <<= 10;
  }
  return 0;
}

// In the unit that was typed if the file has it, or else in the largest that divides it.
Json sizeOf(std::int64_t bytes, std::int64_t typedUnit) {
  const SizeUnit* chosen = std::begin(kCacheSizeUnits);
  for (const SizeUnit& unit : kCacheSizeUnits)
    if (bytes % unit.bytes == 0 && unit.bytes <= typedUnit) chosen = &unit;
  return {{"value", bytes / chosen->bytes}, {"unit", chosen->name}};
}

// "2MiB", "512 KB", "187.5KiB", "192000"
Json typedSize(const std::string& word) {
  constexpr double kMostBytes = 1e15;
  const std::size_t end = std::min(word.find_first_not_of("0123456789."), word.size());
  const std::size_t letters = std::min(word.find_first_not_of(' ', end), word.size());
  const std::int64_t unit = bytesOfUnit(word.substr(letters));
  char* rest = nullptr;
  const double bytes = std::strtod(word.c_str(), &rest) * static_cast<double>(unit);
  const bool isNumber = end > 0 && rest == word.c_str() + end && word[0] != '.';
  if (!isNumber || unit == 0 || bytes > kMostBytes || bytes != std::floor(bytes)) return word;
  return sizeOf(static_cast<std::int64_t>(bytes), unit);
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
  // Others are not saved, even if they are held.
  const auto readId = [](const Node& id) { return id.asNew().number(kSourceIds); };
  for (const int id : readIds(node, readId)) cache.s32AllowedMask |= 1 << id;
  if (node.value() == Json::array() && !node.isHeld())
    node.refuse("a cache must allow one source at least");
}

// "Enable" is written by updates in place, and lost when all caches are saved.
const Table& allowedSource() {
  static const Table table = innerTable(
      "source that a cache allows", "AllowedStreamSource", nullptr, nullptr,
      {Row("id", "Id", Kind::Id, kCarried, "The source").within(kSourceIds),
       Row("default", "Default", Kind::Flag, kOptional, "It is the one that is loaded"),
       Row("enable", "Enable", Kind::Flag, kOptional, "It was selected in place").notSaved()});
  return table;
}

// Loaders take the last one, and they are written in ascending order.
Json assumedDefault(const Json& cache) {
  const auto allowed = cache.find("allowed");
  const bool isList = allowed != cache.end() && allowed->is_array() && !allowed->empty();
  return isList ? *std::max_element(allowed->begin(), allowed->end()) : Json(0);
}

void checkCache(const Node& cache) {
  if (cache.holds({"default", "allowed"})) return;
  const Json& source = cache.value().at("default");
  for (const Json& allowed : cache.value().at("allowed"))
    if (allowed == source) return;
  cache.member("default").refuse(
      concat("source ", source.dump(), " is not among the allowed ones"));
}

}  // namespace

const Table& streamSources() {
  static const Table table = tableOf<std::shared_ptr<Source>, CFG_MPP_LoadStreamSourceConfig,
                                     CFG_MPP_DumpStreamSourceConfig, sharedSource>(
      "stream.sources", "source", "stream source", "id", "name", kStream, "StreamSource",
      {"VENC", "AI", "AENC"}, CFG_MPP_CloseRead,
      {integer<&Source::s32Id>("id", "Id", kRequired, "Number of the source")
           .within(kSourceIds)
           .listed("ID"),
       word<&Source::s32Type>("kind", nullptr, kRequired,
                              "Video encoder, audio input or audio encoder")
           .of({{"VENC", CFG_STREAM_SOURCE_VENC},
                {"AI", CFG_STREAM_SOURCE_AI},
                {"AENC", CFG_STREAM_SOURCE_AENC}})
           .listed("KIND"),
       text<&Source::strName>("name", "Name", kCarried, "What it is called").listed("NAME"),
       id<&Source::s32ChnId>("channel", nullptr, kRequired, "Channel of the hardware")
           .from({{"ChnId", "VENC"}, {"AiId", "AI"}, {"AencId", "AENC"}})
           .listed("CHANNEL"),
       flag<&Source::s32Enabled>("enabled", "Enabled", kOptional, "Whether it delivers data")
           .assumed([](const Json&) { return Json(true); })
           .listed("ENABLED")});
  return table;
}

const Table& streamCaches() {
  static const Table table =
      tableOf<std::shared_ptr<Cache>, CFG_MPP_LoadStreamCacheConfig, CFG_MPP_DumpStreamCacheConfig>(
          "stream.caches", "cache", "stream cache", "id", "name", kStream, "StreamCache", {"Cache"},
          CFG_MPP_CloseRead,
          {id<&Cache::s32Id>("id", "Id", kRequired, "Number of the cache, the channel of services"),
           text<&Cache::strName>("name", "Name", kRequired, "What it is called"),
           Row("size", nullptr, Kind::Integer, kOptional, "Size of the buffer")
               .from(sizeAttributes())
               .by(writeSize, readSize)
               .madeOf(cacheSize())
               .typed(typedSize, kSizeForm),
           Row("allowed", nullptr, Kind::Ids, kOptional, "Sources that it may carry")
               .of(allowedSource())
               .refersTo(streamSources())
               .by(writeAllowed, readAllowed),
           integer<&Cache::s32EnabledSrc>("default", nullptr, kOptional, "Source that it carries")
               .within(kSourceIds)
               .assumed(assumedDefault)
               .refersTo(streamSources())},
          checkCache);
  return table;
}

}  // namespace camcfg::tool::settings
