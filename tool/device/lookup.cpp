#include "device/lookup.h"

#include <camcfg/store.h>

#include <algorithm>

#include "device/preset.h"

namespace camcfg::tool {
namespace {

using tinyxml2::XMLElement;

bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

std::string whyFirst(const std::vector<Hit>& hits, const std::string& what,
                     const std::string& sought) {
  if (hits.empty()) return "no " + what + " begins with '" + sought + "'";
  const std::string why = "the first whose " + what + " begins with '" + sought + "'";
  if (hits.front().exact) return why + ", and it is just that";
  const bool hidden =
      std::any_of(hits.begin(), hits.end(), [](const Hit& hit) { return hit.exact; });
  return why + (hidden ? "; the one of just that " + what + " stands behind it"
                       : "; none has just that " + what);
}

// The library's answer comes first.
void require(std::vector<Hit>& hits, const XMLElement* answer) {
  while (!hits.empty() && hits.front().element != answer) hits.erase(hits.begin());
}

std::vector<XMLElement*> presetsIn(XMLElement& group) {
  std::vector<XMLElement*> presets;
  for (XMLElement* element = group.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    if (isPreset(*element)) presets.push_back(element);
  return presets;
}

}  // namespace

Lookup lookupByName(XMLElement& parent, const std::string& name, const std::string& asked) {
  Lookup lookup{asked, {}, ""};
  for (XMLElement* element = parent.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    if (beginsWith(element->Value(), name))
      lookup.hits.push_back({element, element->Value(), element->Value() == name});
  require(lookup.hits, CFG_GetElementByName(&parent, name.c_str()));
  lookup.why = whyFirst(lookup.hits, "name", name);
  return lookup;
}

Lookup lookupInSections(tinyxml2::XMLDocument& document, const std::string& name) {
  Lookup lookup{name + " (no section)", {}, ""};
  for (XMLElement* section = document.FirstChildElement(); section != nullptr;
       section = section->NextSiblingElement())
    if (XMLElement* element = CFG_GetElementByName(section, name.c_str()))
      lookup.hits.push_back({element, std::string(section->Value()) + "/" + element->Value(),
                             element->Value() == name});
  lookup.why = lookup.hits.empty() ? "no section has a name that begins with '" + name + "'"
                                   : "the first section in which a name begins with '" + name + "'";
  return lookup;
}

Lookup lookupPreset(XMLElement& group, int id) {
  const std::string text = std::to_string(id);
  Lookup lookup{"id " + text, {}, "no preset has the Id " + text};
  XMLElement* answer = CFG_GetElementByNameId(&group, "preset", id);
  for (XMLElement* element : presetsIn(group)) {
    const Preset preset = presetOf(*element);
    if (element == answer || preset.id == id)
      lookup.hits.push_back({element, preset.label(), preset.id == id});
  }
  require(lookup.hits, answer);
  if (lookup.hits.empty()) return lookup;
  lookup.why = lookup.hits.front().exact
                   ? "the first with the Id " + text
                   : "it has no readable Id and counts by that of the one before it";
  return lookup;
}

Lookup lookupPreset(XMLElement& group, const std::string& description) {
  Lookup lookup{"description '" + description + "'", {}, ""};
  for (XMLElement* element : presetsIn(group)) {
    const Preset preset = presetOf(*element);
    if (preset.description && beginsWith(*preset.description, description))
      lookup.hits.push_back({element, preset.label(), preset.description == description});
  }
  lookup.why = whyFirst(lookup.hits, "description", description);
  return lookup;
}

}  // namespace camcfg::tool
