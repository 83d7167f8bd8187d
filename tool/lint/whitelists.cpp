#include <map>

#include "lint/media_form.h"
#include "lint/stream.h"
#include "lint/subject.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kNoAllowed{"whitelist-empty", Severity::Error,
                          "A cache allows no source, so the whole section does not load.",
                          "<Cache Id=\"0\" Name=\"main\" BufferSizeMB=\"8\"/>"};
constexpr Rule kCarriedSource{"carried-source-id", Severity::Error,
                              "A whitelist entry without a readable \"Id\" stands for the source "
                              "of the entry before it, the first one for the cache's own id.",
                              "<AllowedStreamSource Id=\"3\"/> and after it <AllowedStreamSource "
                              "Default=\"1\"/>"};
constexpr Rule kAllowedTwice{"allowed-twice", Severity::Warning,
                             "A whitelist has a source twice: the next save writes it once.",
                             "<AllowedStreamSource Id=\"3\"/> twice in a <Cache>"};
constexpr Rule kTwoDefaults{"two-defaults", Severity::Warning,
                            "Two sources of a cache are marked \"Default\": the first is carried.",
                            "<AllowedStreamSource Id=\"1\" Default=\"1\"/><AllowedStreamSource "
                            "Id=\"2\" Default=\"1\"/>"};
constexpr Rule kNoDefault{"no-default", Severity::Warning,
                          "No source of a cache is marked \"Default\": the last one is carried.",
                          "<AllowedStreamSource Id=\"1\"/><AllowedStreamSource Id=\"2\"/>"};
constexpr Rule kEnableDiffers{"enable-differs", Severity::Warning,
                              "\"Enable\", which updates in place set, is at another source than "
                              "the one that the loader takes by \"Default\".",
                              "<AllowedStreamSource Id=\"1\" Default=\"1\"/><AllowedStreamSource "
                              "Id=\"2\" Enable=\"1\"/>"};
constexpr Rule kCarriedOutside{"enabled-outside-whitelist", Severity::Error,
                               "The source that a cache carries is not in the whitelist that is "
                               "made of its entries: ids are taken modulo 32.",
                               "<AllowedStreamSource Id=\"40\" Default=\"1\"/>"};
constexpr Rule kCarriedUnknown{"enabled-source-missing", Severity::Error,
                               "A cache carries a source that does not exist.",
                               "<AllowedStreamSource Id=\"9\" Default=\"1\"/> without a source 9"};
constexpr Rule kCarriedDisabled{"enabled-source-disabled", Severity::Warning,
                                "A cache carries a source that is disabled.",
                                "<AllowedStreamSource Id=\"1\" Default=\"1\"/> with <VENC Id=\"1\" "
                                "... Enabled=\"0\"/>"};
constexpr Rule kAllowedUnknown{"allowed-source-missing", Severity::Warning,
                               "A cache allows a source that does not exist.",
                               "<AllowedStreamSource Id=\"9\"/> without a source 9"};

constexpr int kMaskBits = 32;
constexpr int kNone = -1;  // counts as missing

using Sources = std::map<int, const XMLElement*>;

Sources sourcesById(const XMLDocument& document) {
  Sources sources;
  for (const XMLElement* source : sourcesIn(document))
    sources.emplace(source->IntAttribute("Id", -1), source);
  return sources;
}

// An entry of a whitelist with the source that the loader takes it for.
struct Entry {
  const XMLElement* element;
  int id;
};

std::vector<Entry> whitelistOf(const XMLElement& cache, Findings& findings) {
  std::vector<Entry> entries;
  int id = cache.IntAttribute("Id", -1);
  for (const XMLElement* element : entriesOf(cache, "AllowedStreamSource")) {
    if (element->QueryIntAttribute("Id", &id) != tinyxml2::XML_SUCCESS)
      findings.add(kCarriedSource, *element,
                   labelOf(cache) + ": this entry has no readable \"Id\" and stands for source " +
                       std::to_string(id));
    entries.push_back({element, id});
  }
  return entries;
}

