#include "parameters/parameter.h"

#include <camcfg/store.h>

#include <algorithm>
#include <iterator>

#include "base/concat.h"
#include "base/elements.h"
#include "base/name_matches.h"
#include "base/outcome.h"
#include "base/plain_text.h"

namespace camcfg::tool::parameters {
namespace {

using tinyxml2::XMLDocument;
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

std::vector<Parameter> parametersIn(XMLDocument& document) {
  std::vector<Parameter> found;
  for (XMLElement* section : childrenOf(document)) collect(section->Value(), "", section, found);
  return found;
}

struct Place {
  std::string section;
  std::string name;
};

// "OsdClock/Position" goes by "Position", too.
bool isCalled(const Parameter& parameter, const std::string& name) {
  const std::string& whole = parameter.name;
  return whole == name ||
         (whole.size() > name.size() &&
          whole.compare(whole.size() - name.size() - 1, std::string::npos, "/" + name) == 0);
}

[[noreturn]] void refuseUnknown(const XMLDocument& document, const std::string& word,
                                const std::vector<Parameter>& all) {
  if (document.FirstChildElement(word.c_str()) != nullptr)
    throw Refusal(concat(quoted(word), " is a section; give ", word, "/NAME"));
  std::vector<std::string> known;
  const bool isPath = word.find('/') != std::string::npos;
  known.reserve(all.size());
  for (const Parameter& parameter : all)
    known.push_back(isPath ? parameter.path() : parameter.name);
  for (const XMLElement* section : childrenOf(document)) known.emplace_back(section->Value());
  throw Refusal(concat("there is no parameter ", quoted(word), didYouMean(word, known)));
}

// What one word stands for that is no place with a section.
Place requireNamed(XMLDocument& document, const std::string& name) {
  const std::vector<Parameter> all = parametersIn(document);
  std::vector<Parameter> named;
  std::copy_if(all.begin(), all.end(), std::back_inserter(named),
               [&](const Parameter& parameter) { return isCalled(parameter, name); });
  if (named.empty()) refuseUnknown(document, name, all);
  if (named.size() == 1) return {named.front().section, named.front().name};
  std::vector<std::string> paths;
  paths.reserve(named.size());
  for (const Parameter& parameter : named) paths.push_back(parameter.path());
  throw Refusal(concat(quoted(name), " is the name of more than one; give one of ", joined(paths)));
}

// See Parameters::requireAt.
Place placeIn(XMLDocument& document, const std::string& place, const std::string& name) {
  if (!name.empty()) return {place, name};
  const std::size_t slash = place.find('/');
  const std::string section = place.substr(0, slash);
  const bool isPlace =
      slash != std::string::npos && document.FirstChildElement(section.c_str()) != nullptr;
  return isPlace ? Place{section, place.substr(slash + 1)} : requireNamed(document, place);
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

Parameters::Parameters(const device::Contents& file) : document_(device::parsed(file.bytes)) {}

std::vector<std::string> Parameters::sections() const {
  std::vector<std::string> names;
  for (const XMLElement* section : childrenOf(*document_)) names.emplace_back(section->Value());
  return names;
}

std::vector<Parameter> Parameters::all() const {
  return parametersIn(*document_);
}

std::vector<Parameter> Parameters::in(const std::string& section) const {
  std::vector<Parameter> found;
  collect(section, "", requireSection(section).element, found);
  return found;
}

// The answers are found for all of them together: a lookup goes through the section.
void Parameters::index(const std::string& name, Section& section) {
  std::vector<Parameter> all;
  collect(name, "", section.element, all);
  for (const Parameter& parameter : all) section.byName.emplace(parameter.name, parameter);
  const std::vector<XMLElement*> elements = childrenOf(*section.element);
  std::vector<std::string_view> names;
  names.reserve(elements.size());
  for (const XMLElement* element : elements) names.emplace_back(element->Value());
  const std::vector<NameMatches> matches = matchNames(names);
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const auto found = section.byName.find(elements[i]->Value());
    if (found != section.byName.end() && found->second.element == elements[i])
      found->second.answer = elements[matches[i].answer()];
  }
}

Parameter Parameters::require(const std::string& section, const std::string& name) const {
  Section& known = requireSection(section);
  if (known.byName.empty()) index(section, known);
  const auto found = known.byName.find(name);
  if (found != known.byName.end()) return found->second;
  std::vector<std::string> names;
  for (const Parameter& parameter : in(section)) names.push_back(parameter.name);
  throw Refusal(
      concat("section ", section, " has no parameter '", name, "'", didYouMean(name, names)));
}

Parameter Parameters::requireAt(const std::string& place, const std::string& name) const {
  const Place whole = placeIn(*document_, place, name);
  return require(whole.section, whole.name);
}

std::optional<Parameter> Parameters::lookup(const std::string& section,
                                            const std::string& name) const {
  return lookupIn(requireSection(section).element, name);
}

std::optional<Parameter> Parameters::lookup(const std::string& name) const {
  const std::string first = name.substr(0, name.find('/'));
  for (XMLElement* section : childrenOf(*document_))
    if (CFG_GetElementByName(section, first.c_str()) != nullptr) return lookupIn(section, name);
  return std::nullopt;
}

Parameters::Section& Parameters::requireSection(const std::string& name) const {
  if (sections_.empty())
    for (XMLElement* element : childrenOf(*document_))
      sections_.emplace(element->Value(), Section{element});
  const auto found = sections_.find(name);
  if (found == sections_.end()) throw Refusal(noSection(name, sections()));
  return found->second;
}

device::Explanation explainParameter(const std::string& place, const std::string& name) {
  const device::ExplainedFile file(CFG_FILE_BUSINESS);
  const Place whole = placeIn(file.document(), place, name);
  const std::vector<std::string> names = partsOf(whole.name);
  device::Explanation explanation;
  const device::ElementPath path = device::addLookups(explanation, file, whole.section, names);
  if (names.size() == 1)
    explanation.lookups.push_back(
        file.told(device::lookupInSections(file.document(), names.front())));

  explanation.what = joined(path, "/");
  explanation.copies = file.copies(device::finderOf(path));
  const XMLElement* explained = device::elementAt(file.document(), path);
  std::string permitted =
      explained == nullptr ? "" : settings::ParameterForm(*explained).permitted();
  for (const auto& [attribute, label] : kAttributes) {
    const auto take = [&, sought = attribute](XMLElement& element) {
      return Parameter{whole.section, whole.name, &element}.value(sought);
    };
    const Json value = file.value(label, permitted, device::finderOf(path), take);
    if (isInAnyCopy(value) || explanation.values.empty()) explanation.values.push_back(value);
    permitted.clear();  // it is the current value's
  }
  return explanation;
}

}  // namespace camcfg::tool::parameters
