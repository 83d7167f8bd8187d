#ifndef CAMCFG_TOOL_PRESETS_IMPORT_H
#define CAMCFG_TOOL_PRESETS_IMPORT_H

#include <string>
#include <vector>

#include "base/outcome.h"
#include "presets/preset_row.h"

namespace camcfg::tool::presets {

/// Reads presets as readPresetRows does, checks every row against the others and the presets that are
/// there, and stores what is created and updated, all or none. Presets that are in no row stay as
/// they are.
/// @return the ids that are created, updated and found unchanged, none if there are faults; the
///         faults, with which nothing is stored
/// @throws Refusal  the text makes no sense as a whole; or see makeChange
Outcome importPresets(const std::string& text, bool isDryRun);

/// What a device without presets would find wrong with rows.
std::vector<std::string> faultsOf(const std::vector<PresetRow>& rows);

}  // namespace camcfg::tool::presets

#endif
