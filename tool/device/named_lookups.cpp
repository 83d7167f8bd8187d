#include "device/named_lookups.h"

#include <camcfg/store.h>

#include "base/refusal.h"
#include "base/spelling.h"

namespace camcfg::tool::device {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

std::vector<std::string> namesBelow(const XMLElement* parent) {
  std::vector<std::string> names;
  for (; parent != nullptr; parent = parent->NextSiblingElement())
    names.emplace_back(parent->Value());
  return names;
}

XMLElement& requireTop(XMLDocument& document, const std::string& name) {
  XMLElement* section = CFG_GetBrotherElementByName(document.FirstChildElement(), name.c_str());
  if (section != nullptr) return *section;
  throw Refusal("there is no section '" + name + "'" +
                didYouMean(name, namesBelow(document.FirstChildElement())));
}

}  // namespace

XMLElement* elementAt(XMLDocument& document, const ElementPath& path) {
  XMLElement* element =
      CFG_GetBrotherElementByName(document.FirstChildElement(), path.front().c_str());
  for (std::size_t i = 1; element != nullptr && i < path.size(); ++i)
    element = element->FirstChildElement(path[i].c_str());
  return element;
}

std::string joined(const ElementPath& path) {
  std::string text;
  for (const std::string& name : path) text += (text.empty() ? "" : "/") + name;
  return text;
}

ElementPath addLookups(Explanation& explanation, const ExplainedFile& file,
                       const std::string& section, const std::vector<std::string>& names) {
  XMLElement* element = &requireTop(file.document(), section);
  std::vector<std::string> asked = {section};
  std::vector<std::string> path = {section};
  for (const std::string& name : names) {
    asked.push_back(name);
    const Lookup lookup = lookupByName(*element, name, joined(asked));
    if (lookup.hits.empty())
      throw Refusal(joined(path) + " has nothing whose name begins with '" + name + "'" +
                    didYouMean(name, namesBelow(element->FirstChildElement())));
    explanation.lookups.push_back(file.told(lookup));
    XMLElement* exact = element->FirstChildElement(name.c_str());
    element = exact == nullptr ? lookup.hits.front().element : exact;
    path.emplace_back(element->Value());
  }
  return path;
}

}  // namespace camcfg::tool::device
