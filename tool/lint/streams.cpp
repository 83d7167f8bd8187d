#include <limits>
#include <map>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/media_form.h"
#include "lint/rules.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

// How findings call a cache: "cache 3".
std::string labelOf(const XMLElement& cache) {
  return has(cache, "Id") ? "cache " + clipped(textOf(cache, "Id")) : "this cache";
}

void checkNames(const Elements& sources, Findings& findings) {
  const char* carried = nullptr;
  for (const XMLElement* source : sources) {
    if (const char* name = source->Attribute("Name")) {
      carried = name;
      continue;
    }
    findings.add(kCarriedName, *source,
                 concat(tag(source->Name()), " has no \"Name\", ",
                        carried == nullptr
                            ? "and there is none before it to take: the section does not load"
                            : concat("and is called ", quoted(carried), ", as the one before it")));
  }
}

void checkSources(const XMLDocument& document, Findings& findings) {
  checkForm(document, settings::streamSources(), findings);
  const Elements sources = entriesIn(document, settings::streamSources());
  checkNames(sources, findings);
  checkEqualIds(sources, "this source", findings);
}

constexpr long long kSmallest = 4096;  // about what a frame of sound or a still picture takes

void checkSize(const Item& cache) {
  int given = 0;
  for (const settings::SizeUnit& unit : settings::kCacheSizeUnits) {
    const int size = settings::integerIn(cache.element, unit.attribute).value_or(-1);
    if (size == -1) continue;
    ++given;
    const std::string what = " " + std::to_string(size);
    const long long bytes = static_cast<long long>(size) * unit.bytes;
    if (bytes > std::numeric_limits<int>::max())
      cache.addOf(
          kCacheSizeWraps, unit.attribute,
          concat(what, " is 2 GiB or more and wraps to ", static_cast<int>(bytes), " bytes"));
    if (size < 1)
      cache.addOf(kCacheSizeEmpty, unit.attribute, what + " is not a size");
    else if (bytes < kSmallest)
      cache.addOf(kCacheSizeSmall, unit.attribute, what + " is less than 4 KiB");
  }
  if (given == 0)
    cache.add(kCacheSizeMissing, " has no \"BufferSizeB\", \"BufferSizeKB\" or \"BufferSizeMB\"");
  if (given > 1) cache.add(kCacheSeveralSizes, " has several sizes");
}

// Updates in place look for the beginning of a name, as it is written here, and for the id.
void checkFoundById(const XMLElement& section, Findings& findings) {
  std::map<int, const XMLElement*> answers;
  for (const XMLElement* element : childrenOf(section)) {
    const Item item{*element, labelOf(*element), findings};
    const bool isFound = beginsWith(element->Name(), "Cache");
    const bool isCache = isSameWord(element->Name(), "Cache");
    if (isCache && !isFound)
      item.add(kCacheNotFound, ": updates do not find " + tag(element->Name()));
    const std::optional<int> id = settings::integerIn(*element, "Id");
    if (!isFound || !id) continue;
    const XMLElement& answer = *answers.emplace(*id, element).first->second;
    if (isCache && !isSameWord(answer.Name(), "Cache"))
      item.addAt(kCacheShadowed, "Id",
                 concat(": updates find ", tag(answer.Name()), atLine(answer)));
  }
}

void checkCaches(const XMLDocument& document, Findings& findings) {
  checkForm(document, settings::streamCaches(), findings);
  if (const XMLElement* section = media::sectionIn(document, settings::streamCaches()))
    checkFoundById(*section, findings);
  const Elements caches = entriesIn(document, settings::streamCaches());
  checkEqualIds(caches, "this cache", findings);
  for (const XMLElement* cache : caches) checkSize({*cache, labelOf(*cache), findings});
}

constexpr int kMaskBits = 32;
constexpr int kNone = -1;  // counts as missing

using Sources = std::map<int, const XMLElement*>;

// An entry of a whitelist, which findings call by its cache, with the source that the loader takes it
// for.
struct AllowedEntry {
  Item item;
  int id;

  std::string source() const { return "source " + std::to_string(id); }
};

