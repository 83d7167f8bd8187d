#include "presets/explain.h"

#include <camcfg/preset.h>
#include <camcfg/store.h>

#include <algorithm>

#include "base/decimal.h"
#include "base/refusal.h"
#include "device/explanation.h"
#include "presets/lookup.h"
#include "presets/preset.h"

namespace camcfg::tool::presets {
namespace {

using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

XMLElement& requireGroup(const device::ExplainedFile& file) {
  XMLElement* group = presetGroupOf(file.document());
  if (group == nullptr)
    throw Refusal(Status::Unusable, std::string(CFG_FILE_PRESET) + " has no element PresetCfg");
  return *group;
}

device::Lookup lookupWord(XMLElement& group, const std::string& word) {
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

device::Explanation explainPreset(const std::string& word) {
  const device::ExplainedFile file(CFG_FILE_PRESET);
  const device::Lookup lookup = lookupWord(requireGroup(file), word);
  if (lookup.hits.empty()) throw Refusal("there is no preset " + word + ": " + lookup.why);
  const auto exact = std::find_if(lookup.hits.begin(), lookup.hits.end(),
                                  [](const device::Hit& hit) { return hit.exact; });
  const device::Hit& hit = exact == lookup.hits.end() ? lookup.hits.front() : *exact;
  const Preset preset = presetOf(*hit.element);
  const auto find = [&](XMLDocument& document) -> XMLElement* {
    if (&document == &file.document()) return hit.element;
    XMLElement* group = presetGroupOf(document);
    return group == nullptr || !preset.id ? nullptr
                                          : CFG_GetElementByNameId(group, "preset", *preset.id);
  };
  device::Explanation explanation{preset.label(), file.copies(find), {}, {file.told(lookup)}};
  const Json members = preset.json();
  for (const std::string& name : members.names()) {
    const auto take = [&](XMLElement& element) { return presetOf(element).json().at(name); };
    explanation.values.push_back(file.value(name, find, take));
    explanation.values.back().permitted = permittedFor(name);
  }
  return explanation;
}

}  // namespace camcfg::tool::presets
