#include "media/stream_cache.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>

#include "settings/value.h"

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLElement;

std::vector<AllowedSource> allowedBy(const XMLElement& cache, int cacheId) {
  std::vector<AllowedSource> allowed;
  int id = cacheId;
  for (const XMLElement* entry : entriesOf(cache, {"AllowedStreamSource"})) {
    const std::optional<int> own = settings::integerIn(*entry, "Id");
    id = own.value_or(id);
    allowed.push_back({id, own.has_value(), entry->IntAttribute("Default", 0) != 0,
                       entry->IntAttribute("Enable", 0) != 0});
  }
  return allowed;
}

// "8 MiB", "187.5 KiB"
std::string humanSize(long long bytes) {
  constexpr std::array kUnits = {" B", " KiB", " MiB", " GiB", " TiB", " PiB"};
  constexpr double kStep = 1024;
  std::size_t unit = 0;
  auto amount = static_cast<double>(bytes);
  for (; amount >= kStep && unit + 1 < kUnits.size(); ++unit) amount /= kStep;
  char number[32];
  std::snprintf(number, sizeof number, "%.1f", amount);
  std::string text = number;
  if (text.substr(text.size() - 2) == ".0") text.resize(text.size() - 2);
  return text + kUnits[unit];
}

Json jsonOf(const CacheEntry& cache) {
  const long long bytes =
      static_cast<long long>(cache.record->s32BufSize) * cache.record->s32BufUnit;
  return {{"id", cache.id()},
          {"name", cache.record->strName},
          {"bytes", bytes},
          {"size", humanSize(bytes)},
          {"allowed", Json(cache.allowedIds())},
          {"carries", cache.record->s32EnabledSrc},
          {"default", cache.marked(&AllowedSource::isDefault)},
          {"enable", cache.marked(&AllowedSource::isEnabled)}};
}

}  // namespace

bool CacheEntry::allows(int sourceId) const {
  return std::any_of(allowed.begin(), allowed.end(),
                     [=](const AllowedSource& source) { return source.id == sourceId; });
}

std::vector<int> CacheEntry::allowedIds() const {
  std::set<int> ids;
  for (const AllowedSource& source : allowed) ids.insert(source.id);
  return {ids.begin(), ids.end()};
}

std::optional<int> CacheEntry::marked(Mark mark) const {
  for (const AllowedSource& source : allowed)
    if (source.*mark) return source.id;
  return std::nullopt;
}

bool CacheEntry::markedOnly(Mark mark, int sourceId) const {
  return marked(mark) == sourceId &&
         std::all_of(allowed.begin(), allowed.end(), [=](const AllowedSource& source) {
           return !(source.*mark) || source.id == sourceId;
         });
}

std::vector<CacheEntry> cachesOf(tinyxml2::XMLDocument& document,
                                 const std::list<StreamCache>& records) {
  const settings::Table& table = settings::streamCaches();
  std::vector<CacheEntry> caches;
  auto record = records.begin();
  for (const XMLElement* element : entriesOf(requireSection(document, table), table.elements)) {
    if (record == records.end()) break;
    caches.push_back({*record, allowedBy(*element, (*record)->s32Id), element->GetLineNum()});
    ++record;
  }
  return caches;
}

std::vector<CacheEntry> readCaches() {
  const std::list<StreamCache> records = loadStreamCaches();
  return cachesOf(*device::requireDocument(CFG_FILE_MPP), records);
}

Json jsonOf(const std::vector<CacheEntry>& caches) {
  Json array = Json::array();
  for (const CacheEntry& cache : caches) array.push_back(jsonOf(cache));
  return array;
}

}  // namespace camcfg::tool::media
