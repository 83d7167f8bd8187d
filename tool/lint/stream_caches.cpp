#include <strings.h>

#include <limits>
#include <map>

#include "lint/media_form.h"
#include "lint/stream.h"
#include "lint/subject.h"
#include "lint/values.h"

namespace camcfg::tool::lint {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

constexpr Rule kSizeMissing{"cache-size-missing", Severity::Error,
                            "A cache has no size, so the whole section does not load.",
                            "<Cache Id=\"0\" Name=\"main\">"};
constexpr Rule kSizeWraps{"cache-size-wraps", Severity::Error,
                          "Sizes are 32-bit numbers of bytes and wrap at 2 GiB: another size is "
                          "taken, or a small one.",
                          "<Cache Id=\"0\" Name=\"main\" BufferSizeMB=\"2048\">"};
constexpr Rule kSizeEmpty{"cache-size-empty", Severity::Warning, "A cache has a size below 1.",
                          "<Cache Id=\"0\" Name=\"main\" BufferSizeMB=\"0\">"};
constexpr Rule kSeveralSizes{"cache-several-sizes", Severity::Warning,
                             "A cache has several sizes: the largest is taken, and the next save "
                             "drops the others.",
                             "<Cache Id=\"0\" Name=\"main\" BufferSizeB=\"1000\" "
                             "BufferSizeKB=\"512\">"};
constexpr Rule kNotFoundById{"cache-not-found", Severity::Error,
                             "Loaders take <cache> in upper or lower case; updates in place look "
                             "for the beginning <Cache> and do not find this one.",
                             "<cache Id=\"0\" Name=\"main\" BufferSizeMB=\"8\">"};
constexpr Rule kShadowed{"cache-shadowed", Severity::Error,
                         "Updates in place look for an element whose name begins with <Cache>: an "
                         "update of this cache changes the one before it.",
                         "<CacheOld Id=\"0\"/> and after it <Cache Id=\"0\" ...>"};

struct SizeUnit {
  const char* attribute;
  long long bytes;
};
constexpr SizeUnit kUnits[] = {
    {"BufferSizeB", 1}, {"BufferSizeKB", 1LL << 10}, {"BufferSizeMB", 1LL << 20}};

void checkSize(const XMLElement& cache, Findings& findings) {
  const std::string label = labelOf(cache);
  int given = 0;
  for (const SizeUnit& unit : kUnits) {
    int size = -1;
    if (cache.QueryIntAttribute(unit.attribute, &size) != tinyxml2::XML_SUCCESS || size == -1)
      continue;
    ++given;
    const std::string what = label + ": \"" + unit.attribute + "\" " + std::to_string(size);
    if (size * unit.bytes > std::numeric_limits<int>::max())
      findings.add(kSizeWraps, cache, unit.attribute,
                   what + " is 2 GiB or more and wraps to " +
                       std::to_string(static_cast<int>(size * unit.bytes)) + " bytes");
    if (size < 1) findings.add(kSizeEmpty, cache, unit.attribute, what + " is no size");
  }
  if (given == 0)
    findings.add(kSizeMissing, cache,
                 label + " has no \"BufferSizeB\", \"BufferSizeKB\" or \"BufferSizeMB\"");
  if (given > 1) findings.add(kSeveralSizes, cache, label + " has several sizes");
}

// Updates in place look for the beginning of a name, as it is written here, and for the id.
void checkFoundById(const XMLElement& section, Findings& findings) {
  std::map<int, const XMLElement*> answers;
  for (const XMLElement* element : childrenOf(section)) {
    const bool isFound = beginsWith(element->Name(), "Cache");
    const bool isCache = strcasecmp(element->Name(), "Cache") == 0;
    if (isCache && !isFound)
      findings.add(kNotFoundById, *element,
                   labelOf(*element) + ": updates do not find " + tag(element->Name()));
    int id = 0;
    if (!isFound || element->QueryIntAttribute("Id", &id) != tinyxml2::XML_SUCCESS) continue;
    const XMLElement& answer = *answers.emplace(id, element).first->second;
    if (isCache && strcasecmp(answer.Name(), "Cache") != 0)
      findings.add(kShadowed, *element, "Id",
                   labelOf(*element) + ": updates find " + tag(answer.Name()) + atLine(answer));
  }
}

void check(const Source& source, Findings& findings) {
  const XMLElement* section = sectionOf(*source.document, settings::streamCaches());
  if (section == nullptr) return;
  checkSection(*section, settings::streamCaches(), findings);
  checkFoundById(*section, findings);
  const Elements caches = cachesIn(*source.document);
  checkEqualIds(caches, "this cache", findings);
  for (const XMLElement* cache : caches) checkSize(*cache, findings);
}

}  // namespace

Elements cachesIn(const XMLDocument& document) {
  return entriesOf(document, settings::streamCaches());
}

std::string labelOf(const XMLElement& cache) {
  return has(cache, "Id") ? "cache " + clipped(textOf(cache, "Id")) : "this cache";
}

Subject streamCaches() {
  return {"stream",
          {&kSizeMissing, &kSizeWraps, &kSizeEmpty, &kSeveralSizes, &kNotFoundById, &kShadowed},
          Kind::Media,
          check};
}

}  // namespace camcfg::tool::lint
