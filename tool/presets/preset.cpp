#include "presets/preset.h"

#include <camcfg/store.h>

#include <algorithm>
#include <climits>

#include "base/decimal.h"
#include "base/refusal.h"
#include "base/spelling.h"

namespace camcfg::tool::presets {
namespace {

using tinyxml2::XMLElement;

constexpr char kElement[] = "preset";

bool beginsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

std::optional<int> intOf(const XMLElement& element, const char* attribute) {
  int number = 0;
  return element.QueryIntAttribute(attribute, &number) == tinyxml2::XML_SUCCESS
             ? std::optional<int>(number)
             : std::nullopt;
}

template <typename Value>
Json valueOrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

}  // namespace

Json PresetValues::json() const {
  Json record = {{"id", valueOrNull(id)}, {"description", valueOrNull(description)}};
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    record[kPresetNumbers[i].name] = valueOrNull(numbers[i]);
  return record;
}

std::string Preset::label() const {
  const std::string name = id ? "preset " + std::to_string(*id) : "a preset without id";
  return description ? name + " '" + *description + "'" : name;
}

bool isWordOfDigits(const std::string& word) {
  return !word.empty() && word.find_first_not_of("0123456789") == std::string::npos;
}

bool isPreset(const XMLElement& element) {
  return beginsWith(element.Value(), kElement);
}

XMLElement* presetGroupOf(tinyxml2::XMLDocument& document) {
  return CFG_GetBrotherElementByName(document.FirstChildElement(), "PresetCfg");
}

Preset presetOf(XMLElement& element) {
  Preset preset;
  preset.element = &element;
  preset.id = intOf(element, "Id");
  if (const char* description = element.Attribute("Description")) preset.description = description;
  for (std::size_t i = 0; i < kPresetNumbers.size(); ++i)
    preset.numbers[i] = intOf(element, kPresetNumbers[i].attribute);
  return preset;
}

Presets::Presets()
    : document_(device::requireDocument(CFG_FILE_PRESET)), group_(presetGroupOf(*document_)) {
  if (group_ == nullptr)
    throw Refusal(Status::Unusable, std::string(CFG_FILE_PRESET) + " has no element PresetCfg");
  for (XMLElement* element = group_->FirstChildElement(); element != nullptr;
       element = element->NextSiblingElement())
    if (isPreset(*element)) all_.push_back(presetOf(*element));
}

const Preset* Presets::lookup(int id) const {
  const XMLElement* element = CFG_GetElementByNameId(group_, kElement, id);
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const Preset& preset) {
    return preset.element == element && preset.id == id;
  });
  return found == all_.end() ? nullptr : &*found;
}

const Preset* Presets::lookup(const std::string& description) const {
  const auto found = std::find_if(all_.begin(), all_.end(), [&](const Preset& preset) {
    return preset.description && beginsWith(*preset.description, description);
  });
  return found == all_.end() ? nullptr : &*found;
}

const Preset& Presets::require(const std::string& word) const {
  return isWordOfDigits(word) ? requireId(word) : requireDescription(word);
}

const Preset& Presets::requireId(const std::string& digits) const {
  const long long id = *decimal(digits);
  const Preset* found = id > INT_MAX ? nullptr : lookup(static_cast<int>(id));
  if (found == nullptr) throw Refusal("there is no preset " + digits);
  return *found;
}

const Preset& Presets::requireDescription(const std::string& description) const {
  const Preset* found = nullptr;
  std::vector<std::string> known;
  for (const Preset& preset : all_) {
    if (!preset.description) continue;
    known.push_back(*preset.description);
    if (*preset.description != description) continue;
    if (found != nullptr)
      throw Refusal("there are several presets called '" + description + "': " + found->label() +
                    " and " + preset.label() + "; give an id");
    found = &preset;
  }
  if (found != nullptr) return *found;
  const Preset* other = lookup(description);
  const std::string hit =
      other == nullptr ? "" : " (a lookup by the beginning finds " + other->label() + ")";
  throw Refusal("there is no preset called '" + description + "'" + hit +
                didYouMean(description, known));
}

std::string Presets::shadowOf(const Preset& preset) const {
  if (!preset.description || preset.description->empty()) return "";
  const Preset* found = lookup(*preset.description);
  if (found->element == preset.element) return "";
  return "note: applications that ask for '" + *preset.description + "' get " + found->label() +
         ", since a description that begins like this comes first";
}

}  // namespace camcfg::tool::presets
