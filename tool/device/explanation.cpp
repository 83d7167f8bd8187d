#include "device/explanation.h"

#include <camcfg/store.h>

#include <algorithm>

#include "base/concat.h"
#include "base/elements.h"
#include "base/outcome.h"
#include "base/plain_text.h"

namespace camcfg::tool::device {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

namespace {

template <typename Parent>
std::vector<std::string> elementNamesIn(const Parent& parent) {
  std::vector<std::string> names;
  for (const XMLElement* child : childrenOf(parent)) names.emplace_back(child->Value());
  return names;
}

XMLElement& requireTop(XMLDocument& document, const std::string& name) {
  XMLElement* section = CFG_GetBrotherElementByName(document.FirstChildElement(), name.c_str());
  if (section != nullptr) return *section;
  throw Refusal(noSection(name, elementNamesIn(document)));
}

Json jsonOf(const Hit& hit) {
  return {{"name", hit.name}, {"line", hit.line}, {"match", hit.exact ? "exact" : "prefix"}};
}

Json textOrNull(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

}  // namespace

// The first hit answers, the others are in its shadow.
Json jsonOf(const Lookup& lookup, const std::string& path) {
  Json answer;
  Json shadows = Json::array();
  for (const Hit& hit : lookup.hits)
    if (answer.is_null())
      answer = jsonOf(hit);
    else
      shadows.push_back(jsonOf(hit));
  return {{"asked", lookup.asked},
          {"path", path},
          {"answeredBy", answer},
          {"why", lookup.why},
          {"shadows", shadows}};
}

Json copyRow(Place place, const std::string& path, State state, const std::string& fault,
             std::optional<int> line) {
  return {{"copy", wordFor(place)},
          {"path", path},
          {"state", wordFor(state)},
          {"line", line},
          {"fault", textOrNull(fault)}};
}

Json valueRow(const std::string& name, const std::string& permitted) {
  Json row = {{"name", name}};
  for (const Place place : kPlaces) row[wordFor(place)] = nullptr;
  row["permitted"] = textOrNull(permitted);
  return row;
}

std::string whyFirst(const std::vector<Hit>& hits, const std::string& what,
                     const std::string& sought) {
  if (hits.empty()) return concat("no ", what, " begins with '", sought, "'");
  const std::string why = concat("the first whose ", what, " begins with '", sought, "'");
  if (hits.front().exact) return why + ", an exact match";
  const bool hidden =
      std::any_of(hits.begin(), hits.end(), [](const Hit& hit) { return hit.exact; });
  return why + (hidden ? "; the exact match comes later" : "; there is no exact match");
}

void startWith(std::vector<Hit>& hits, const XMLElement* answer) {
  while (!hits.empty() && hits.front().element != answer) hits.erase(hits.begin());
}

Lookup lookupByName(XMLElement& parent, const std::string& name, const std::string& asked) {
  Lookup lookup{asked, {}, ""};
  for (XMLElement* element : childrenOf(parent))
    if (beginsWith(element->Value(), name))
      lookup.hits.push_back(
          {element->Value(), element->GetLineNum(), element->Value() == name, element});
  startWith(lookup.hits, CFG_GetElementByName(&parent, name.c_str()));
  lookup.why = whyFirst(lookup.hits, "name", name);
  return lookup;
}

Lookup lookupInSections(tinyxml2::XMLDocument& document, const std::string& name) {
  Lookup lookup{name + " (no section)", {}, ""};
  for (XMLElement* section : childrenOf(document))
    if (XMLElement* element = CFG_GetElementByName(section, name.c_str()))
      lookup.hits.push_back({concat(section->Value(), "/", element->Value()), element->GetLineNum(),
                             element->Value() == name, element});
  lookup.why = lookup.hits.empty()
                   ? concat("no section has a name that begins with '", name, "'")
                   : concat("the first section in which a name begins with '", name, "'");
  return lookup;
}

XMLElement* elementAt(XMLDocument& document, const ElementPath& path) {
  XMLElement* element =
      CFG_GetBrotherElementByName(document.FirstChildElement(), path.front().c_str());
  for (std::size_t i = 1; element != nullptr && i < path.size(); ++i)
    element = element->FirstChildElement(path[i].c_str());
  return element;
}

ExplainedFile::ExplainedFile(const char* mainPath) {
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    paths_[i] = pathOf(kPlaces[i], mainPath);
    copies_[i] = loadCopy(paths_[i]);
  }
  while (tried_ < copies_.size() && copies_[tried_].state != State::Good) ++tried_;
  if (tried_ == copies_.size())
    throw Refusal(Status::Unusable,
                  concat(mainPath, " ", copies_[0].fault, " and no other copy of it is good"));
}

ElementPath addLookups(Explanation& explanation, const ExplainedFile& file,
                       const std::string& section, const std::vector<std::string>& names) {
  XMLElement* element = &requireTop(file.document(), section);
  std::vector<std::string> asked = {section};
  ElementPath path = {section};
  for (const std::string& name : names) {
    asked.push_back(name);
    const Lookup lookup = lookupByName(*element, name, joined(asked, "/"));
    if (lookup.hits.empty())
      throw Refusal(concat(joined(path, "/"), " has nothing whose name begins with '", name, "'",
                           didYouMean(name, elementNamesIn(*element))));
    explanation.lookups.push_back(file.told(lookup));
    XMLElement* exact = element->FirstChildElement(name.c_str());
    element = exact == nullptr ? lookup.hits.front().element : exact;
    path.emplace_back(element->Value());
  }
  return path;
}

}  // namespace camcfg::tool::device
