#include <camcfg/preset.h>
#include <camcfg/store.h>

#include <algorithm>

#include "base/plain_text.h"
#include "base/refusal.h"
#include "device/explanation.h"
#include "presets/preset.h"
#include "settings/presets.h"
#include "settings/value.h"

namespace camcfg::tool::presets {
namespace {

using settings::Setting;
using tinyxml2::XMLDocument;
using tinyxml2::XMLElement;

// What a lookup finds by id.
device::Lookup lookupPreset(XMLElement& group, int id) {
  const std::string text = std::to_string(id);
  device::Lookup lookup{"id " + text, {}, "no preset has the Id " + text};
  XMLElement* answer = CFG_GetElementByNameId(&group, "preset", id);
  for (const Preset& preset : presetsIn(group))
    if (preset.element == answer || preset.id() == id)
      lookup.hits.push_back({preset.element, preset.label(), preset.id() == id});
  startWith(lookup.hits, answer);
  if (lookup.hits.empty()) return lookup;
  lookup.why = lookup.hits.front().exact
                   ? "the first with the Id " + text
                   : "it has no readable Id and counts by that of the one before it";
  return lookup;
}

// What a lookup finds by the beginning of a description.
device::Lookup lookupPreset(XMLElement& group, const std::string& description) {
  device::Lookup lookup{"description '" + description + "'", {}, ""};
  for (const Preset& preset : presetsIn(group))
    if (preset.description() && beginsWith(*preset.description(), description))
      lookup.hits.push_back({preset.element, preset.label(), preset.description() == description});
  lookup.why = whyFirst(lookup.hits, "description", description);
  return lookup;
}

std::string permitted(const Setting& setting) {
  if (setting.kind != settings::Kind::Text)
    return settings::permittedInFile(setting, setting.limits);
  return "up to " + std::to_string(setting.field.room - 1) + " bytes";
}

}  // namespace

device::Explanation explainPreset(const std::string& word) {
  const device::ExplainedFile file(CFG_FILE_PRESET);
  XMLElement& group = requirePresetGroup(file.document());
  const std::optional<int> id = idIn(word);
  const device::Lookup lookup = id ? lookupPreset(group, *id) : lookupPreset(group, word);
  if (lookup.hits.empty()) throw Refusal("there is no preset " + word + ": " + lookup.why);
  const auto exact = std::find_if(lookup.hits.begin(), lookup.hits.end(),
                                  [](const device::Hit& hit) { return hit.exact; });
  const device::Hit& hit = exact == lookup.hits.end() ? lookup.hits.front() : *exact;
  const Preset preset = presetOf(*hit.element);
  const auto find = [&](XMLDocument& document) -> XMLElement* {
    if (&document == &file.document()) return hit.element;
    XMLElement* others = presetGroupOf(document);
    return others == nullptr || !preset.id()
               ? nullptr
               : CFG_GetElementByNameId(others, "preset", *preset.id());
  };
  device::Explanation explanation{preset.label(), file.copies(find), {}, {file.told(lookup)}};
  for (const Setting& setting : settings::presetSettings()) {
    const auto take = [&](XMLElement& element) {
      return presetOf(element).values.at(setting.member);
    };
    explanation.values.push_back(file.value(setting.member, find, take));
    explanation.values.back().permitted = permitted(setting);
  }
  return explanation;
}

}  // namespace camcfg::tool::presets
