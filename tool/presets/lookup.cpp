#include "presets/lookup.h"

#include <camcfg/store.h>

#include "presets/preset.h"

namespace camcfg::tool::presets {
namespace {

using tinyxml2::XMLElement;

bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

std::vector<XMLElement*> presetsIn(XMLElement& group) {
  std::vector<XMLElement*> presets;
  for (XMLElement* element = group.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    if (isPreset(*element)) presets.push_back(element);
  return presets;
}

}  // namespace

device::Lookup lookupPreset(XMLElement& group, int id) {
  const std::string text = std::to_string(id);
  device::Lookup lookup{"id " + text, {}, "no preset has the Id " + text};
  XMLElement* answer = CFG_GetElementByNameId(&group, "preset", id);
  for (XMLElement* element : presetsIn(group)) {
    const Preset preset = presetOf(*element);
    if (element == answer || preset.id == id)
      lookup.hits.push_back({element, preset.label(), preset.id == id});
  }
  startWith(lookup.hits, answer);
  if (lookup.hits.empty()) return lookup;
  lookup.why = lookup.hits.front().exact
                   ? "the first with the Id " + text
                   : "it has no readable Id and counts by that of the one before it";
  return lookup;
}

device::Lookup lookupPreset(XMLElement& group, const std::string& description) {
  device::Lookup lookup{"description '" + description + "'", {}, ""};
  for (XMLElement* element : presetsIn(group)) {
    const Preset preset = presetOf(*element);
    if (preset.description && beginsWith(*preset.description, description))
      lookup.hits.push_back({element, preset.label(), preset.description == description});
  }
  lookup.why = whyFirst(lookup.hits, "description", description);
  return lookup;
}

}  // namespace camcfg::tool::presets
