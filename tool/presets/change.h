#ifndef CAMCFG_TOOL_PRESETS_CHANGE_H
#define CAMCFG_TOOL_PRESETS_CHANGE_H

#include <string>
#include <vector>

#include "presets/preset.h"

namespace camcfg::tool::presets {

/// What stands against a description, such as its length; empty if nothing does.
std::string whyNotADescription(const std::string& text);

/// A preset that is to be stored.
struct PresetUpdate {
  tagPRESET_CFG_S record;
  std::string fault;  ///< why it cannot be; empty if it can
};

/// A preset with the values given, and for the rest those that it has already, or zero and empty.
/// The library always writes all of them: a present value that would not survive this is a fault.
/// @param existing  what the library finds by the id; null: the preset is new
/// @param given     the values, among them an id that the library accepts
PresetUpdate updateOf(const Preset* existing, const PresetValues& given);

/// Creates or updates presets, all or none.
/// @param what  what is changed, in front of a refusal
/// @throws Refusal  see makeChange
void storePresets(const std::string& what, std::vector<tagPRESET_CFG_S> records);

/// Deletes a preset of the file, and no other one.
/// @throws Refusal  see makeChange; or no call of the library would hit this one
void deletePreset(const Presets& presets, const Preset& preset);

}  // namespace camcfg::tool::presets

#endif
