#include "device/explanation.h"

#include <camcfg/preset.h>
#include <camcfg/store.h>

#include <algorithm>

#include "device/explained_file.h"
#include "device/network.h"
#include "device/network_field.h"
#include "device/parameter.h"
#include "device/preset.h"
#include "frame/decimal.h"
#include "frame/spelling.h"
#include "frame/status.h"

namespace camcfg::tool {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

std::vector<std::string> partsOf(const std::string& path) {
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    parts.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

// The element of just these names; null if there is none.
XMLElement* elementAt(XMLDocument& document, const std::vector<std::string>& path) {
  XMLElement* element =
      CFG_GetBrotherElementByName(document.FirstChildElement(), path.front().c_str());
  for (std::size_t i = 1; element != nullptr && i < path.size(); ++i)
    element = element->FirstChildElement(path[i].c_str());
  return element;
}

auto finderOf(const std::vector<std::string>& path) {
  return [path](XMLDocument& document) { return elementAt(document, path); };
}

std::string joined(const std::vector<std::string>& texts, const char* between) {
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : between) + text;
  return list;
}

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

// Looks names up one below the other, and adds what each finds.
// @return the path that is explained: of the elements of just these names, or else of what answers
std::vector<std::string> addLookups(Explanation& explanation, const ExplainedFile& file,
                                    const std::string& section,
                                    const std::vector<std::string>& names) {
  XMLElement* element = &requireTop(file.document(), section);
  std::vector<std::string> asked = {section};
  std::vector<std::string> path = {section};
  for (const std::string& name : names) {
    asked.push_back(name);
    const Lookup lookup = lookupByName(*element, name, joined(asked, "/"));
    if (lookup.hits.empty())
      throw Refusal(joined(path, "/") + " has nothing whose name begins with '" + name + "'" +
                    didYouMean(name, namesBelow(element->FirstChildElement())));
    explanation.lookups.push_back(file.told(lookup));
    XMLElement* exact = element->FirstChildElement(name.c_str());
    element = exact == nullptr ? lookup.hits.front().element : exact;
    path.emplace_back(element->Value());
  }
  return path;
}

std::string rangeOf(const Parameter& parameter) {
  const auto shown = [&](const char* attribute) {
    const char* text = parameter.text(attribute);
    return std::string(text == nullptr ? "?" : text);
  };
  const std::string range = shown("Min") + ".." + shown("Max");
  return parameter.text("Step") == nullptr ? range : range + ", step " + shown("Step");
}

std::string permittedFor(const Parameter& parameter) {
  if (parameter.isInteger()) return rangeOf(parameter);
  const char* options = parameter.text("OptTxt");
  return options == nullptr ? "" : options;
}

struct Attribute {
  const char* name;
  const char* label;
};

constexpr Attribute kAttributes[] = {{"Cur", "current"}, {"Def", "default"}, {"Min", "min"},
                                     {"Max", "max"},     {"Step", "step"},   {"OptTxt", "allowed"}};

bool isEmpty(const ExplainedValue& value) {
  return std::all_of(value.in.begin(), value.in.end(), [](const Json& in) { return in.is_null(); });
}

// The file's own limits where it has any.
std::string permittedFor(const NetworkField& field, const XMLElement* element) {
  if (!field.isNumber()) return joined(field.words, ", ");
  if (element == nullptr) return "";
  const auto [min, max] = mtuLimits(*element);
  return std::to_string(min) + ".." + std::to_string(max);
}

ExplainedValue fieldValue(const ExplainedFile& file, std::vector<std::string> path,
                          const NetworkField& field) {
  path.emplace_back(field.name);
  ExplainedValue value = file.value(field.name, finderOf(path), [](const XMLElement& element) {
    return attributeOf(&element, "Cur");
  });
  value.permitted = permittedFor(field, elementAt(file.document(), path));
  return value;
}

XMLElement& requireGroup(const ExplainedFile& file) {
  XMLElement* group = presetGroupOf(file.document());
  if (group == nullptr)
    throw Refusal(Status::Unusable, std::string(CFG_FILE_PRESET) + " has no element PresetCfg");
  return *group;
}

Lookup lookupWord(XMLElement& group, const std::string& word) {
  if (!isWordOfDigits(word)) return lookupPreset(group, word);
  const long long id = *decimal(word);
  if (id > std::numeric_limits<int>::max()) throw Refusal("there is no preset " + word);
  return lookupPreset(group, static_cast<int>(id));
}

std::string permittedFor(const std::string& member) {
  if (member == "id") return "0.." + std::to_string(PRESET_ID_MAX);
  if (member != "description") return "";
  return "up to " + std::to_string(PRESET_DESC_SIZE - 1) + " bytes";
}

}  // namespace

