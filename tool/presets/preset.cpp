#include "presets/preset.h"

#include <camcfg/preset.h>
#include <camcfg/store.h>

#include <algorithm>

#include "base/concat.h"
#include "base/elements.h"
#include "base/outcome.h"
#include "base/plain_text.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::presets {
namespace {

using settings::Setting;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

Json valueIn(const XMLElement& element, const Setting& setting) {
  const char* attribute = setting.attributes.front().name;
  return isText(setting) ? Json(element.Attribute(attribute))
                         : Json(settings::integerIn(element, attribute));
}

// What a lookup finds by id.
device::Lookup lookupPreset(XMLElement& group, int id) {
  const std::string text = std::to_string(id);
  device::Lookup lookup{"id " + text, {}, "no preset has the Id " + text};
  XMLElement* answer = CFG_GetElementByNameId(&group, kElement, id);
  for (const Preset& preset : presetsIn(group))
    if (preset.element == answer || preset.id() == id)
      lookup.hits.push_back(
          {preset.label(), preset.element->GetLineNum(), preset.id() == id, preset.element});
  startWith(lookup.hits, answer);
  if (lookup.hits.empty()) return lookup;
  lookup.why =
      lookup.hits.front().exact
          ? "the first with the Id " + text
          : "it has no readable Id and is treated as having the id of the preset before it";
  return lookup;
}

// What a lookup finds by the beginning of a description.
device::Lookup lookupPreset(XMLElement& group, const std::string& description) {
  device::Lookup lookup{concat("description '", description, "'"), {}, ""};
  for (const Preset& preset : presetsIn(group))
    if (preset.description() && beginsWith(*preset.description(), description))
      lookup.hits.push_back({preset.label(), preset.element->GetLineNum(),
                             preset.description() == description, preset.element});
  lookup.why = whyFirst(lookup.hits, "description", description);
  return lookup;
}

bool isPreset(const XMLElement& element) {
  return beginsWith(element.Value(), kElement);
}

std::string permitted(const Setting& setting) {
  if (!isText(setting)) return settings::permittedInFile(setting, setting.limits);
  return concat("up to ", setting.field.room - 1, " bytes");
}

}  // namespace

Values noValues() {
  static const Values none = [] {
    Values values = Json::object();
    for (const Setting& setting : settings::presetSettings()) values[setting.member] = nullptr;
    return values;
  }();
  return none;
}

std::optional<int> Preset::id() const {
  const Json& id = values.at(settings::kPresetId);
  return id.is_null() ? std::nullopt : std::optional<int>(id.get<int>());
}

std::optional<std::string> Preset::description() const {
  const Json& text = values.at(settings::kPresetDescription);
  return text.is_null() ? std::nullopt : std::optional<std::string>(text.text());
}

std::string Preset::label() const {
  const std::string name = id() ? "preset " + std::to_string(*id()) : "a preset without id";
  return description() ? concat(name, " ", quoted(*description())) : name;
}

bool isDigits(const std::string& word) {
  return !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
}

std::optional<int> idIn(const std::string& word) {
  if (word.empty())
    throw Refusal(Status::Usage,
                  "which preset? the argument is empty; give an id or a description");
  if (!isDigits(word)) return std::nullopt;
  const std::optional<std::int32_t> id = decimal32(word);
  if (!id) throw Refusal("there is no preset " + word);
  return *id;
}

XMLElement* presetGroupOf(XMLDocument& document) {
  return CFG_GetBrotherElementByName(document.FirstChildElement(), kGroup);
}

std::string whyNoGroup() {
  return concat(CFG_FILE_PRESET, " has no element ", kGroup);
}

XMLElement& requirePresetGroup(XMLDocument& document) {
  XMLElement* group = presetGroupOf(document);
  if (group == nullptr) throw Refusal(Status::Unusable, whyNoGroup());
  return *group;
}

Preset presetOf(XMLElement& element) {
  Preset preset{noValues(), &element};
  for (const Setting& setting : settings::presetSettings())
    preset.values[setting.member] = valueIn(element, setting);
  return preset;
}

std::vector<Preset> presetsIn(XMLElement& group) {
  std::vector<Preset> presets;
  for (XMLElement* element : childrenOf(group))
    if (isPreset(*element)) presets.push_back(presetOf(*element));
  return presets;
}

PresetIndex::PresetIndex(XMLElement& group) {
  std::optional<int> id;
  for (XMLElement* element : childrenOf(group)) {
    if (!isPreset(*element)) continue;
    const std::optional<int> own = settings::integerIn(*element, "Id");
    if (own) id = own;
    if (id) elements_.emplace(*id, element);
  }
}

