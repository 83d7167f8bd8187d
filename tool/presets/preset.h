#ifndef CAMCFG_TOOL_PRESETS_PRESET_H
#define CAMCFG_TOOL_PRESETS_PRESET_H

#include <camcfg/preset.h>
#include <tinyxml2.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/json.h"
#include "device/copy.h"

namespace camcfg::tool::presets {

/// A number of a preset beside its id.
struct PresetNumber {
  const char* name;       ///< in answers and in files that are imported
  const char* option;     ///< on the command line
  const char* attribute;  ///< in the preset file
  std::int32_t tagPRESET_CFG_S::*field;
};

constexpr std::size_t kPresetNumberCount = 5;
constexpr std::array<PresetNumber, kPresetNumberCount> kPresetNumbers = {{
    {"pan", "--pan", "PanPos", &tagPRESET_CFG_S::s32PanPos},
    {"tilt", "--tilt", "TiltPos", &tagPRESET_CFG_S::s32TiltPos},
    {"zoom", "--zoom", "ZoomPos", &tagPRESET_CFG_S::s32ZoomPos},
    {"focus", "--focus", "FocusPos", &tagPRESET_CFG_S::s32FocusPos},
    {"focusMode", "--focus-mode", "FocusMode", &tagPRESET_CFG_S::s32FocusMode},
}};

/// What is known of a preset: one of the file without what it lacks or what is no integer there, or
/// one that is asked for without what is not given.
struct PresetValues {
  std::optional<int> id;
  std::optional<std::string> description;
  std::array<std::optional<int>, kPresetNumberCount> numbers;  ///< as in kPresetNumbers

  /// The preset in its documented shape.
  Json json() const;
};

/// A preset of the file.
struct Preset : PresetValues {
  tinyxml2::XMLElement* element;

  const PresetValues& values() const { return *this; }
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
  const Preset& requireId(const std::string& digits) const;
  const Preset& requireDescription(const std::string& description) const;

  device::Document document_;
  tinyxml2::XMLElement* group_;
  std::vector<Preset> all_;
};

/// The preset group of a document; null if it has none.
tinyxml2::XMLElement* presetGroupOf(tinyxml2::XMLDocument& document);

/// Whether a word that names a preset is an id.
bool isWordOfDigits(const std::string& word);

/// What a preset element holds.
Preset presetOf(tinyxml2::XMLElement& element);

/// Whether an element of the group is a preset.
bool isPreset(const tinyxml2::XMLElement& element);

}  // namespace camcfg::tool::presets

#endif
