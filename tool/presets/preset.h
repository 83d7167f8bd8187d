#ifndef CAMCFG_TOOL_PRESETS_PRESET_H
#define CAMCFG_TOOL_PRESETS_PRESET_H

#include <tinyxml2.h>

#include <optional>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/explanation.h"
#include "device/files.h"

namespace camcfg::tool::presets {

/// The values of a preset in their documented shape, with every member: null is what a preset of the
/// file lacks, or what is no integer there, and what is not given of one that is asked for.
using Values = Json;

/// Those of a preset of which nothing is known.
Values noValues();

/// A preset of the file.
struct Preset {
  Values values;
  tinyxml2::XMLElement* element;

  std::optional<int> id() const;
  std::optional<std::string> description() const;
  /// "preset 3 'Dock'"
  std::string label() const;
};

/// The presets of "/cfg0/preset_cfg.xml".
class Presets {
 public:
  /// @throws Refusal if the file is unusable
  Presets();

  /// In the order of the file.
  const std::vector<Preset>& all() const { return all_; }
  Json json() const;

  /// What the library finds by id; null if it finds none. It always has this id itself.
  const Preset* lookup(int id) const;
  /// What the library finds by the beginning of a description; null if it finds none.
  const Preset* lookup(const std::string& description) const;

  /// The preset that a word stands for: a word of digits is an id, any other a whole description.
  /// @throws Refusal if there is none, or more than one of this description
  const Preset& require(const std::string& word) const;

  /// What applications get instead when they ask for a preset by its description, as a note; empty
  /// if they get this one.
  std::string shadowOf(const Preset& preset) const;

 private:
  const Preset& requireDescription(const std::string& description) const;

  device::Document document_;
  tinyxml2::XMLElement* group_;
  std::vector<Preset> all_;
};

/// The preset group of a document; null if it has none.
tinyxml2::XMLElement* presetGroupOf(tinyxml2::XMLDocument& document);

/// The same.
/// @throws Refusal if there is none
tinyxml2::XMLElement& requirePresetGroup(tinyxml2::XMLDocument& document);

/// The presets of a group, in their order.
std::vector<Preset> presetsIn(tinyxml2::XMLElement& group);

/// What a preset element holds.
Preset presetOf(tinyxml2::XMLElement& element);

/// The id that a word stands for, if it is one of digits; one that no preset can have is refused.
/// @throws Refusal
std::optional<int> idIn(const std::string& word);

/// Lookups are tried in the main copy, or else in the next good one.
/// @param word  a word of digits is an id, any other a description
/// @throws Refusal  no copy is good, or nothing is found
device::Explanation explainPreset(const std::string& word);

}  // namespace camcfg::tool::presets

#endif
