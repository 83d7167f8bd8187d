#include "parameters/parameter.h"

#include <camcfg/store.h>

#include <algorithm>

#include "base/elements.h"
#include "base/outcome.h"
#include "base/plain_text.h"

namespace camcfg::tool::parameters {
namespace {

using tinyxml2::XMLElement;

// An element that only holds others is no parameter itself.
void collect(const std::string& section, const std::string& above, XMLElement* parent,
             std::vector<Parameter>& found) {
  for (XMLElement* element : childrenOf(*parent)) {
    const std::string name = above + element->Value();
    if (element->Attribute("Cur") != nullptr || element->NoChildren())
      found.push_back({section, name, element});
    collect(section, name + "/", element, found);
  }
}

std::vector<std::string> partsOf(const std::string& path) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    parts.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

// Name by name, each found by its beginning.
std::optional<Parameter> lookupIn(XMLElement* section, const std::string& name) {
  XMLElement* element = section;
  std::vector<std::string> path;
  for (const std::string& part : partsOf(name)) {
    element = CFG_GetElementByName(element, part.c_str());
    if (element == nullptr) return std::nullopt;
    path.emplace_back(element->Value());
  }
  return Parameter{section->Value(), joined(path, "/"), element};
}

// The attributes, and what they are called.
constexpr std::pair<const char*, const char*> kAttributes[] = {
    {"Cur", "current"}, {"Def", "default"}, {"Min", "min"},
    {"Max", "max"},     {"Step", "step"},   {"OptTxt", "allowed"}};

bool isInAnyCopy(const Json& value) {
  return std::any_of(device::kPlaces.begin(), device::kPlaces.end(), [&](device::Place place) {
    return !value.at(device::wordFor(place)).is_null();
  });
}

}  // namespace

Json Parameter::shown(const char* found) const {
  if (found == nullptr) return nullptr;
  const std::optional<std::int32_t> number = form().isInteger() ? decimal32(found) : std::nullopt;
  return number ? Json(*number) : Json(found);
}

Parameters::Parameters() : document_(device::requireDocument(CFG_FILE_BUSINESS)) {}

std::vector<std::string> Parameters::sections() const {
  std::vector<std::string> names;
  for (const XMLElement* section : childrenOf(*document_)) names.emplace_back(section->Value());
  return names;
}

std::vector<Parameter> Parameters::all() const {
  std::vector<Parameter> found;
  for (XMLElement* section : childrenOf(*document_)) collect(section->Value(), "", section, found);
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
  for (XMLElement* section : childrenOf(*document_))
    if (CFG_GetElementByName(section, first.c_str()) != nullptr) return lookupIn(section, name);
  return std::nullopt;
}

XMLElement* Parameters::requireSection(const std::string& name) const {
  XMLElement* section = CFG_GetBrotherElementByName(document_->FirstChildElement(), name.c_str());
  if (section == nullptr)
    throw Refusal("there is no section '" + name + "'" + didYouMean(name, sections()));
  return section;
}

device::Explanation explainParameter(const std::string& section, const std::string& name) {
  const device::ExplainedFile file(CFG_FILE_BUSINESS);
  const std::vector<std::string> names = partsOf(name);
  device::Explanation explanation;
  const device::ElementPath path = device::addLookups(explanation, file, section, names);
  if (names.size() == 1)
    explanation.lookups.push_back(file.told(device::lookupInSections(file.document(), name)));

  explanation.what = joined(path, "/");
  explanation.copies = file.copies(device::finderOf(path));
  const XMLElement* explained = device::elementAt(file.document(), path);
  std::string permitted =
      explained == nullptr ? "" : settings::ParameterForm(*explained).permitted();
  for (const auto& [attribute, label] : kAttributes) {
    const auto take = [&, sought = attribute](XMLElement& element) {
      return Parameter{section, name, &element}.value(sought);
    };
    const Json value = file.value(label, permitted, device::finderOf(path), take);
    if (isInAnyCopy(value) || explanation.values.empty()) explanation.values.push_back(value);
    permitted.clear();  // it is the current value's
  }
  return explanation;
}

}  // namespace camcfg::tool::parameters