// The source that the loader takes, and what it makes of the marks.
const Entry& carriedOf(const XMLElement& cache, const std::vector<Entry>& entries,
                       Findings& findings) {
  const Entry* carried = nullptr;
  for (const Entry& entry : entries) {
    if (entry.element->IntAttribute("Default", 0) == 0) continue;
    if (carried != nullptr)
      findings.add(kTwoDefaults, *entry.element, "Default",
                   labelOf(cache) + ": source " + std::to_string(entry.id) +
                       " is marked \"Default\", too, and source " + std::to_string(carried->id) +
                       " is carried");
    else
      carried = &entry;
  }
  if (carried != nullptr) return *carried;
  if (entries.size() > 1)
    findings.add(kNoDefault, cache,
                 labelOf(cache) + ": no source is marked \"Default\", so the last one, " +
                     std::to_string(entries.back().id) + ", is carried");
  return entries.back();
}

void checkCarried(const XMLElement& cache, const Entry& carried, const Sources& sources,
                  Findings& findings) {
  if (carried.id == kNone) return;
  const std::string what =
      labelOf(cache) + " carries source " + std::to_string(carried.id) + ", which ";
  if (carried.id < 0 || carried.id >= kMaskBits)
    findings.add(kCarriedOutside, *carried.element, "Id", what + "is not in its whitelist");
  const auto source = sources.find(carried.id);
  if (source == sources.end())
    findings.add(kCarriedUnknown, *carried.element, "Id", what + "does not exist");
  else if (source->second->IntAttribute("Enabled", 1) == 0)
    findings.add(kCarriedDisabled, *carried.element, "Id", what + "is disabled");
}

void checkEntry(const XMLElement& cache, const Entry& entry, int carried, const Sources& sources,
                Findings& findings) {
  if (entry.id == kNone) return;
  checkSourceId(*entry.element, findings);
  const std::string id = std::to_string(entry.id);
  if (entry.id != carried && sources.count(entry.id) == 0)
    findings.add(kAllowedUnknown, *entry.element, "Id",
                 labelOf(cache) + " allows source " + id + ", which does not exist");
  if (entry.id != carried && entry.element->IntAttribute("Enable", 0) == 1)
    findings.add(kEnableDiffers, *entry.element, "Enable",
                 labelOf(cache) + ": source " + id + " is marked \"Enable\", but source " +
                     std::to_string(carried) + " is carried");
}

void checkWhitelist(const XMLElement& cache, const Sources& sources, Findings& findings) {
  const std::vector<Entry> entries = whitelistOf(cache, findings);
  if (entries.empty()) {
    findings.add(kNoAllowed, cache, labelOf(cache) + " allows no source");
    return;
  }
  const Entry& carried = carriedOf(cache, entries, findings);
  checkCarried(cache, carried, sources, findings);
  std::map<int, const XMLElement*> firsts;
  for (const Entry& entry : entries) {
    checkEntry(cache, entry, carried.id, sources, findings);
    const auto [first, isNew] = firsts.emplace(entry.id, entry.element);
    if (!isNew)
      findings.add(kAllowedTwice, *entry.element, "Id",
                   labelOf(cache) + ": source " + std::to_string(entry.id) + " is allowed already" +
                       atLine(*first->second));
  }
}

void check(const Source& source, Findings& findings) {
  const Sources sources = sourcesById(*source.document);
  for (const XMLElement* cache : cachesIn(*source.document))
    checkWhitelist(*cache, sources, findings);
}

}  // namespace

Subject whitelists() {
  return {
      "stream",
      {&kNoAllowed, &kCarriedSource, &kAllowedTwice, &kTwoDefaults, &kNoDefault, &kEnableDiffers,
       &kCarriedOutside, &kCarriedUnknown, &kCarriedDisabled, &kAllowedUnknown},
      Kind::Media,
      check};
}

}  // namespace camcfg::tool::lint
