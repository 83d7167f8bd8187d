#include "parameters/parameter.h"

#include <camcfg/store.h>

#include <algorithm>

#include "base/decimal.h"
#include "base/refusal.h"
#include "base/spelling.h"

namespace camcfg::tool::parameters {
namespace {

using tinyxml2::XMLElement;

// An element that only holds others is no parameter itself.
void collect(const std::string& section, const std::string& above, XMLElement* parent,
             std::vector<Parameter>& found) {
  for (XMLElement* element = parent->FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement()) {
    const std::string name = above + element->Value();
    if (element->Attribute("Cur") != nullptr || element->NoChildren())
      found.push_back({section, name, element});
    collect(section, name + "/", element, found);
  }
}

// Name by name, each found by its beginning.
std::optional<Parameter> lookupIn(XMLElement* section, const std::string& name) {
  XMLElement* element = section;
  std::string path;
  for (std::size_t start = 0; start <= name.size();) {
    const std::size_t end = std::min(name.find('/', start), name.size());
    element = CFG_GetElementByName(element, name.substr(start, end - start).c_str());
    if (element == nullptr) return std::nullopt;
    path += (path.empty() ? "" : "/") + std::string(element->Value());
    start = end + 1;
  }
  return Parameter{section->Value(), path, element};
}

}  // namespace

Json Parameter::shown(const char* found) const {
  if (found == nullptr) return nullptr;
  const std::optional<std::int32_t> number = form().isInteger() ? decimal32(found) : std::nullopt;
  return number ? Json(*number) : Json(found);
}

Parameters::Parameters() : document_(device::requireDocument(CFG_FILE_BUSINESS)) {}

std::vector<XMLElement*> Parameters::elements() const {
  std::vector<XMLElement*> sections;
  for (XMLElement* section = document_->FirstChildElement(); section != nullptr;
       section = section->NextSiblingElement())
    sections.push_back(section);
  return sections;
}

std::vector<std::string> Parameters::sections() const {
  std::vector<std::string> names;
  for (const XMLElement* section : elements()) names.emplace_back(section->Value());
  return names;
}

std::vector<Parameter> Parameters::all() const {
  std::vector<Parameter> found;
  for (XMLElement* section : elements()) collect(section->Value(), "", section, found);
  return found;
}

std::vector<Parameter> Parameters::in(const std::string& section) const {
  std::vector<Parameter> found;
  collect(section, "", requireSection(section), found);
  return found;
}

Parameter Parameters::require(const std::string& section, const std::string& name) const {
  std::vector<std::string> names;
  for (const Parameter& parameter : in(section)) {
    if (parameter.name == name) return parameter;
    names.push_back(parameter.name);
  }
  throw Refusal("section " + section + " has no parameter '" + name + "'" +
                didYouMean(name, names));
}

std::optional<Parameter> Parameters::lookup(const std::string& section,
                                            const std::string& name) const {
  return lookupIn(requireSection(section), name);
}

std::optional<Parameter> Parameters::lookup(const std::string& name) const {
  const std::string first = name.substr(0, name.find('/'));
  for (XMLElement* section : elements())
    if (CFG_GetElementByName(section, first.c_str()) != nullptr) return lookupIn(section, name);
  return std::nullopt;
}

XMLElement* Parameters::requireSection(const std::string& name) const {
  XMLElement* section = CFG_GetBrotherElementByName(document_->FirstChildElement(), name.c_str());
  if (section == nullptr)
    throw Refusal("there is no section '" + name + "'" + didYouMean(name, sections()));
  return section;
}

}  // namespace camcfg::tool::parameters
