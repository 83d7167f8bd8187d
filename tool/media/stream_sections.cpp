#include "media/sections.h"

#include <algorithm>

#include "base/library_log.h"
#include "media/cache_losses.h"
#include "media/record_section.h"

namespace camcfg::tool::media {

using namespace settings;
namespace {

using Source = tag_CFG_STREAM_SOURCE_T;
using Cache = tag_CFG_STREAM_CACHE_T;

constexpr char kSources[] = "stream.sources";
constexpr int kNoCache = -1;
constexpr std::int64_t kLibraryCounts = std::int64_t{1} << 31;  // bytes, in signed 32-bit numbers

const Range kSourceId{0, kGreatestSourceId};
const Range kAmount{0, kLibraryCounts - 1};

const Words kKinds = {{"VENC", CFG_STREAM_SOURCE_VENC},
                      {"AI", CFG_STREAM_SOURCE_AI},
                      {"AENC", CFG_STREAM_SOURCE_AENC}};

const Words kUnits = {{"B", 1}, {"KB", 1 << 10}, {"MB", 1 << 20}};

const Members<Source> kSource = {number("id", &Source::s32Id, kSourceId),
                                 word("kind", &Source::s32Type, kKinds),
                                 text("name", &Source::strName), id("channel", &Source::s32ChnId),
                                 flag("enabled", &Source::s32Enabled)};

const Members<Cache> kSize = {number("value", &Cache::s32BufSize, kAmount),
                              word("unit", &Cache::s32BufUnit, kUnits)};

Json sizeOf(const Cache& cache) {
  return toJson(cache, kSize);
}

void readSize(const Node& node, Cache& cache) {
  const std::size_t faults = node.faults();
  fromJson(node, kSize, cache);
  const std::int64_t unit = cache.s32BufUnit;
  if (node.faults() == faults && cache.s32BufSize * unit >= kLibraryCounts)
    node.refuse("it is 2 GiB or more, which the library cannot count");
}

// All bits there are, though only those of ids that fit can be saved.
Json allowedOf(const Cache& cache) {
  Json ids = Json::array();
  for (int id = 0; id < 32; ++id)
    if ((static_cast<std::uint32_t>(cache.s32AllowedMask) >> id & 1U) != 0) ids.push_back(id);
  return ids;
}

void readAllowed(const Node& node, Cache& cache) {
  cache.s32AllowedMask = 0;
  for (const int id : readIds(node, [](const Node& item) { return item.number(kSourceId); }))
    cache.s32AllowedMask |= 1 << id;
  if (node.value() == Json::array()) node.refuse("a cache must allow one source at least");
}

const Members<Cache> kCache = {id("id", &Cache::s32Id),
                               text("name", &Cache::strName),
                               {"size", sizeOf, readSize},
                               {"allowed", allowedOf, readAllowed},
                               number("default", &Cache::s32EnabledSrc, kSourceId)};

bool holdsId(const Json& records, int id) {
  return std::any_of(records.begin(), records.end(),
                     [&](const Json& record) { return record.at("id") == id; });
}

void checkCache(const Node& node, const Cache& cache, device::Plan& plan) {
  const int source = cache.s32EnabledSrc;
  const std::string id = std::to_string(source);
  if ((cache.s32AllowedMask >> source & 1) == 0)
    node.member("default").refuse("source " + id + " is not among the allowed ones");
  if (!holdsId(plan.of(kSources), source))
    node.member("default").refuse("there is no stream source " + id);
}

template <typename Kind>
StreamSource sourceOfKind(const Source& source) {
  const auto record = std::make_shared<Kind>();
  static_cast<Source&>(*record) = source;
  return record;
}

StreamSource sharedSource(const Source& source) {
  if (source.s32Type == CFG_STREAM_SOURCE_VENC)
    return sourceOfKind<tag_CFG_STREAM_SOURCE_VENC_T>(source);
  if (source.s32Type == CFG_STREAM_SOURCE_AI)
    return sourceOfKind<tag_CFG_STREAM_SOURCE_AI_T>(source);
  return sourceOfKind<tag_CFG_STREAM_SOURCE_AENC_T>(source);
}

bool storeSources(const std::list<Source>& records) {
  std::list<StreamSource> sources;
  for (const Source& record : records) sources.push_back(sharedSource(record));
  return heard([&] { return CFG_MPP_DumpStreamSourceConfig(sources); }) == 0;
}

bool storeCaches(const std::list<Cache>& records) {
  return heard([&] { return CFG_MPP_DumpStreamCacheConfig(sharedCopiesOf(records)); }) == 0;
}

Losses sourceLosses() {
  return lossNotes(kSources, kStreamSources,
                   {{"VENC", {"Id", "Name", "ChnId", "Enabled"}, {}},
                    {"AI", {"Id", "Name", "AiId", "Enabled"}, {}},
                    {"AENC", {"Id", "Name", "AencId", "Enabled"}, {}}});
}

}  // namespace

std::vector<device::Section> streamSections() {
  const RecordSection<Source> sources{kSources,     kSource,
                                      "id",         [] { return copiesOf(loadStreamSources()); },
                                      storeSources, sourceLosses};
  const RecordSection<Cache> caches{"stream.caches",
                                    kCache,
                                    "id",
                                    [] { return copiesOf(loadStreamCaches()); },
                                    storeCaches,
                                    [] { return dumpNotes(readCaches(), kNoCache); },
                                    checkCache};
  return {sectionOf(sources), sectionOf(caches)};
}

}  // namespace camcfg::tool::media
