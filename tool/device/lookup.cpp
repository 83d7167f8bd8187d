#include "device/lookup.h"

#include <camcfg/store.h>

#include <algorithm>

namespace camcfg::tool::device {
namespace {

using tinyxml2::XMLElement;

bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

}  // namespace

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
void startWith(std::vector<Hit>& hits, const XMLElement* answer) {
  while (!hits.empty() && hits.front().element != answer) hits.erase(hits.begin());
}

Lookup lookupByName(XMLElement& parent, const std::string& name, const std::string& asked) {
  Lookup lookup{asked, {}, ""};
  for (XMLElement* element = parent.FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    if (beginsWith(element->Value(), name))
      lookup.hits.push_back({element, element->Value(), element->Value() == name});
  startWith(lookup.hits, CFG_GetElementByName(&parent, name.c_str()));
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

}  // namespace camcfg::tool::device