std::vector<AllowedEntry> whitelistOf(const XMLElement& cache, Findings& findings) {
  std::vector<AllowedEntry> entries;
  int id = cache.IntAttribute("Id", kNone);
  for (const XMLElement* element : media::entriesOf(cache, {"AllowedStreamSource"})) {
    const std::optional<int> own = settings::integerIn(*element, "Id");
    id = own.value_or(id);
    entries.push_back({{*element, labelOf(cache), findings}, id});
    if (!own)
      entries.back().item.add(
          kCarriedSourceId,
          ": this entry has no readable \"Id\" and stands for " + entries.back().source());
  }
  return entries;
}

// The source that the loader takes, and what it makes of the marks.
const AllowedEntry& carriedOf(const Item& cache, const std::vector<AllowedEntry>& entries) {
  const AllowedEntry* carried = nullptr;
  for (const AllowedEntry& entry : entries) {
    if (entry.item.element.IntAttribute("Default", 0) == 0) continue;
    if (carried != nullptr)
      entry.item.addAt(kTwoDefaults, "Default",
                       concat(": ", entry.source(), " is marked \"Default\", too, and ",
                              carried->source(), " is carried"));
    else
      carried = &entry;
  }
  if (carried != nullptr) return *carried;
  if (entries.size() > 1)
    cache.add(kNoDefault, concat(": no source is marked \"Default\", so the last one, ",
                                 entries.back().id, ", is carried"));
  return entries.back();
}

void checkCarried(const AllowedEntry& carried, const Sources& sources) {
  if (carried.id == kNone) return;
  const auto add = [&](const Rule& rule, const std::string& what) {
    carried.item.addAt(rule, "Id", concat(" carries ", carried.source(), ", which ", what));
  };
  if (carried.id < 0 || carried.id >= kMaskBits)
    add(kEnabledOutsideWhitelist, "is not in its whitelist");
  const auto source = sources.find(carried.id);
  if (source == sources.end())
    add(kEnabledSourceMissing, "does not exist");
  else if (source->second->IntAttribute("Enabled", 1) == 0)
    add(kEnabledSourceDisabled, "is disabled");
}

void checkEntry(const AllowedEntry& entry, int carried, const Sources& sources) {
  if (entry.id == kNone) return;
  if (entry.id == carried) return;
  if (sources.count(entry.id) == 0)
    entry.item.addAt(kAllowedSourceMissing, "Id",
                     concat(" allows ", entry.source(), ", which does not exist"));
  if (entry.item.element.IntAttribute("Enable", 0) == 1)
    entry.item.addAt(
        kEnableDiffers, "Enable",
        concat(": ", entry.source(), " is marked \"Enable\", but source ", carried, " is carried"));
}

void checkWhitelist(const XMLElement& cache, const Sources& sources, Findings& findings) {
  const Item item{cache, labelOf(cache), findings};
  const std::vector<AllowedEntry> entries = whitelistOf(cache, findings);
  if (entries.empty()) return item.add(kWhitelistEmpty, " allows no source");
  const AllowedEntry& carried = carriedOf(item, entries);
  checkCarried(carried, sources);
  std::map<int, const XMLElement*> firsts;
  for (const AllowedEntry& entry : entries) {
    checkEntry(entry, carried.id, sources);
    const auto [first, isNew] = firsts.emplace(entry.id, &entry.item.element);
    if (!isNew)
      entry.item.addAt(kAllowedTwice, "Id",
                       concat(": ", entry.source(), " is allowed already", atLine(*first->second)));
  }
}

}  // namespace

void checkStreams(const Source& source, Findings& findings) {
  checkSources(*source.document, findings);
  checkCaches(*source.document, findings);
}

void checkWhitelists(const Source& source, Findings& findings) {
  Sources sources;
  for (const XMLElement* each : entriesIn(*source.document, settings::streamSources()))
    sources.emplace(each->IntAttribute("Id", kNone), each);
  for (const XMLElement* cache : entriesIn(*source.document, settings::streamCaches()))
    checkWhitelist(*cache, sources, findings);
}

}  // namespace camcfg::tool::lint
