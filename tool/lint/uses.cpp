#include <map>
#include <set>

#include "base/concat.h"
#include "lint/item.h"
#include "lint/lint.h"
#include "lint/media_form.h"
#include "lint/rules.h"
#include "settings/table.h"
#include "settings/value.h"

namespace camcfg::tool::lint {
namespace {

using tinyxml2::XMLElement;

bool isRunning(const XMLElement& source) {
  return source.IntAttribute("Enabled", 1) != 0;
}

const char* hardwareOf(const XMLElement& source) {
  if (isSameWord(source.Name(), "VENC")) return "ChnId";
  return isSameWord(source.Name(), "AI") ? "AiId" : "AencId";
}

void checkHardware(const Elements& sources, Findings& findings) {
  std::map<std::string, const XMLElement*> hardware;
  for (const XMLElement* source : sources) {
    const char* channel = hardwareOf(*source);
    const auto number = settings::integerIn(*source, channel);
    if (!number || *number == -1) continue;
    const Item item{*source, tag(source->Name()), findings};
    if (*number < 0)
      item.addOf(kHardwareNumber, channel,
                 concat(" ", *number, " is below 0: there is no such channel"));
    const auto [first, isNew] = hardware.emplace(channel + std::to_string(*number), source);
    if (!isNew)
      item.addOf(kHardwareTwice, channel,
                 concat(" ", *number, " is that of the one", atLine(*first->second), ", too"));
  }
}

// A source may run for nobody.
void checkUsed(const Elements& sources, const Elements& caches, Findings& findings) {
  if (caches.empty()) return;
  std::set<int> used;
  for (const XMLElement* cache : caches) {
    int id = settings::integerIn(*cache, "Id").value_or(-1);
    for (const XMLElement* entry : media::entriesOf(*cache, {"AllowedStreamSource"})) {
      id = settings::integerIn(*entry, "Id").value_or(id);
      used.insert(id);
    }
  }
  for (const XMLElement* source : sources) {
    const auto id = settings::integerIn(*source, "Id");
    if (id && isRunning(*source) && used.count(*id) == 0)
      Item{*source, tag(source->Name()), findings}.addOf(
          kSourceUnused, "Id", concat(" ", *id, " is allowed by no cache"));
  }
}

}  // namespace

void checkUses(const Source& source, Findings& findings) {
  const Elements sources = entriesIn(*source.document, settings::streamSources());
  checkHardware(sources, findings);
  checkUsed(sources, entriesIn(*source.document, settings::streamCaches()), findings);
}

}  // namespace camcfg::tool::lint
