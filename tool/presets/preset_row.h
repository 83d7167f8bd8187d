#ifndef CAMCFG_TOOL_PRESETS_PRESET_ROW_H
#define CAMCFG_TOOL_PRESETS_PRESET_ROW_H

#include <string>
#include <vector>

#include "presets/preset.h"

namespace camcfg::tool::presets {

/// A preset of a file that is to be imported.
struct PresetRow {
  std::string place;                ///< "line 3"
  Values values;                    ///< null where nothing is given
  std::vector<std::string> faults;  ///< what makes no sense in it
};

/// Reads presets: JSON if the text begins with "[" or "{", CSV otherwise. Columns and members are
/// named as in answers, in any order; only the id must be there.
/// @throws Refusal  where the text makes no sense as a whole
std::vector<PresetRow> readPresetRows(const std::string& text);

/// The presets as such rows, with their labels for places.
std::vector<PresetRow> rowsOf(const std::vector<Preset>& presets);

/// The presets in CSV.
std::string presetsAsCsv(const std::vector<Preset>& presets);

}  // namespace camcfg::tool::presets

#endif