XMLElement* PresetIndex::find(int id) const {
  const auto found = elements_.find(id);
  return found == elements_.end() ? nullptr : found->second;
}

Presets::Presets()
    : document_(device::requireDocument(CFG_FILE_PRESET)),
      index_(requirePresetGroup(*document_)),
      all_(presetsIn(requirePresetGroup(*document_))) {
  for (std::size_t i = 0; i < all_.size(); ++i) places_.emplace(all_[i].element, i);
}

Json Presets::json() const {
  Json list = Json::array();
  for (const Preset& preset : all_) list.push_back(preset.values);
  return list;
}

const Preset* Presets::lookup(int id) const {
  const auto found = places_.find(index_.find(id));
  if (found == places_.end()) return nullptr;
  const Preset& preset = all_[found->second];
  return preset.id() == id ? &preset : nullptr;
}

const Preset* Presets::lookup(const std::string& description) const {
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const Preset& preset) {
    return preset.description() && beginsWith(*preset.description(), description);
  });
  return found == all_.end() ? nullptr : &*found;
}

const Preset& Presets::require(const std::string& word) const {
  const std::optional<int> id = idIn(word);
  if (!id) return requireDescription(word);
  const Preset* found = lookup(*id);
  if (found == nullptr) throw Refusal("there is no preset " + word);
  return *found;
}

const Preset& Presets::requireDescription(const std::string& description) const {
  const Preset* found = nullptr;
  std::vector<std::string> known;
  for (const Preset& preset : all_) {
    if (!preset.description()) continue;
    known.push_back(*preset.description());
    if (*preset.description() != description) continue;
    if (found != nullptr)
      throw Refusal(concat("there are several presets called '", description, "': ", found->label(),
                           " and ", preset.label(), "; give an id"));
    found = &preset;
  }
  if (found != nullptr) return *found;
  const Preset* other = lookup(description);
  const std::string hit =
      other == nullptr ? "" : concat(" (a lookup by the beginning finds ", other->label(), ")");
  throw Refusal(
      concat("there is no preset called '", description, "'", hit, didYouMean(description, known)));
}

int Presets::requireReachableId(const Preset& preset) const {
  const std::optional<int> id = preset.id();
  if (!id) throw Refusal(preset.label() + ": the library changes presets by their ids");
  const Preset* found = lookup(*id);
  if (found == &preset) return *id;
  throw Refusal(concat(preset.label(), ": the library would change ",
                       found == nullptr ? "none" : found->label(),
                       ", which comes first with this id"));
}

std::string Presets::shadowOf(const Preset& preset) const {
  const std::string description = preset.description().value_or("");
  if (description.empty()) return "";
  const Preset* found = lookup(description);
  if (found->element == preset.element) return "";
  return concat("note: applications that ask for '", description, "' get ", found->label(),
                ", since a description that begins with it comes first");
}

device::Explanation explainPreset(const std::string& word) {
  const device::ExplainedFile file(CFG_FILE_PRESET);
  XMLElement& group = requirePresetGroup(file.document());
  const std::optional<int> id = idIn(word);
  const device::Lookup lookup = id ? lookupPreset(group, *id) : lookupPreset(group, word);
  if (lookup.hits.empty()) throw Refusal(concat("there is no preset ", word, ": ", lookup.why));
  const auto exact = std::find_if(lookup.hits.begin(), lookup.hits.end(),
                                  [](const device::Hit& hit) { return hit.exact; });
  const device::Hit& hit = exact == lookup.hits.end() ? lookup.hits.front() : *exact;
  const Preset preset = presetOf(*hit.element);
  const auto find = [&](XMLDocument& document) -> XMLElement* {
    if (&document == &file.document()) return hit.element;
    XMLElement* others = presetGroupOf(document);
    return others == nullptr || !preset.id()
               ? nullptr
               : CFG_GetElementByNameId(others, kElement, *preset.id());
  };
  device::Explanation explanation{preset.label(), file.copies(find)};
  explanation.lookups.push_back(file.told(lookup));
  for (const Setting& setting : settings::presetSettings()) {
    const auto take = [&](XMLElement& element) {
      return presetOf(element).values.at(setting.member);
    };
    explanation.values.push_back(file.value(setting.member, permitted(setting), find, take));
  }
  return explanation;
}

}  // namespace camcfg::tool::presets