Explanation explainParameter(const std::string& section, const std::string& name) {
  const ExplainedFile file(CFG_FILE_BUSINESS);
  const std::vector<std::string> names = partsOf(name);
  Explanation explanation;
  const std::vector<std::string> path = addLookups(explanation, file, section, names);
  if (names.size() == 1)
    explanation.lookups.push_back(file.told(lookupInSections(file.document(), name)));

  explanation.what = joined(path, "/");
  explanation.copies = file.copies(finderOf(path));
  for (const Attribute& attribute : kAttributes) {
    ExplainedValue value = file.value(attribute.label, finderOf(path), [&](XMLElement& element) {
      return Parameter{section, name, &element}.value(attribute.name);
    });
    if (!isEmpty(value) || explanation.values.empty()) explanation.values.push_back(value);
  }
  if (XMLElement* element = elementAt(file.document(), path))
    explanation.values.front().permitted = permittedFor(Parameter{section, name, element});
  return explanation;
}

Explanation explainCard(const std::string& card, const std::string& field) {
  const ExplainedFile file(CFG_FILE_BUSINESS);
  const NetworkField* only = field.empty() ? nullptr : &requireNetworkField(field);
  std::vector<std::string> names = {card};
  if (only != nullptr) names.emplace_back(only->name);
  Explanation explanation;
  std::vector<std::string> path = addLookups(explanation, file, "NetWork", names);
  explanation.what = joined(path, "/");
  explanation.copies = file.copies(finderOf(path));
  if (only != nullptr) path.pop_back();
  for (const NetworkField& each : networkFields())
    if (only == nullptr || only == &each)
      explanation.values.push_back(fieldValue(file, path, each));
  return explanation;
}

Explanation explainPreset(const std::string& word) {
  const ExplainedFile file(CFG_FILE_PRESET);
  const Lookup lookup = lookupWord(requireGroup(file), word);
  if (lookup.hits.empty()) throw Refusal("there is no preset " + word + ": " + lookup.why);
  const auto exact = std::find_if(lookup.hits.begin(), lookup.hits.end(),
                                  [](const Hit& hit) { return hit.exact; });
  const Hit& hit = exact == lookup.hits.end() ? lookup.hits.front() : *exact;
  const Preset preset = presetOf(*hit.element);
  const auto find = [&](XMLDocument& document) -> XMLElement* {
    if (&document == &file.document()) return hit.element;
    XMLElement* group = presetGroupOf(document);
    return group == nullptr || !preset.id ? nullptr
                                          : CFG_GetElementByNameId(group, "preset", *preset.id);
  };
  Explanation explanation{preset.label(), file.copies(find), {}, {file.told(lookup)}};
  const Json members = preset.json();
  for (auto member = members.begin(); member != members.end(); ++member) {
    const std::string& name = member.key();
    const auto take = [&](XMLElement& element) { return presetOf(element).json().at(name); };
    explanation.values.push_back(file.value(name, find, take));
    explanation.values.back().permitted = permittedFor(name);
  }
  return explanation;
}

}  // namespace camcfg::tool
