#ifndef CAMCFG_TOOL_PRESETS_CHANGE_H
#define CAMCFG_TOOL_PRESETS_CHANGE_H

#include <camcfg/preset.h>

#include <string>
#include <vector>

#include "presets/preset.h"

namespace camcfg::tool::presets {

/// A preset that is to be stored.
struct PresetUpdate {
  tagPRESET_CFG_S record;
  Values values;      ///< what the record holds
  std::string fault;  ///< why it cannot be stored; empty if it can
};

/// A preset with the values given, and for the rest those that it has already, or zero and empty.
/// The library always writes all of them: a present value that would not survive this is a fault.
/// @param existing  what the library finds by the id; null: the preset is new
/// @param given     the values, among them an id that the library accepts
PresetUpdate updateOf(const Preset* existing, const Values& given);

/// Creates or updates presets, all or none.
/// @param what  what is changed, the beginning of a refusal
/// @throws Refusal  see makeChange
void storePresets(const std::string& what, std::vector<tagPRESET_CFG_S> records);

/// Creates or updates one preset, as above.
/// @return the preset as it is now, and "before": as it was, null if it is new
Json storePreset(const Values& given);

/// Deletes a preset of the file, and no other one.
/// @throws Refusal  see makeChange; or no call of the library would hit this one
void deletePreset(const Presets& presets, const Preset& preset);

}  // namespace camcfg::tool::presets

#endif
