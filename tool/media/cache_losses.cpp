#include "media/cache_losses.h"

#include "base/refusal.h"
#include "media/losses.h"

namespace camcfg::tool::media {
namespace {

using tinyxml2::XMLElement;

struct Size {
  const char* attribute;
  int unit;
};

constexpr Size kSizes[] = {
    {"BufferSizeB", 1}, {"BufferSizeKB", 1 << 10}, {"BufferSizeMB", 1 << 20}};

std::string ofCache(const CacheEntry& cache) {
  return " of stream cache " + std::to_string(cache.id());
}

// Of several sizes the one that the loader chose is written.
void addSizes(const CacheEntry& cache, const XMLElement& element,
              std::vector<std::string>& losses) {
  for (const Size& size : kSizes)
    if (size.unit != cache.record->s32BufUnit && element.Attribute(size.attribute) != nullptr)
      losses.push_back("\"" + std::string(size.attribute) + "\"" + ofCache(cache));
}

// Each source gets one entry, and one source the mark.
void addEntries(const CacheEntry& cache, std::vector<std::string>& losses) {
  if (cache.allowedIds().size() < cache.allowed.size())
    losses.push_back("the second entry for a source" + ofCache(cache));
  const std::optional<int> kept = cache.marked(&AllowedSource::isDefault);
  for (const AllowedSource& source : cache.allowed)
    if (source.isDefault && source.id != *kept)
      losses.push_back("the second \"Default\"" + ofCache(cache) + ", at source " +
                       std::to_string(source.id));
}

std::string joined(const std::vector<std::string>& losses) {
  std::string list;
  for (const std::string& loss : losses) list += (list.empty() ? "" : ", ") + loss;
  return list;
}

}  // namespace

void requireDumpable(const std::vector<CacheEntry>& caches) {
  for (const CacheEntry& cache : caches)
    for (const AllowedSource& source : cache.allowed)
      if (source.id < 0 || source.id > settings::kGreatestSourceId)
        throw Refusal("the library saves all caches, and would lose source " +
                      std::to_string(source.id) + ofCache(cache) + ", which is outside 0.." +
                      std::to_string(settings::kGreatestSourceId));
}

std::vector<std::string> dumpNotes(const std::vector<CacheEntry>& caches, int changed) {
  const device::Document document = device::requireDocument(CFG_FILE_MPP);
  XMLElement* section = requireSection(*document, settings::streamCaches());
  const std::vector<XMLElement*> elements = entriesOf(section, settings::streamCaches());
  std::vector<std::string> losses = lossesOf(*section, settings::streamCaches());
  std::vector<std::string> notes;
  for (std::size_t i = 0; i < caches.size() && i < elements.size(); ++i) {
    const CacheEntry& cache = caches[i];
    addSizes(cache, *elements[i], losses);
    addEntries(cache, losses);
    if (!cache.marked(&AllowedSource::isDefault) && cache.id() != changed)
      notes.push_back("note: source " + std::to_string(cache.record->s32EnabledSrc) +
                      ofCache(cache) + ", which the loader takes, gets the mark \"Default\"");
  }
  if (!losses.empty())
    notes.insert(notes.begin(), "note: all caches are rewritten without " + joined(losses));
  return notes;
}

}  // namespace camcfg::tool::media
